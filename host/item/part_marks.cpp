// SPDX-License-Identifier: MIT
#include "host/item/part_marks.h"

namespace host {

namespace {

/// Writes a mark and keeps the number of those that are set.
void write(std::vector<bool> &marks, std::size_t part, bool on, std::size_t &count)
{
    if (marks[part] == on)
        return;
    marks[part] = on;
    on ? ++count : --count;
}

} // namespace

void PartMarks::select(const std::vector<bool> &parts)
{
    for (std::size_t i = 0; i < count(); ++i)
        setSelected(i, i < parts.size() && parts[i]);
}

void PartMarks::setSelected(std::size_t part, bool on)
{
    if (part < count() && !(on && hidden_[part]))
        write(selected_, part, on, selectedCount_);
}

void PartMarks::setHidden(std::size_t part, bool on)
{
    if (part >= count())
        return;
    write(hidden_, part, on, hiddenCount_);
    if (on)
        write(selected_, part, false, selectedCount_);
}

void PartMarks::hideSelected()
{
    for (std::size_t i = 0; i < count(); ++i)
        if (selected_[i])
            setHidden(i, true);
}

void PartMarks::showOnlySelected()
{
    if (selectedCount_ == 0)
        return;
    for (std::size_t i = 0; i < count(); ++i)
        setHidden(i, !selected_[i]);
}

void PartMarks::showAll()
{
    hidden_.assign(count(), false);
    hiddenCount_ = 0;
}

} // namespace host
