// SPDX-License-Identifier: MIT
#include "host/view/side/parts_panel.h"

#include <algorithm>

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTreeView>
#include <QVBoxLayout>

#include "host/ui/metrics.h"
#include "host/view/side/part_tree_model.h"

namespace host {

namespace {

constexpr int unfolded = 2000; // rows: a list up to here opens with all of them in sight

QPalette paletteOf(const Theme &theme)
{
    QPalette palette;
    const QColor ground = theme.bottom;
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::Base, theme.top);
    palette.setColor(QPalette::Button, ground);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, theme.text);
    palette.setColor(QPalette::PlaceholderText, theme.faint);
    QColor chosen = theme.accent;
    chosen.setAlphaF(0.3);
    palette.setColor(QPalette::Highlight, chosen);
    palette.setColor(QPalette::HighlightedText, theme.text);
    return palette;
}

} // namespace

PartsPanel::PartsPanel(QWidget *view, QWidget *parent)
    : QWidget(parent),
      view_(view),
      model_(new PartTreeModel(this)),
      search_(new QLineEdit(this)),
      tree_(new QTreeView(this)),
      counts_(new QLabel(this))
{
    setFont(Metrics::font());
    setAutoFillBackground(true);
    search_->setPlaceholderText(tr("Find a part"));
    search_->setAccessibleName(tr("Find a part"));
    search_->setClearButtonEnabled(true);
    tree_->setAccessibleName(tr("Parts"));
    tree_->setModel(model_);
    tree_->setUniformRowHeights(true);
    tree_->setIndentation(int(Metrics::px(12))); // nodes may lie deep, and names need the room
    tree_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree_->setExpandsOnDoubleClick(false);
    tree_->setContextMenuPolicy(Qt::CustomContextMenu);
    tree_->setFrameShape(QFrame::NoFrame);
    tree_->header()->setStretchLastSection(false);
    tree_->header()->setSectionResizeMode(PartTreeModel::Name, QHeaderView::Stretch);
    tree_->header()->setSectionsMovable(false);
    const int margin = int(Metrics::px(6));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin);
    column->addWidget(search_);
    column->addWidget(tree_, 1);
    column->addWidget(counts_);

    for (QWidget *widget : {static_cast<QWidget *>(search_), static_cast<QWidget *>(tree_)}) {
        widget->installEventFilter(this);
        widget->addActions(view_->actions());
    }
    connect(search_, &QLineEdit::textChanged, this, &PartsPanel::filter);
    connect(model_, &PartTreeModel::shownAsked, this, &PartsPanel::shownAsked);
    connect(tree_, &QTreeView::activated, this, &PartsPanel::fitAsked);
    connect(tree_, &QTreeView::customContextMenuRequested, this,
            [this](const QPoint &at) { emit menuAsked(tree_->viewport()->mapToGlobal(at)); });
    connect(tree_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PartsPanel::tellSelection);
}

void PartsPanel::setMesh(const MeshPtr &mesh)
{
    if (mesh.get() == model_->tree().mesh())
        return; // what a person folded stays
    shownSelection_.clear();
    model_->setMesh(mesh);
    model_->filter(search_->text());
    const QString most = QLocale().toString(
        qulonglong(mesh->triangleCount() + mesh->lineCount() + mesh->pointCount()));
    const QFontMetrics metrics(tree_->font());
    const QString title =
        model_->headerData(PartTreeModel::Size, Qt::Horizontal, Qt::DisplayRole).toString();
    tree_->header()->resizeSection(PartTreeModel::Size, std::max(metrics.horizontalAdvance(most),
                                                                 metrics.horizontalAdvance(title)) +
                                                            int(Metrics::px(18)));
    expand();
    sayCounts();
}

void PartsPanel::setTheme(const Theme &theme)
{
    if (theme.text == text_)
        return;
    text_ = theme.text;
    setPalette(paletteOf(theme));
    model_->setTheme(theme);
}

void PartsPanel::follow(const PartMarks &marks)
{
    if (marks == model_->tree().marks() && marks.selected() == shownSelection_)
        return;
    model_->setMarks(marks);
    if (marks.selected() != shownSelection_)
        showSelection(marks.selected());
    sayCounts();
}

void PartsPanel::find()
{
    search_->setFocus();
    search_->selectAll();
}

void PartsPanel::filter(const QString &text)
{
    telling_ = false; // a filter changes what is in sight, and nothing that is selected
    model_->filter(text);
    expand();
    showSelection(shownSelection_);
    telling_ = true;
    sayCounts();
}

void PartsPanel::expand()
{
    if (model_->tree().shownCount() <= unfolded)
        tree_->expandAll();
    else
        tree_->expandToDepth(0);
}

