#include "app/compare_model.h"

#include <algorithm>

#include "app/plain_tool_tip.h"
#include "pages/form/channel_titles.h"
#include "pages/form/form.h"

namespace tessavo {

namespace {

// A row of a group has this instead of the number of its group.
constexpr quintptr isGroup = static_cast<quintptr>(-1);

std::vector<CompareGroup> filtered(std::vector<CompareGroup> groups, CompareModel::Filter filter) {
    for (CompareGroup& group : groups) {
        std::erase_if(group.lines, [&](const ComparedLine& line) {
            return filter.differencesOnly && !(filter.realOnly ? line.isReal : line.differs);
        });
    }
    std::erase_if(groups, [](const CompareGroup& group) { return group.lines.empty(); });
    return groups;
}

bool haveSameElements(const CompareGroup& one, const CompareGroup& other) {
    return one.kind == other.kind && one.channel == other.channel &&
           std::ranges::equal(one.lines, other.lines, {}, &ComparedLine::element, &ComparedLine::element);
}

QString fieldsText(std::size_t count) {
    return count == 1 ? QStringLiteral("1 field") : QStringLiteral("%1 fields").arg(count);
}

}  // namespace

void CompareModel::show(SetComparison comparison, Filter filter, const FileNotes& notes) {
    notes_ = notes;
    std::vector<CompareGroup> groups = filtered(std::move(comparison.groups), filter);
    spareBytes_ = comparison.spareBytes;
    if (std::ranges::equal(groups, groups_, haveSameElements)) {
        // The tree keeps its place where only values have changed.
        groups_ = std::move(groups);
        tellChoice();
        return;
    }
    beginResetModel();
    groups_ = std::move(groups);
    endResetModel();
    Q_EMIT choiceChanged();
}

void CompareModel::clearChoice() {
    chosen_.clear();
    tellChoice();
}

void CompareModel::chooseAll(bool chosen) {
    for (const CompareGroup& group : groups_) {
        for (const ComparedLine& line : group.lines) {
            choose(line.element, chosen && line.differs);
        }
    }
    tellChoice();
}

std::vector<SetElement> CompareModel::chosen() const {
    std::vector<SetElement> elements;
    for (const CompareGroup& group : groups_) {
        for (const ComparedLine& line : group.lines) {
            if (line.differs && isChosen(line.element)) {
                elements.push_back(line.element);
            }
        }
    }
    return elements;
}

std::size_t CompareModel::differenceCount() const {
    std::size_t count = 0;
    for (const CompareGroup& group : groups_) {
        count += differingIn(group);
    }
    return count;
}

bool CompareModel::isChosen(const SetElement& element) const {
    return std::ranges::find(chosen_, element) != chosen_.end();
}

void CompareModel::choose(const SetElement& element, bool chosen) {
    if (chosen == isChosen(element)) {
        return;
    }
    if (chosen) {
        chosen_.push_back(element);
    } else {
        std::erase(chosen_, element);
    }
}

void CompareModel::tellChoice() {
    const int last = rowCount() - 1;
    if (last >= 0) {
        Q_EMIT dataChanged(index(0, 0), index(last, 0));
        for (int row = 0; row <= last; ++row) {
            const QModelIndex group = index(row, 0);
            Q_EMIT dataChanged(index(0, 0, group), index(rowCount(group) - 1, 0, group));
        }
    }
    Q_EMIT choiceChanged();
}

std::size_t CompareModel::chosenIn(const CompareGroup& group) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        group.lines, [this](const ComparedLine& line) { return line.differs && isChosen(line.element); }));
}

std::size_t CompareModel::differingIn(const CompareGroup& group) {
    return static_cast<std::size_t>(std::ranges::count(group.lines, true, &ComparedLine::differs));
}

const CompareGroup* CompareModel::groupOf(const QModelIndex& index) const {
    if (!index.isValid()) {
        return nullptr;
    }
    const auto number =
        index.internalId() == isGroup ? static_cast<quintptr>(index.row()) : index.internalId();
    return number < groups_.size() ? &groups_[number] : nullptr;
}

const ComparedLine* CompareModel::lineOf(const QModelIndex& index) const {
    const CompareGroup* const group = groupOf(index);
    if (group == nullptr || index.internalId() == isGroup) {
        return nullptr;
    }
    const auto row = static_cast<std::size_t>(index.row());
    return row < group->lines.size() ? &group->lines[row] : nullptr;
}

