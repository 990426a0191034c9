#include "pages/output/output_group.h"

#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"
#include "pages/form/box_marks.h"
#include "pages/form/input_advanced.h"
#include "pages/form/input_base.h"

namespace tessavo {

/// What tells the two rows of the page apart. Arrays go by slider position; places are page pixels of the
/// first channel's box.
struct GroupRowTable {
    const char* title;
    const char* name;  ///< behind "Channel n", for screen readers
    FieldId value;
    FieldId group;
    QRgb color;
    int top;
    int firstSlider;
    QRect slider;
    std::array<int, channelCount> edits;
    QRect edit;
    int firstDistance;  ///< number of the first box of centimetres, 0 for a row without
    QRect distance;
    int firstGroup;
};

namespace {

constexpr GroupRowTable gainRow{.title = "Output Gain",
                                .name = "gain",
                                .value = FieldId::groupGain,
                                .group = FieldId::gainGroup,
                                .color = theme::level,
                                .top = 8,
                                .firstSlider = 1364,
                                .slider = {57, 72, 30, 134},
                                .edits = {1398, 1399, 1397, 1396, 1400, 1395, 1401, 1404},
                                .edit = {39, 214, 48, 24},
                                .firstDistance = 0,
                                .distance = {},
                                .firstGroup = 1157};

constexpr GroupRowTable delayRow{.title = "Output Delay",
                                 .name = "delay",
                                 .value = FieldId::groupDelay,
                                 .group = FieldId::delayGroup,
                                 .color = theme::quality,
                                 .top = 302,
                                 .firstSlider = 1372,
                                 .slider = {57, 366, 30, 118},
                                 .edits = {1405, 1406, 1407, 1408, 1409, 1410, 1411, 1412},
                                 .edit = {23, 508, 47, 24},
                                 .firstDistance = 1413,
                                 .distance = {74, 508, 47, 24},
                                 .firstGroup = 1165};

constexpr int divisor = 10;  // slider steps to a dB or ms
constexpr int coarseSteps = 10;
constexpr int groupCount = 8;

QRect inColumn(const QRect& first, std::size_t place) {
    return first.translated(120 * static_cast<int>(place), 0);
}

int numberAt(int first, std::size_t place) {
    return first + static_cast<int>(place);
}

QString nameOf(const GroupRowTable& table, std::size_t place) {
    return QStringLiteral("Channel %1 %2").arg(place + 1).arg(QLatin1String(table.name));
}

}  // namespace

COutputGroup::Row::Row(const GroupRowTable& itsTable)
    : table(itsTable),
      linked(fieldOf(itsTable.value).minimum, fieldOf(itsTable.value).maximum,
             {divisor, divisor, divisor, divisor, divisor, divisor, divisor, divisor}) {}

COutputGroup::COutputGroup(TuningState& tuning, QWidget* parent)
    : ParameterPage(tuning, parent), rows_{Row(gainRow), Row(delayRow)} {
    for (Row& row : rows_) {
        makeRow(row);
    }
    COutputGroup::refresh();
}

COutputGroup::~COutputGroup() = default;

void COutputGroup::makeRow(Row& row) {
    SkinGroupBox* card = addGroup(QLatin1String(row.table.title), {0, row.table.top, 984, 286});
    for (std::size_t place = 0; place < channelCount; ++place) {
        SkinGroupBox* box = addGroup(QStringLiteral("Channel %1").arg(place + 1),
                                     inColumn({15, row.table.top + 32, 114, 242}, place), card);
        makeSliders(row, place, box);
        makeGroupList(row, place, box);
    }
}

void COutputGroup::makeSliders(Row& row, std::size_t place, SkinGroupBox* box) {
    const GroupRowTable& table = row.table;
    const QString name = nameOf(table, place);
    const SliderRow places{
        {table.value, place},          numberAt(table.firstSlider, place), table.edits[place], Qt::Vertical,
        inColumn(table.slider, place), inColumn(table.edit, place),        table.color};
    CBitmapSlider* slider = makeSlider(places, name, box);
    slider->setValueScale(-1.0 / divisor);
    NumberEdit* edit = makeEdit(places.editId, places.edit, table.color, name, box);
    std::unique_ptr<CInputBase>& input = row.inputs[place];
    const Field& field = fieldOf(table.value);
    const auto lower = truncateTo<int>(field.minimum);
    const auto upper = truncateTo<int>(field.maximum);
    if (table.firstDistance == 0) {
        edit->setUnit(QStringLiteral("dB"));
        addLabel(QStringLiteral("dB"), inColumn({91, table.edit.y(), 22, 24}, place), box);
        input = std::make_unique<CInputBase>(*slider, *edit, box, lower, upper, divisor);
    } else {
        addLabel(QStringLiteral("[ms] / [cm]"), inColumn({15, table.edit.y() - 18, 114, 14}, place), box,
                 Qt::AlignCenter);
        NumberEdit* distance = makeEdit(numberAt(table.firstDistance, place), inColumn(table.distance, place),
                                        table.color, name + QStringLiteral(" distance"), box);
        edit->setUnit(QStringLiteral("ms"));
        distance->setUnit(QStringLiteral("cm"));
        edit->setAlignment(Qt::AlignCenter);
        distance->setAlignment(Qt::AlignCenter);
        input = std::make_unique<CInputAdvanced>(*slider, *edit, *distance, box, lower, upper, divisor);
        connectEdit(row, place, *distance, [](CInputBase& typed) {
            typed.applySecondText();
            // The box of the time follows; that of the distance keeps what was typed.
            typed.CInputBase::showPosition();
        });
    }
    connectEdit(row, place, *edit, [](CInputBase& typed) { typed.applyText(); });
    const QString unit = table.firstDistance == 0 ? QStringLiteral(" dB") : QStringLiteral(" ms");
    const ValueScale scale = sliderScale(table.value, Qt::Vertical);
    slider->setFormatter([scale, unit](int position) { return textAt(scale, position) + unit; });
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

void COutputGroup::makeGroupList(Row& row, std::size_t place, SkinGroupBox* box) {
    const GroupRowTable& table = row.table;
    const int y = table.top + 241;
    addLabel(QStringLiteral("Group"), inColumn({25, y, 42, 24}, place), box);
    QStringList letters;
    std::vector<int> codes;
    for (int group = 0; group < groupCount; ++group) {
        letters += QString(QChar(u'A' + group));
        codes.push_back(group);
    }
    SkinComboBox& list =
        addCombo({table.group, place}, numberAt(table.firstGroup, place), inColumn({69, y, 52, 24}, place),
                 letters, codes, nameOf(table, place) + QStringLiteral(" group"), box)
            .list();
    for (int group = 0; group < groupCount; ++group) {
        list.setItemDot(group, QColor::fromRgb(theme::groups[static_cast<std::size_t>(group)]));
    }
    row.groups[place] = &list;
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
