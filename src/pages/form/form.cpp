#include "pages/form/form.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <algorithm>
#include <type_traits>

#include "controls/bitmap_slider.h"
#include "controls/control_id.h"
#include "controls/note_mark.h"
#include "controls/number_edit.h"
#include "controls/read_only_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/skin_radio_button.h"
#include "controls/slider_event.h"
#include "controls/spin_edit.h"
#include "controls/state_lamp.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

// Levels are read against a ruler of 6 dB where they go both ways in such steps.
std::vector<int> decibelTicks(const ValueScale& scale) {
    const int every = 6 * scale.stepsPerUnit;
    std::vector<int> ticks;
    if (scale.minimum >= 0 || scale.maximum <= 0 || scale.minimum % every != 0 ||
        scale.maximum % every != 0) {
        return ticks;
    }
    for (int position = scale.minimum; position <= scale.maximum; position += every) {
        ticks.push_back(position);
    }
    return ticks;
}

Qt::Orientation orientationOf(const ControlRow& row) {
    return row.bounds.height > row.bounds.width ? Qt::Vertical : Qt::Horizontal;
}

Qt::Alignment alignmentOf(TextSide side) {
    switch (side) {
        case TextSide::left:
            return Qt::AlignLeft | Qt::AlignVCenter;
        case TextSide::right:
            return Qt::AlignRight | Qt::AlignVCenter;
        case TextSide::centre:
            return Qt::AlignCenter;
        case TextSide::bottom:
            return Qt::AlignHCenter | Qt::AlignBottom;
    }
    return {};
}

bool hasEdit(const ControlRow& row) {
    return row.kind == ControlKind::slider || row.kind == ControlKind::delay;
}

}  // namespace

QRect rectOf(const Bounds& bounds) {
    return {bounds.x, bounds.y, bounds.width, bounds.height};
}

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void setTextColour(QLabel& label, Colour colour) {
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(colour));
    label.setPalette(palette);
}

Form::Form(QWidget& page, Writer writer) : page_(page), writer_(std::move(writer)) {}

Form::~Form() = default;

QRect Form::boundsIn(const QWidget& parent, const Bounds& bounds) const {
    const QRect rect = rectOf(bounds);
    return &parent == &page_ ? rect : rect.translated(-parent.mapTo(&page_, QPoint(0, 0)));
}

QWidget& Form::parentOf(const ControlRow& row) const {
    const auto around = std::find_if(groups_.rbegin(), groups_.rend(), [&](const Group& group) {
        return row.bounds.isEmpty() ? row.kind != ControlKind::group
                                    : group.isHidden <= row.isHidden && group.bounds.contains(row.bounds);
    });
    return around == groups_.rend() ? page_ : *around->box;
}

void Form::build(std::span<const ControlRow> rows, const MakeOwn& makeOwn) {
    for (const ControlRow& row : rows) {
        if (row.kind != ControlKind::own) {
            make(row, parentOf(row));
        } else if (makeOwn) {
            put(*makeOwn(row, parentOf(row)), row);
        }
    }
    orderEdits(rows);
}

void Form::make(const ControlRow& row, QWidget& parent) {
    if (!row.captionBounds.isEmpty()) {
        addLabel(textOf(row.caption), row.captionBounds, row.side, row.captionColour.value_or(theme::text2),
                 row.textPixels, parent);
    }
    switch (row.kind) {
        case ControlKind::group:
            makeGroup(row, parent);
            break;
        case ControlKind::label:
            makeLabel(row, parent);
            break;
        case ControlKind::line:
            makeLine(row, parent);
            break;
        case ControlKind::button:
        case ControlKind::toggle:
            makeButton(row, parent);
            break;
        case ControlKind::check:
            makeCheck(row, parent);
            break;
        case ControlKind::radio:
            put(*new SkinRadioButton(textOf(row.caption), row.identifier, &parent), row);
            break;
        case ControlKind::combo:
            makeCombo(row, parent);
            break;
        case ControlKind::slider:
        case ControlKind::delay:
            makeSlider(row, parent);
            break;
        case ControlKind::number:
            makeNumber(row, parent);
            break;
        case ControlKind::spin:
            makeSpin(row, parent);
            break;
        case ControlKind::readOnly:
            put(*new CReadOnlyEdit(row.identifier, &parent), row);
            break;
        case ControlKind::lamp:
            put(*new StateLamp(row.bounds.width - StateLamp::glow, row.identifier, &parent), row);
            break;
        case ControlKind::note:
            put(*new NoteMark(row.identifier, &parent, alignmentOf(row.side) & Qt::AlignHorizontal_Mask),
                row);
            break;
        case ControlKind::own:
            break;
    }
    if (!row.unitBounds.isEmpty()) {
        addLabel(textOf(row.unit), row.unitBounds, TextSide::left, theme::text2, 11, parent);
    }
}

