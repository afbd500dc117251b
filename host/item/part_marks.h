// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_PART_MARKS_H
#define HOST_ITEM_PART_MARKS_H

#include <cstddef>
#include <functional>
#include <vector>

namespace host {

/// What a person selected of a model's parts, and what is hidden, by the parts' indices in the
/// mesh. A plain value. What is hidden is never selected; of parts beyond its count it says that
/// they are neither, and changes nothing.
class PartMarks {
public:
    PartMarks() = default;
    explicit PartMarks(std::size_t parts) : selected_(parts), hidden_(parts) {}

    std::size_t count() const { return selected_.size(); }
    bool isSelected(std::size_t part) const { return part < count() && selected_[part]; }
    bool isHidden(std::size_t part) const { return part < count() && hidden_[part]; }
    std::size_t selectedCount() const { return selectedCount_; }
    std::size_t hiddenCount() const { return hiddenCount_; }
    const std::vector<bool> &selected() const { return selected_; }
    const std::vector<bool> &hidden() const { return hidden_; }

    /// Selects these parts and no others, the hidden ones left out.
    void select(const std::vector<bool> &parts);
    void setSelected(std::size_t part, bool on);
    void clearSelection() { select({}); }

    void setHidden(std::size_t part, bool on);
    void hideSelected();
    /// Hides all that is not selected; does nothing if nothing is selected.
    void showOnlySelected();
    void showAll();

    friend bool operator==(const PartMarks &a, const PartMarks &b)
    {
        return a.selected_ == b.selected_ && a.hidden_ == b.hidden_;
    }

private:
    std::vector<bool> selected_; // of one size
    std::vector<bool> hidden_;
    std::size_t selectedCount_ = 0;
    std::size_t hiddenCount_ = 0;
};

/// Sets the colour in which a part is drawn; says whether it is.
using PartColour = std::function<bool(std::size_t part)>;

} // namespace host

#endif
