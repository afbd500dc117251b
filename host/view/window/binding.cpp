// SPDX-License-Identifier: MIT
#include "host/view/window/binding.h"

#include <algorithm>
#include <utility>

#include <QKeySequence>
#include <QStringList>
#include <QVariant>

namespace host {

namespace {

QString keyWords(const QKeySequence &key)
{
    QString text = key.toString(QKeySequence::NativeText);
    // The shift that a keyboard needs for this character says nothing to who looks for it.
    if (text == "Shift+?")
        text = "?";
    return text;
}

QString mouseWords(quint32 binding, const QString &verb)
{
    QStringList pieces;
    const std::pair<quint32, const char *> modifiers[] = {{Qt::ControlModifier, "Ctrl"},
                                                          {Qt::ShiftModifier, "Shift"},
                                                          {Qt::AltModifier, "Alt"},
                                                          {Qt::MetaModifier, "Meta"}};
    for (const auto &[bit, name] : modifiers)
        if (binding & bit)
            pieces << BindingRow::tr(name);
    const QString button = binding & LeftButton    ? BindingRow::tr("left")
                           : binding & RightButton ? BindingRow::tr("right")
                                                   : BindingRow::tr("middle");
    const QString last = binding & DoubleClick ? BindingRow::tr("double click")
                         : verb.isEmpty()      ? button + ' ' + BindingRow::tr("button")
                                               : button + ' ' + verb;
    return (pieces << last).join('+');
}

} // namespace

QAction *bindKey(QObject *scene, const QString &key, const char *name, const QString &text,
                 QObject *receiver, const char *slot)
{
    QAction *action = nullptr;
    QMetaObject::invokeMethod(scene, "NewKeyAction", Q_RETURN_ARG(QAction *, action),
                              Q_ARG(QString, key), Q_ARG(const char *, name),
                              Q_ARG(QObject *, receiver), Q_ARG(const char *, slot));
    if (action)
        action->setText(text);
    return action;
}

QAction *bindMouse(QObject *scene, quint32 binding, quint32 mask, const char *name,
                   const QString &text, QObject *receiver, const char *slot)
{
    QAction *action = nullptr;
    QMetaObject::invokeMethod(scene, "NewMouseAction", Q_RETURN_ARG(QAction *, action),
                              Q_ARG(uint, binding), Q_ARG(uint, mask), Q_ARG(const char *, name),
                              Q_ARG(QObject *, receiver), Q_ARG(const char *, slot));
    if (action)
        action->setText(text);
    return action;
}

void setContents(QAction *action, int contents, const QString &plotText)
{
    action->setProperty("contents", contents);
    action->setProperty("plotText", plotText);
}

QString bindingWords(const QAction *action)
{
    const QVariant words = action->property("words");
    if (words.isValid())
        return words.toString();
    const QVariant key = action->property("key");
    if (key.isValid())
        return keyWords(key.value<QKeySequence>());
    const QVariant binding = action->property("binding");
    if (binding.isValid())
        return mouseWords(binding.toUInt(), action->property("verb").toString());
    return keyWords(action->shortcut());
}

namespace {

/// What @p action does on @p contents: a text for each kind of them.
QStringList textsOf(const QAction *action, int contents)
{
    const QVariant on = action->property("contents");
    if (!on.isValid())
        return {action->text()};
    QStringList texts;
    if (on.toInt() & contents & (OnModel | OnPoints | OnAnimated))
        texts << action->text();
    const QString plotText = action->property("plotText").toString();
    if (on.toInt() & contents & OnPlot)
        texts << (plotText.isEmpty() ? action->text() : plotText);
    return texts;
}

void addTo(QVector<BindingRow> &rows, const QString &keys, const QString &text)
{
    const auto same = std::find_if(rows.begin(), rows.end(),
                                   [&](const BindingRow &row) { return row.text == text; });
    if (same == rows.end()) {
        rows.append({keys, text});
        return;
    }
    QStringList all = (same->keys + ", " + keys).split(", ");
    all.removeDuplicates();
    same->keys = all.join(", ");
}

} // namespace

QVector<BindingRow> bindingRows(const QList<QAction *> &actions, int contents)
{
    QVector<BindingRow> rows;
    for (auto it = actions.crbegin(); it != actions.crend(); ++it) {
        const QAction *action = *it;
        const QString keys = action ? bindingWords(action) : QString();
        if (keys.isEmpty() || action->text().isEmpty() || !action->isEnabled())
            continue;
        for (const QString &text : textsOf(action, contents))
            addTo(rows, keys, text);
    }
    return rows;
}

} // namespace host
