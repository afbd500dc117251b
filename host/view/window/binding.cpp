// SPDX-License-Identifier: MIT
#include "host/view/window/binding.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QKeySequence>
#include <QStringList>
#include <QVariant>

namespace host {

namespace {

QString words(const char *s)
{
    return QCoreApplication::translate("binding", s);
}

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
    QStringList parts;
    const std::pair<quint32, const char *> modifiers[] = {{Qt::ControlModifier, "Ctrl"},
                                                          {Qt::ShiftModifier, "Shift"},
                                                          {Qt::AltModifier, "Alt"},
                                                          {Qt::MetaModifier, "Meta"}};
    for (const auto &[bit, name] : modifiers)
        if (binding & bit)
            parts << words(name);
    QStringList buttons;
    if (binding & LeftButton)
        buttons << words("left");
    if (binding & RightButton)
        buttons << words("right");
    if (binding & MiddleButton)
        buttons << words("middle");
    QString last = buttons.join('+');
    if (binding & DoubleClick)
        last = (binding & LeftButton ? QString() : last + ' ') + words("double click");
    else if (!buttons.isEmpty())
        last += ' ' + (verb.isEmpty() ? words("button") : verb);
    else if (binding & (WheelUp | WheelDown))
        last = (binding & WheelUp) ? words("wheel forward") : words("wheel back");
    if (!last.isEmpty())
        parts << last;
    return parts.join('+');
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

QString bindingWords(const QAction *action)
{
    const QVariant key = action->property("key");
    if (key.isValid())
        return keyWords(key.value<QKeySequence>());
    const QVariant binding = action->property("binding");
    if (binding.isValid())
        return mouseWords(binding.toUInt(), action->property("verb").toString());
    return keyWords(action->shortcut());
}

QVector<BindingRow> bindingRows(const QList<QAction *> &actions)
{
    QVector<BindingRow> rows;
    for (auto it = actions.crbegin(); it != actions.crend(); ++it) {
        const QAction *action = *it;
        const QString keys = action ? bindingWords(action) : QString();
        if (keys.isEmpty() || action->text().isEmpty() || !action->isEnabled())
            continue;
        const auto same = std::find_if(rows.begin(), rows.end(), [&](const BindingRow &row) {
            return row.text == action->text();
        });
        if (same == rows.end())
            rows.append({keys, action->text()});
        else if (!same->keys.split(", ").contains(keys))
            same->keys += ", " + keys;
    }
    return rows;
}

} // namespace host
