#pragma once

#include <QTreeView>
#include <optional>
#include <vector>

#include "app/compare_model.h"

namespace tessavo {

class CompareRows;

/// Shows a CompareModel. Groups that a person has folded stay folded, and the current row stays current, while other rows
/// come and go.
class CompareTree : public QTreeView {
    Q_OBJECT

 public:
    /// \param model outlives the tree
    explicit CompareTree(CompareModel& model, QWidget* parent = nullptr);

    [[nodiscard]] CompareRows& rows() { return *rows_; }

 private:
    /// A group, by what it is and not by where it stands.
    struct GroupKey {
        CompareGroupKind kind;
        RecordChannel channel;

        friend bool operator==(const GroupKey&, const GroupKey&) = default;
    };
    struct Place {
        GroupKey group;
        std::optional<SetElement> element;
    };

    [[nodiscard]] std::optional<GroupKey> keyOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex find(const Place& place) const;
    void noteFolded(const QModelIndex& index, bool folded);
    void remember();
    void restore();

    CompareModel& model_;
    CompareRows* rows_;
    std::vector<GroupKey> folded_;
    std::optional<Place> current_;
    int scrolled_ = 0;
};

}  // namespace tessavo