void Form::put(QWidget& control, const ControlRow& row) {
    if (!row.bounds.isEmpty()) {
        control.setGeometry(boundsIn(*control.parentWidget(), row.bounds));
    }
    using enum ControlKind;
    const bool namesItself = qobject_cast<const QPushButton*>(&control) != nullptr || row.kind == group ||
                             row.kind == label || row.kind == own;
    if (!row.name.empty() || !namesItself) {
        control.setAccessibleName(textOf(nameOf(row)));
    }
    if (row.identifier >= 0) {
        controls_[row.identifier] = &control;
    }
}

template <typename Kind, typename... Controls>
void Form::bind(const ControlRow& row, QWidget& parent, Controls&&... controls) {
    if (!writer_ || !row.field || !row.isBound) {
        return;
    }
    const BoundField to{*row.field, row.element};
    auto binding = std::make_unique<Kind>(std::forward<Controls>(controls)..., writer_(to));
    if constexpr (std::is_base_of_v<SliderBinding, Kind>) {
        sliders_[row.identifier] = binding.get();
    }
    if constexpr (std::is_base_of_v<NumberBinding, Kind>) {
        if (typing_) {
            binding->setTyping(*typing_);
        }
    }
    bindings_.push_back({to, row.identifier, &parent, std::move(binding)});
}

void Form::makeGroup(const ControlRow& row, QWidget& parent) {
    const auto kind = &parent == &page_ ? SkinGroupBox::Kind::card : SkinGroupBox::Kind::inset;
    auto* box = new SkinGroupBox(textOf(row.caption), row.identifier, &parent, kind);
    put(*box, row);
    if (row.titleBounds.x != 0) {
        box->setTitlePosition({row.titleBounds.x, row.titleBounds.y});
    }
    if (row.isHidden) {
        box->hide();
        box->setEnabled(false);
    }
    groups_.push_back({row.bounds, row.caption, box, row.isHidden});
}

QLabel& Form::addLabel(const QString& text, const Bounds& bounds, TextSide side, Colour colour, int pixels,
                       QWidget& parent) {
    auto* label = new QLabel(text, &parent);
    label->setGeometry(boundsIn(parent, bounds));
    label->setAlignment(alignmentOf(side));
    label->setFont(theme::font(pixels));
    setTextColour(*label, colour);
    labels_.emplace_back(bounds, label);
    return *label;
}

void Form::makeLabel(const ControlRow& row, QWidget& parent) {
    QLabel& label = addLabel(textOf(row.caption), row.bounds, row.side, row.colour.value_or(theme::text2),
                             row.textPixels, parent);
    if (row.identifier >= 0) {
        setControlId(label, row.identifier);
    }
    put(label, row);
}

void Form::makeLine(const ControlRow& row, QWidget& parent) {
    auto* line = new QLabel(&parent);
    line->setGeometry(boundsIn(parent, row.bounds));
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, QColor::fromRgb(row.colour.value_or(theme::line)));
    line->setPalette(palette);
    line->setAutoFillBackground(true);
}

void Form::makeButton(const ControlRow& row, QWidget& parent) {
    auto* button = new CxSkinButton(textOf(row.caption), row.identifier, &parent);
    button->setToggle(row.kind == ControlKind::toggle);
    put(*button, row);
}

void Form::makeCheck(const ControlRow& row, QWidget& parent) {
    auto* box = new SkinCheckBox(textOf(row.caption), row.identifier, &parent);
    put(*box, row);
    bind<CheckBinding>(row, parent, *box, row.inverted);
}

void Form::makeCombo(const ControlRow& row, QWidget& parent) {
    auto* list = new SkinComboBox(row.identifier, &parent);
    put(*list, row);
    std::vector<int> codes;
    for (const ControlEntry& entry : entriesOf(row)) {
        list->addItem(textOf(entry.word));
        codes.push_back(entry.code);
    }
    bind<ComboBinding>(row, parent, *list, std::move(codes));
}

