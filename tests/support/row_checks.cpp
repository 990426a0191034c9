#include "support/row_checks.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "controls/bitmap_slider.h"
#include "controls/control_id.h"
#include "controls/note_mark.h"
#include "controls/number_edit.h"
#include "controls/read_only_edit.h"
#include "controls/skin_group_box.h"
#include "controls/state_lamp.h"

namespace tessavo::test {
namespace {

constexpr Bounds wholePage{0, 0, 984, 596};

bool isOfKind(const QWidget& control, ControlKind kind) {
    switch (kind) {
        case ControlKind::group:
            return qobject_cast<const SkinGroupBox*>(&control) != nullptr;
        case ControlKind::label:
        case ControlKind::line:
            return qobject_cast<const QLabel*>(&control) != nullptr;
        case ControlKind::button:
        case ControlKind::toggle: {
            const auto* button = qobject_cast<const QAbstractButton*>(&control);
            return button != nullptr && button->isCheckable() == (kind == ControlKind::toggle);
        }
        case ControlKind::check:
        case ControlKind::radio: {
            const auto* button = qobject_cast<const QAbstractButton*>(&control);
            return button != nullptr && button->isCheckable();
        }
        case ControlKind::combo:
            return qobject_cast<const QComboBox*>(&control) != nullptr;
        case ControlKind::slider:
        case ControlKind::delay:
            return qobject_cast<const CBitmapSlider*>(&control) != nullptr;
        case ControlKind::number:
            return qobject_cast<const NumberEdit*>(&control) != nullptr;
        case ControlKind::spin:
            return qobject_cast<const QSpinBox*>(&control) != nullptr;
        case ControlKind::readOnly:
            return qobject_cast<const CReadOnlyEdit*>(&control) != nullptr;
        case ControlKind::lamp:
            return qobject_cast<const StateLamp*>(&control) != nullptr;
        case ControlKind::note:
            return qobject_cast<const NoteMark*>(&control) != nullptr;
        case ControlKind::own:
            return true;
    }
    return false;
}

Bounds placeOf(const QWidget& page, const QWidget& control) {
    const QPoint corner = control.mapTo(&page, QPoint(0, 0));
    return {corner.x(), corner.y(), control.width(), control.height()};
}

/// A rectangle of a row, and the row for a message.
struct Area {
    Bounds bounds;
    const ControlRow* row;
};

std::string told(const ControlRow& row) {
    return std::to_string(row.identifier) + " '" + nameOf(row) + "' at " + std::to_string(row.bounds.x) +
           ", " + std::to_string(row.bounds.y);
}

template <typename Kind>
bool hasTextAt(const QWidget& page, const Bounds& bounds, const QString& text,
               QString (*textOf)(const Kind&)) {
    const auto all = page.findChildren<Kind*>();
    return std::ranges::any_of(
        all, [&](const Kind* each) { return placeOf(page, *each) == bounds && textOf(*each) == text; });
}

QString labelText(const QLabel& label) {
    return label.text();
}

QString groupTitle(const SkinGroupBox& group) {
    return group.title();
}

void expectBox(const QWidget& page, int identifier, const Bounds& bounds, const QString& name) {
    const auto* box = page.findChild<NumberEdit*>(QStringLiteral("id%1").arg(identifier));
    ASSERT_NE(box, nullptr) << identifier;
    if (!bounds.isEmpty()) {
        EXPECT_EQ(placeOf(page, *box), bounds) << identifier;
    }
    EXPECT_EQ(box->accessibleName(), name) << identifier;
}

void expectNumbered(const QWidget& page, const ControlRow& row) {
    const auto* control = page.findChild<QWidget*>(QStringLiteral("id%1").arg(row.identifier));
    ASSERT_NE(control, nullptr) << told(row);
    EXPECT_TRUE(isOfKind(*control, row.kind)) << told(row);
    if (!row.bounds.isEmpty()) {
        EXPECT_EQ(placeOf(page, *control), row.bounds) << told(row);
    }
    const QString name = QString::fromStdString(nameOf(row));
    const bool isNamedByItsText =
        row.name.empty() && qobject_cast<const QAbstractButton*>(control) != nullptr;
    const bool namesItself =
        row.name.empty() && (row.kind == ControlKind::label || row.kind == ControlKind::own);
    if (!isNamedByItsText && !namesItself && row.kind != ControlKind::note) {
        EXPECT_EQ(control->accessibleName(), name) << told(row);
    }
    if (row.editIdentifier >= 0) {
        expectBox(page, row.editIdentifier, row.edit, name);
    }
    if (row.distanceIdentifier >= 0) {
        expectBox(page, row.distanceIdentifier, row.distance, name + QStringLiteral(" distance"));
    }
}

std::vector<Area> areasOf(const ControlRows& rows) {
    std::vector<Area> areas;
    for (const ControlRow& row : rows) {
        const ControlRow* around = groupAround(rows, row);
        if (row.kind == ControlKind::group || row.kind == ControlKind::line ||
            (around != nullptr && around->isHidden)) {
            continue;
        }
        for (const Bounds& bounds : {row.bounds, row.edit, row.distance, row.captionBounds, row.unitBounds}) {
            if (!bounds.isEmpty()) {
                areas.push_back({bounds, &row});
            }
        }
    }
    return areas;
}

}  // namespace

void expectControlsOfRows(const QWidget& page, const ControlRows& rows) {
    ASSERT_FALSE(rows.empty());
    std::set<int> numbers;
    for (const ControlRow& row : rows) {
        numbers.insert({row.identifier, row.editIdentifier, row.distanceIdentifier});
        const QString caption = QString::fromStdString(row.caption);
        if (row.identifier >= 0) {
            expectNumbered(page, row);
        } else if (row.isHidden || row.kind == ControlKind::own) {
            continue;
        } else if (row.kind == ControlKind::group) {
            EXPECT_TRUE(hasTextAt(page, row.bounds, caption, groupTitle)) << told(row);
        } else {
            // A label without words gets them from its page.
            EXPECT_TRUE(hasTextAt(page, row.bounds, caption, labelText) || caption.isEmpty()) << told(row);
        }
        if (!row.captionBounds.isEmpty()) {
            EXPECT_TRUE(hasTextAt(page, row.captionBounds, caption, labelText)) << told(row);
        }
        if (!row.unitBounds.isEmpty()) {
            EXPECT_TRUE(hasTextAt(page, row.unitBounds, QString::fromStdString(row.unit), labelText))
                << told(row);
        }
    }
    for (const auto* control : page.findChildren<QWidget*>()) {
        EXPECT_TRUE(numbers.contains(controlId(*control))) << controlId(*control) << " stands in no row";
    }
}

void expectRowsApart(const ControlRows& rows, const std::vector<int>& stacked) {
    std::set<int> numbers;
    for (const ControlRow& row : rows) {
        for (const int number : {row.identifier, row.editIdentifier, row.distanceIdentifier}) {
            EXPECT_TRUE(number < 0 || numbers.insert(number).second) << number << " stands there twice";
        }
    }
    const std::vector<Area> areas = areasOf(rows);
    for (std::size_t one = 0; one < areas.size(); ++one) {
        const ControlRow& row = *areas[one].row;
        const ControlRow* group = groupAround(rows, row);
        EXPECT_TRUE((group == nullptr ? wholePage : group->bounds).contains(areas[one].bounds)) << told(row);
        const bool isStacked = std::ranges::find(stacked, row.identifier) != stacked.end();
        for (std::size_t other = one + 1; other < areas.size() && !isStacked; ++other) {
            EXPECT_FALSE(areas[one].bounds.overlaps(areas[other].bounds))
                << told(row) << " and " << told(*areas[other].row);
        }
    }
    for (const ControlRow& one : rows) {
        for (const ControlRow& other : rows) {
            if (one.kind != ControlKind::group || other.kind != ControlKind::group || &one >= &other ||
                one.isHidden || other.isHidden) {
                continue;
            }
            EXPECT_TRUE(!one.bounds.overlaps(other.bounds) || one.bounds.contains(other.bounds))
                << told(one) << " and " << told(other);
        }
    }
}

}  // namespace tessavo::test