void PartsPanel::tellSelection()
{
    if (!telling_)
        return;
    std::vector<bool> rows(std::size_t(model_->tree().count()));
    for (const QItemSelectionRange &range : tree_->selectionModel()->selection())
        for (int i = range.top(); i <= range.bottom(); ++i)
            rows[std::size_t(PartTreeModel::rowOf(model_->index(i, 0, range.parent())))] = true;
    shownSelection_ = model_->tree().partsOf(rows);
    emit selected(shownSelection_);
}

/// The rows of the parts, those side by side in one range.
QItemSelection PartsPanel::selectionOf(const std::vector<bool> &parts) const
{
    const PartTree &tree = model_->tree();
    std::vector<int> rows;
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (parts[i] && tree.place(tree.rowOf(i)) >= 0)
            rows.push_back(tree.rowOf(i));
    std::sort(rows.begin(), rows.end(), [&](int a, int b) {
        return std::pair(tree.above(a), tree.place(a)) < std::pair(tree.above(b), tree.place(b));
    });
    QItemSelection selection;
    for (std::size_t begin = 0, end = 0; begin < rows.size(); begin = end) {
        for (end = begin + 1; end < rows.size() &&
                              tree.above(rows[end]) == tree.above(rows[begin]) &&
                              tree.place(rows[end]) == tree.place(rows[end - 1]) + 1;)
            ++end;
        const QModelIndex last = model_->indexOf(rows[end - 1]);
        selection.append({model_->indexOf(rows[begin]), last.sibling(last.row(), 1)});
    }
    return selection;
}

void PartsPanel::showSelection(const std::vector<bool> &parts)
{
    // The time that Qt takes grows with the square of their number; the colour of the names says
    // what is selected in any case.
    constexpr int mostRanges = 500;
    shownSelection_ = parts;
    const QItemSelection selection = selectionOf(parts);
    const bool before = std::exchange(telling_, false);
    QItemSelectionModel *shown = tree_->selectionModel();
    shown->clearSelection();
    if (selection.size() <= mostRanges)
        shown->select(selection, QItemSelectionModel::Select);
    if (!selection.isEmpty()) {
        const QModelIndex first = selection.first().topLeft();
        shown->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        tree_->scrollTo(first);
    }
    telling_ = before;
}

void PartsPanel::sayCounts()
{
    const PartTree &tree = model_->tree();
    const QLocale locale;
    const auto number = [&](std::size_t n) { return locale.toString(qulonglong(n)); };
    const std::size_t all = tree.marks().count(), hidden = tree.marks().hiddenCount();
    QStringList phrases(all == 1 ? tr("1 part") : tr("%1 parts").arg(number(all)));
    if (tree.marks().selectedCount() > 0)
        phrases << tr("%1 selected").arg(number(tree.marks().selectedCount()));
    if (hidden > 0)
        phrases << tr("%1 hidden").arg(number(hidden));
    if (tree.shownCount() == 0)
        phrases = QStringList(tr("No part has this name."));
    counts_->setText(phrases.join(QStringLiteral("  ·  ")));
}

bool PartsPanel::eventFilter(QObject *object, QEvent *event)
{
    if (object == search_ && forSearch(event))
        return true;
    if (object == tree_ && forTree(event))
        return true;
    return QWidget::eventFilter(object, event);
}

/// Escape leads back to the view, Down and Return into the list.
bool PartsPanel::forSearch(QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool list = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key != Qt::Key_Escape && !list)
        return false;
    event->accept();
    if (event->type() == QEvent::KeyPress)
        list ? tree_->setFocus() : view_->setFocus();
    return true;
}

/// What is typed over the list are keys of the view, such as F, but for those that move in it. Some
/// are shortcuts, which are asked for first, the others are heard by the view itself.
bool PartsPanel::forTree(QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease &&
        event->type() != QEvent::ShortcutOverride)
        return false;
    const auto *typed = static_cast<QKeyEvent *>(event);
    constexpr int moving[] = {Qt::Key_Space,  Qt::Key_Up,       Qt::Key_Down,  Qt::Key_Left,
                              Qt::Key_Right,  Qt::Key_PageUp,   Qt::Key_Home,  Qt::Key_End,
                              Qt::Key_Return, Qt::Key_PageDown, Qt::Key_Enter, Qt::Key_Menu};
    const bool moves =
        std::find(std::begin(moving), std::end(moving), typed->key()) != std::end(moving);
    if (event->type() == QEvent::ShortcutOverride) {
        if (typed->key() == Qt::Key_Escape)
            view_->setFocus();
        if (moves)
            event->accept();
        return moves;
    }
    const QString text = typed->text();
    if (moves || text.isEmpty() || !text[0].isLetterOrNumber())
        return false;
    QCoreApplication::sendEvent(view_, event);
    return true;
}

} // namespace host