NumberEdit& Form::makeEdit(const ControlRow& row, int identifier, const Bounds& bounds, QWidget& parent) {
    auto* edit = new NumberEdit(identifier, &parent);
    if (!bounds.isEmpty()) {
        edit->setGeometry(boundsIn(parent, bounds));
    }
    edit->setColor(row.plainEdit ? 0 : valueColour(row));
    if (row.plainEdit) {
        edit->setAlignment(Qt::AlignCenter);
    }
    edit->setAccessibleName(textOf(nameOf(row)));
    controls_[identifier] = edit;
    return *edit;
}

void Form::makeSlider(const ControlRow& row, QWidget& parent) {
    const Qt::Orientation orientation = orientationOf(row);
    auto* slider = new CBitmapSlider(orientation, row.identifier, &parent);
    put(*slider, row);
    slider->setColor(valueColour(row));
    ValueScale scale;
    std::vector<int> ticks;
    if (row.field) {
        scale = sliderScale(*row.field, orientation);
        ticks = fieldOf(*row.field).unit == "dB" ? decibelTicks(scale) : ticks;
    }
    if (row.ticks || !ticks.empty()) {
        slider->setTicks(row.ticks.value_or(ticks));
    }
    NumberEdit& edit = makeEdit(row, row.editIdentifier, row.edit, parent);
    if (row.kind == ControlKind::slider) {
        bind<SliderBinding>(row, parent, *slider, edit, scale);
        return;
    }
    NumberEdit& distance = makeEdit(row, row.distanceIdentifier, row.distance, parent);
    distance.setAccessibleName(edit.accessibleName() + QStringLiteral(" distance"));
    bind<DelayBinding>(row, parent, *slider, edit, distance, scale);
}

void Form::makeNumber(const ControlRow& row, QWidget& parent) {
    NumberEdit& edit = makeEdit(row, row.identifier, row.bounds, parent);
    if (row.field) {
        bind<NumberBinding>(row, parent, edit, sliderScale(*row.field, Qt::Horizontal));
    }
}

void Form::makeSpin(const ControlRow& row, QWidget& parent) {
    auto* spin = new SpinEdit(row.identifier, &parent);
    put(*spin, row);
    if (row.field) {
        bind<SpinBinding>(row, parent, *spin, sliderScale(*row.field, Qt::Horizontal));
    }
}

void Form::orderEdits(std::span<const ControlRow> rows) {
    std::vector<QWidget*> sliders;
    std::vector<QWidget*> edits;
    const auto chain = [&] {
        sliders.insert(sliders.end(), edits.begin(), edits.end());
        for (std::size_t i = 0; i + 1 < sliders.size(); ++i) {
            QWidget::setTabOrder(sliders[i], sliders[i + 1]);
        }
        sliders.clear();
        edits.clear();
    };
    for (const ControlRow& row : rows) {
        if (hasEdit(row) && row.editsLast) {
            sliders.push_back(controls_.at(row.identifier));
            edits.push_back(controls_.at(row.editIdentifier));
        } else if (row.kind != ControlKind::label && row.kind != ControlKind::line) {
            chain();
        }
    }
    chain();
}

SkinGroupBox& Form::group(std::string_view title) const {
    return *std::ranges::find(groups_, title, &Group::title)->box;
}

QLabel& Form::labelAt(const Bounds& bounds) const {
    return *std::ranges::find(labels_, bounds, &std::pair<Bounds, QLabel*>::first)->second;
}

Binding& Form::bindingOf(int identifier) const {
    return *std::ranges::find(bindings_, identifier, &Bound::identifier)->binding;
}

void Form::setInCircuit(std::string_view title, bool on) {
    SkinGroupBox& box = group(title);
    box.setInCircuit(on);
    for (const Bound& bound : bindings_) {
        if (bound.group == &box || box.isAncestorOf(bound.group)) {
            bound.binding->setBypassed(!on);
        }
    }
}

bool Form::takeSliderEvent(const QEvent& event) {
    if (!SliderEvent::isSliderEvent(event)) {
        return false;
    }
    const auto& moved = static_cast<const SliderEvent&>(event);
    const auto slider = sliders_.find(moved.controlId());
    if (slider != sliders_.end() && (moved.isFinal() || !sliderAtWork_)) {
        const QScopedValueRollback atWork(sliderAtWork_, true);
        slider->second->moved(moved.position(), moved.isFinal());
    }
    return true;
}

}  // namespace tessavo