QModelIndex CompareModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent) || column != 0) {
        return {};
    }
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) : isGroup);
}

QModelIndex CompareModel::parent(const QModelIndex& child) const {
    return child.isValid() && child.internalId() != isGroup
               ? createIndex(static_cast<int>(child.internalId()), 0, isGroup)
               : QModelIndex();
}

int CompareModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) {
        return static_cast<int>(groups_.size());
    }
    const CompareGroup* const group = parent.internalId() == isGroup ? groupOf(parent) : nullptr;
    return group != nullptr ? static_cast<int>(group->lines.size()) : 0;
}

QVariant CompareModel::data(const QModelIndex& index, int role) const {
    if (const ComparedLine* const line = lineOf(index)) {
        return lineData(*line, role);
    }
    const CompareGroup* const group = groupOf(index);
    return group != nullptr ? groupData(*group, role) : QVariant();
}

QVariant CompareModel::groupData(const CompareGroup& group, int role) const {
    const std::size_t differing = differingIn(group);
    const std::size_t chosen = chosenIn(group);
    const bool haveOneSource = group.leftSource == group.rightSource;
    const QString source =
        textOf(group.leftSource) +
        (haveOneSource ? QString() : QStringLiteral(" \u2192 ") + textOf(group.rightSource));
    const bool isChannel = group.kind == CompareGroupKind::channel;
    const QString name = isChannel ? channelNameText(notes_, group.channel) : QString();
    const QString counts = fieldsText(group.lines.size()) +
                           (chosen == 0 ? QString() : QStringLiteral(", %1 selected").arg(chosen));
    switch (role) {
        case Qt::DisplayRole:
            return textOf(group.heading);
        case Qt::CheckStateRole:
            if (differing == 0) {
                return {};
            }
            return static_cast<int>(chosen == 0           ? Qt::Unchecked
                                    : chosen == differing ? Qt::Checked
                                                          : Qt::PartiallyChecked);
        case countsRole:
            return counts;
        case otherNumberRole:
            return textOf(group.otherNumber);
        case sourceRole:
            return source;
        case nameRole:
            return name;
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole: {
            QStringList parts{textOf(group.heading)};
            if (isChannel) {
                parts << textOf(group.otherNumber) << source;
            }
            if (!name.isEmpty()) {
                parts << name;
            }
            const QString text = (parts << counts).join(QStringLiteral(", "));
            return role == Qt::ToolTipRole ? plainToolTip(text) : text;
        }
        default:
            return {};
    }
}

QVariant CompareModel::lineData(const ComparedLine& line, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return textOf(line.name);
        case Qt::CheckStateRole:
            if (!line.differs) {
                return {};
            }
            return static_cast<int>(isChosen(line.element) ? Qt::Checked : Qt::Unchecked);
        case leftRole:
            return textOf(line.left);
        case rightRole:
            return textOf(line.right);
        case differsRole:
            return line.differs;
        case realRole:
            return line.isReal;
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole: {
            QString text = QStringLiteral("%1: left %2, right %3")
                               .arg(textOf(line.name), textOf(line.left), textOf(line.right));
            if (!line.differs) {
                text += QStringLiteral(", the same");
            } else if (!line.isReal) {
                text += QStringLiteral(", the same in the target\u2019s number format");
            }
            // The name of a set may look like mark-up.
            return role == Qt::ToolTipRole ? plainToolTip(text) : text;
        }
        default:
            return {};
    }
}

bool CompareModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !data(index, role).isValid()) {
        return false;
    }
    const bool chosen = value.toInt() == Qt::Checked;
    if (const ComparedLine* const line = lineOf(index)) {
        choose(line->element, chosen);
    } else {
        for (const ComparedLine& each : groupOf(index)->lines) {
            choose(each.element, chosen && each.differs);
        }
    }
    tellChoice();
    return true;
}

Qt::ItemFlags CompareModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (data(index, Qt::CheckStateRole).isValid()) {
        flags |= Qt::ItemIsUserCheckable;
    }
    return lineOf(index) != nullptr ? flags | Qt::ItemNeverHasChildren : flags;
}

}  // namespace tessavo
