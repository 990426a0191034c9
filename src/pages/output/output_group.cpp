#include "pages/output/output_group.h"

#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/control_note.h"
#include "controls/number_edit.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"
#include "controls/theme.h"
#include "pages/form/box_marks.h"
#include "pages/form/channel_titles.h"
#include "pages/form/input_advanced.h"

namespace tessavo {

namespace {

constexpr int divisor = 10;  // slider steps to a dB or ms
constexpr int coarseSteps = 10;

LinkedSliders linkedSliders(FieldId field) {
    std::array<int, LinkedSliders::count> scales{};
    scales.fill(divisor);
    return {fieldOf(field).minimum, fieldOf(field).maximum, scales};
}

}  // namespace

COutputGroup::COutputGroup(TuningState& tuning, QWidget* parent)
    : ParameterPage(tuning, parent),
      rows_{Row{groupRows[0], linkedSliders(groupRows[0].value)},
            Row{groupRows[1], linkedSliders(groupRows[1].value)}} {
    form().build(outputGroupRows());
    for (Row& row : rows_) {
        for (std::size_t column = 0; column < channelCount; ++column) {
            tieSlider(row, column);
            row.groups[column] =
                &form().control<SkinComboBox>(row.table.firstGroup + static_cast<int>(column));
            for (std::size_t group = 0; group < theme::groups.size(); ++group) {
                row.groups[column]->setItemDot(static_cast<int>(group),
                                               QColor::fromRgb(theme::groups[group]));
            }
        }
    }
    COutputGroup::refresh();
}

COutputGroup::~COutputGroup() = default;

void COutputGroup::tieSlider(Row& row, std::size_t column) {
    const GroupRow& table = row.table;
    const Field& field = fieldOf(table.value);
    const auto lower = truncateTo<int>(field.minimum);
    const auto upper = truncateTo<int>(field.maximum);
    const ValueScale scale = sliderScale(table.value, Qt::Vertical);
    auto& slider = form().control<CBitmapSlider>(table.firstSlider + static_cast<int>(column));
    auto& edit = form().control<NumberEdit>(table.edits[column]);
    slider.setValueScale(-1.0 / divisor);
    slider.setFormatter([scale](int position) { return unitTextAt(scale, position); });
    edit.setUnit(scale.unit);
    connectEdit(row, column, edit, [](CInputBase& typed) { typed.applyText(); });
    if (table.firstDistance == 0) {
        row.inputs[column] =
            std::make_unique<CInputBase>(slider, edit, slider.parentWidget(), lower, upper, divisor);
        return;
    }
    auto& distance = form().control<NumberEdit>(table.firstDistance + static_cast<int>(column));
    edit.setAlignment(Qt::AlignCenter);
    distance.setAlignment(Qt::AlignCenter);
    distance.setUnit(QStringLiteral("cm"));
    row.inputs[column] = std::make_unique<CInputAdvanced>(slider, edit, distance, slider.parentWidget(),
                                                          lower, upper, divisor);
    connectEdit(row, column, distance, [](CInputBase& typed) {
        typed.applySecondText();
        // The box of the time follows; that of the distance keeps what was typed.
        typed.CInputBase::showPosition();
    });
}

template <typename Apply>
void COutputGroup::connectEdit(Row& row, std::size_t column, NumberEdit& edit, Apply apply) {
    const auto take = [this, &row, column, apply] {
        apply(*row.inputs[column]);
        takeMove(row, column);
    };
    connect(&edit, &QLineEdit::textChanged, this, [&row, column] { row.inputs[column]->warn(); });
    connect(&edit, &NumberEdit::entered, this, take);
    connect(&edit, &NumberEdit::left, this, [&edit, take] {
        // A box that was only passed through has nothing to say.
        if (edit.isEdited()) {
            take();
        }
    });
    connect(&edit, &NumberEdit::stepRequested, this,
            [this, &row, column, &edit, apply](int steps, bool coarse) {
                CInputBase& input = *row.inputs[column];
                if (edit.isEdited()) {
                    apply(input);
                }
                CBitmapSlider& slider = input.slider();
                slider.setPosition(slider.position() - (coarse ? coarseSteps : 1) * steps);
                input.showPosition();
                takeMove(row, column);
            });
}

FieldIndex COutputGroup::elementOf(BoundField bound) const {
    return {groupSliderMap[bound.element], 0};
}

void COutputGroup::refresh() {
    for (Row& row : rows_) {
        const ValueScale scale = sliderScale(row.table.value, Qt::Vertical);
        for (std::size_t column = 0; column < channelCount; ++column) {
            CInputBase& input = *row.inputs[column];
            input.slider().setPosition(positionOf(scale, shown({row.table.value, column})));
            input.showPosition();
            row.linked.setPosition(column, input.slider().position());
        }
    }
    ParameterPage::refresh();
}

void COutputGroup::updateMarks() {
    ParameterPage::updateMarks();
    showNames();
    for (Row& row : rows_) {
        for (std::size_t column = 0; column < channelCount; ++column) {
            const BoundField bound{row.table.value, column};
            row.inputs[column]->mark(shown(bound), playedNote(tuning(), bound.field, elementOf(bound)));
        }
    }
}

void COutputGroup::showNames() {
    for (Row& row : rows_) {
        for (std::size_t column = 0; column < channelCount; ++column) {
            const QString name = channelToolTip(tuning().notes(), {groupSliderMap[column]});
            if (name != row.names[column]) {
                replaceNote(*row.inputs[column]->owner(), row.names[column], name);
                row.names[column] = name;
            }
        }
    }
}

void COutputGroup::updateLook() {
    for (Row& row : rows_) {
        for (std::size_t column = 0; column < channelCount; ++column) {
            const int group = row.groups[column]->currentIndex();
            auto* box = static_cast<SkinGroupBox*>(row.inputs[column]->owner());
            box->setBar(group < 0 ? QColor()
                                  : QColor::fromRgb(theme::groups[static_cast<std::size_t>(group)]));
        }
    }
}

bool COutputGroup::event(QEvent* event) {
    if (!SliderEvent::isSliderEvent(*event)) {
        return ParameterPage::event(event);
    }
    const int id = static_cast<const SliderEvent&>(*event).controlId();
    for (Row& row : rows_) {
        const int column = id - row.table.firstSlider;
        if (column >= 0 && column < static_cast<int>(channelCount)) {
            // A slider that was put back may have events on their way that tell of where it was before.
            row.inputs[static_cast<std::size_t>(column)]->showPosition();
            takeMove(row, static_cast<std::size_t>(column));
        }
    }
    return true;
}

void COutputGroup::takeMove(Row& row, std::size_t column) {
    LinkedSliders::Groups groups{};
    for (std::size_t other = 0; other < channelCount; ++other) {
        groups[other] = row.groups[other]->currentIndex();
    }
    CInputBase& moved = *row.inputs[column];
    const LinkedSliders::Move outcome = row.linked.move(column, moved.slider().position(), groups);
    if (outcome.refused) {
        moved.slider().setPosition(row.linked.position(column));
        moved.showPosition();
    }
    for (std::size_t other = 0; other < channelCount; ++other) {
        if (outcome.followed[other]) {
            row.inputs[other]->slider().setPosition(row.linked.position(other));
            row.inputs[other]->showPosition();
            store(row, other);
        }
    }
    store(row, column);
    updateMarks();
}

void COutputGroup::store(const Row& row, std::size_t column) {
    const RecordChannel channel{groupSliderMap[column]};
    tuning().edit(row.table.value, {channel.value, 0}, static_cast<float>(row.linked.value(column)), true);
}

}  // namespace tessavo
