#include "pages/output/output_group.h"

#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"
#include "controls/theme.h"
#include "pages/form/box_marks.h"
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
        for (std::size_t place = 0; place < channelCount; ++place) {
            tieSlider(row, place);
            row.groups[place] = &form().control<SkinComboBox>(row.table.firstGroup + static_cast<int>(place));
            for (std::size_t group = 0; group < theme::groups.size(); ++group) {
                row.groups[place]->setItemDot(static_cast<int>(group), QColor::fromRgb(theme::groups[group]));
            }
        }
    }
    COutputGroup::refresh();
}

COutputGroup::~COutputGroup() = default;

void COutputGroup::tieSlider(Row& row, std::size_t place) {
    const GroupRow& table = row.table;
    const Field& field = fieldOf(table.value);
    const auto lower = truncateTo<int>(field.minimum);
    const auto upper = truncateTo<int>(field.maximum);
    const ValueScale scale = sliderScale(table.value, Qt::Vertical);
    auto& slider = form().control<CBitmapSlider>(table.firstSlider + static_cast<int>(place));
    auto& edit = form().control<NumberEdit>(table.edits[place]);
    slider.setValueScale(-1.0 / divisor);
    slider.setFormatter([scale](int position) { return unitTextAt(scale, position); });
    edit.setUnit(scale.unit);
    connectEdit(row, place, edit, [](CInputBase& typed) { typed.applyText(); });
    if (table.firstDistance == 0) {
        row.inputs[place] =
            std::make_unique<CInputBase>(slider, edit, slider.parentWidget(), lower, upper, divisor);
        return;
    }
    auto& distance = form().control<NumberEdit>(table.firstDistance + static_cast<int>(place));
    edit.setAlignment(Qt::AlignCenter);
    distance.setAlignment(Qt::AlignCenter);
    distance.setUnit(QStringLiteral("cm"));
    row.inputs[place] = std::make_unique<CInputAdvanced>(slider, edit, distance, slider.parentWidget(), lower,
                                                         upper, divisor);
    connectEdit(row, place, distance, [](CInputBase& typed) {
        typed.applySecondText();
        // The box of the time follows; that of the distance keeps what was typed.
        typed.CInputBase::showPosition();
    });
}

template <typename Apply>
void COutputGroup::connectEdit(Row& row, std::size_t place, NumberEdit& edit, Apply apply) {
    const auto take = [this, &row, place, apply] {
        apply(*row.inputs[place]);
        takeMove(row, place);
    };
    connect(&edit, &QLineEdit::textChanged, this, [&row, place] { row.inputs[place]->warn(); });
    connect(&edit, &NumberEdit::entered, this, take);
    connect(&edit, &NumberEdit::left, this, [&edit, take] {
        // A box that was only passed through has nothing to say.
        if (edit.isEdited()) {
            take();
        }
    });
    connect(&edit, &NumberEdit::stepRequested, this,
            [this, &row, place, &edit, apply](int steps, bool coarse) {
                CInputBase& input = *row.inputs[place];
                if (edit.isEdited()) {
                    apply(input);
                }
                CBitmapSlider& slider = input.slider();
                slider.setPosition(slider.position() - (coarse ? coarseSteps : 1) * steps);
                input.showPosition();
                takeMove(row, place);
            });
}

FieldIndex COutputGroup::elementOf(BoundField bound) const {
    return {groupSliderMap[bound.element], 0};
}

void COutputGroup::refresh() {
    for (Row& row : rows_) {
        const ValueScale scale = sliderScale(row.table.value, Qt::Vertical);
        for (std::size_t place = 0; place < channelCount; ++place) {
            CInputBase& input = *row.inputs[place];
            input.slider().setPosition(positionOf(scale, shown({row.table.value, place})));
            input.showPosition();
            row.linked.setPosition(place, input.slider().position());
        }
    }
    ParameterPage::refresh();
}

void COutputGroup::updateMarks() {
    ParameterPage::updateMarks();
    for (Row& row : rows_) {
        for (std::size_t place = 0; place < channelCount; ++place) {
            const BoundField bound{row.table.value, place};
            row.inputs[place]->mark(shown(bound), playedNote(tuning(), bound.field, elementOf(bound)));
        }
    }
}

void COutputGroup::updateLook() {
    for (Row& row : rows_) {
        for (std::size_t place = 0; place < channelCount; ++place) {
            const int group = row.groups[place]->currentIndex();
            auto* box = static_cast<SkinGroupBox*>(row.inputs[place]->owner());
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
        const int place = id - row.table.firstSlider;
        if (place >= 0 && place < static_cast<int>(channelCount)) {
            // A slider that was put back may have events on their way that tell of where it was before.
            row.inputs[static_cast<std::size_t>(place)]->showPosition();
            takeMove(row, static_cast<std::size_t>(place));
        }
    }
    return true;
}

void COutputGroup::takeMove(Row& row, std::size_t place) {
    LinkedSliders::Groups groups{};
    for (std::size_t other = 0; other < channelCount; ++other) {
        groups[other] = row.groups[other]->currentIndex();
    }
    CInputBase& moved = *row.inputs[place];
    const LinkedSliders::Move outcome = row.linked.move(place, moved.slider().position(), groups);
    if (outcome.refused) {
        moved.slider().setPosition(row.linked.position(place));
        moved.showPosition();
    }
    for (std::size_t other = 0; other < channelCount; ++other) {
        if (outcome.followed[other]) {
            row.inputs[other]->slider().setPosition(row.linked.position(other));
            row.inputs[other]->showPosition();
            store(row, other);
        }
    }
    store(row, place);
    updateMarks();
}

void COutputGroup::store(const Row& row, std::size_t place) {
    const RecordChannel channel{groupSliderMap[place]};
    tuning().edit(row.table.value, {channel.value, 0}, static_cast<float>(row.linked.value(place)), true);
}

}  // namespace tessavo
