#include "app/compare_tree.h"

#include <QScrollBar>
#include <QShortcut>
#include <algorithm>

#include "app/compare_rows.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

// The toolkit's own ground would shine through between the rows.
QString treeSheet() {
    const auto name = [](QRgb color) { return QColor::fromRgb(color).name(); };
    return QStringLiteral(
               "QTreeView { background: %1; border: 1px solid %2; border-radius: 4px; padding: 0; outline: "
               "0; }"
               "QTreeView:focus { border: 1px solid %3; }"
               "QTreeView::branch { background: transparent; border-image: none; image: none; }")
        .arg(name(theme::sunk), name(theme::edge), name(theme::focus));
}

}  // namespace

CompareTree::CompareTree(CompareModel& model, QWidget* parent)
    : QTreeView(parent), model_(model), rows_(new CompareRows(*this)) {
    setAccessibleName(QStringLiteral("Fields of both sets"));
    setStyleSheet(treeSheet());
    setHeaderHidden(true);
    setIndentation(0);
    setRootIsDecorated(false);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setItemDelegate(rows_);
    setModel(&model);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, &CompareTree::remember);
    // Behind the view's own connection, which has made it anew by then.
    connect(&model, &QAbstractItemModel::modelReset, this, &CompareTree::restore);
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) { noteFolded(index, true); });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { noteFolded(index, false); });
    auto* const all = new QShortcut(QKeySequence::SelectAll, this);
    all->setContext(Qt::WidgetShortcut);
    connect(all, &QShortcut::activated, this,
            [this] { model_.chooseAll(model_.chosen().size() < model_.differenceCount()); });
}

std::optional<CompareTree::GroupKey> CompareTree::keyOf(const QModelIndex& index) const {
    const CompareGroup* const group = model_.groupOf(index);
    return group != nullptr ? std::optional(GroupKey{group->kind, group->channel}) : std::nullopt;
}

void CompareTree::noteFolded(const QModelIndex& index, bool folded) {
    const auto key = keyOf(index);
    if (!key) {
        return;
    }
    std::erase(folded_, *key);
    if (folded) {
        folded_.push_back(*key);
    }
}

void CompareTree::remember() {
    scrolled_ = verticalScrollBar()->value();
    if (const auto key = keyOf(currentIndex())) {
        const ComparedLine* const line = model_.lineOf(currentIndex());
        current_ = Place{*key, line != nullptr ? std::optional(line->element) : std::nullopt};
    }
}

QModelIndex CompareTree::find(const Place& place) const {
    for (int row = 0; row < model_.rowCount(); ++row) {
        const QModelIndex group = model_.index(row, 0);
        if (keyOf(group) != place.group) {
            continue;
        }
        for (int line = 0; place.element && line < model_.rowCount(group); ++line) {
            const QModelIndex index = model_.index(line, 0, group);
            if (model_.lineOf(index)->element == *place.element) {
                return index;
            }
        }
        return group;
    }
    return model_.index(0, 0);
}

void CompareTree::restore() {
    for (int row = 0; row < model_.rowCount(); ++row) {
        const QModelIndex group = model_.index(row, 0);
        if (std::ranges::find(folded_, *keyOf(group)) == folded_.end()) {
            expand(group);
        }
    }
    const QModelIndex current = current_ ? find(*current_) : model_.index(0, 0);
    if (current.isValid()) {
        // A row of a folded group would unfold it.
        setCurrentIndex(current.parent().isValid() && !isExpanded(current.parent()) ? current.parent()
                                                                                    : current);
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(scrolled_);
    }
}

}  // namespace tessavo
