#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "compare/set_compare.h"
#include "params/file_notes.h"

namespace tessavo {

/// A comparison as a tree: groups, and in them the elements with both values. Remembers which elements are chosen, also
/// while one of them is not listed.
class CompareModel : public QAbstractItemModel {
    Q_OBJECT

 public:
    enum Role {
        leftRole = Qt::UserRole,  ///< value of the left set, with its unit
        rightRole,                ///< the same of the right set
        differsRole,
        realRole,         ///< the values differ in more than the target's number formats make them
        countsRole,       ///< of a group: "4 fields, 3 selected"
        otherNumberRole,  ///< of a channel: "Ch 4"
        sourceRole,       ///< of a channel: "FrontLeft", or both where they differ
        nameRole,         ///< of a channel: the name that a person gave it; empty where it has none
    };
    /// What of the comparison is listed.
    struct Filter {
        bool differencesOnly = true;
        bool realOnly = false;  ///< only what differs really; counts among the differences only

        friend bool operator==(const Filter&, const Filter&) = default;
    };

    using QAbstractItemModel::QAbstractItemModel;

    /// Shows a comparison with the elements that the filter lets through. Rows that stay keep their indexes.
    /// \param notes tell the names of the channels
    void show(SetComparison comparison, Filter filter, const FileNotes& notes);
    void clearChoice();
    /// Chooses or leaves out every listed element that differs.
    void chooseAll(bool chosen);
    /// The chosen elements that are listed, in the order of the rows.
    [[nodiscard]] std::vector<SetElement> chosen() const;
    /// Listed elements that differ.
    [[nodiscard]] std::size_t differenceCount() const;
    /// Differing bytes that belong to no value.
    [[nodiscard]] std::size_t spareBytes() const { return spareBytes_; }
    /// The group of a row, be it the group's own or one of its elements'; null for an invalid index.
    [[nodiscard]] const CompareGroup* groupOf(const QModelIndex& index) const;
    /// The element of a row; null for a group.
    [[nodiscard]] const ComparedLine* lineOf(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& /*parent*/ = {}) const override { return 1; }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
    /// Other elements are chosen than before.
    void choiceChanged();

 private:
    [[nodiscard]] bool isChosen(const SetElement& element) const;
    void choose(const SetElement& element, bool chosen);
    void tellChoice();
    [[nodiscard]] std::size_t chosenIn(const CompareGroup& group) const;
    [[nodiscard]] static std::size_t differingIn(const CompareGroup& group);
    [[nodiscard]] QVariant groupData(const CompareGroup& group, int role) const;
    [[nodiscard]] QVariant lineData(const ComparedLine& line, int role) const;

    std::vector<CompareGroup> groups_;
    FileNotes notes_;
    std::size_t spareBytes_ = 0;
    std::vector<SetElement> chosen_;
};

}  // namespace tessavo
