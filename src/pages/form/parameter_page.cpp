#include "pages/form/parameter_page.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <algorithm>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"
#include "controls/spin_edit.h"

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

}  // namespace

ParameterPage::ParameterPage(TuningState& tuning, QWidget* parent)
    : CTabDialog(parent), tuning_(tuning), form_(*this, [this](BoundField bound) { return writer(bound); }) {}

ParameterPage::~ParameterPage() = default;

template <typename Visit>
void ParameterPage::forEachBound(Visit visit) const {
    std::ranges::for_each(form_.bindings(), visit);
    std::ranges::for_each(bindings_, visit);
}

void ParameterPage::refresh() {
    forEachBound([this](const Bound& bound) { bound.binding->show(shown(bound.to)); });
    updateLook();
    updateMarks();
}

void ParameterPage::updateMarks() {
    forEachBound([this](const Bound& bound) {
        const FieldIndex index = markedElement(bound.to);
        const Field& field = fieldOf(bound.to.field);
        bound.binding->mark(shownValue(tuning_.currentParameterSet(), field, index), playedText(bound));
    });
}

QString ParameterPage::playedText(const Bound& bound) const {
    const FieldIndex index = markedElement(bound.to);
    QString played = bound.binding->played(tuning_, bound.to.field, index);
    bool same = true;
    QStringList each;
    for (const Holder& holder : markedHolders()) {
        const QString text = bound.binding->played(tuning_, bound.to.field, {holder.element, index.inner});
        same = same && text == played;
        if (!text.isEmpty()) {
            each << holder.name + QStringLiteral(": ") + text;
        }
    }
    return same ? played : each.join(QLatin1Char('\n'));
}

std::vector<ParameterPage::Holder> ParameterPage::markedHolders() const {
    return {};
}

FieldIndex ParameterPage::elementOf(BoundField bound) const {
    return {bound.element, 0};
}

void ParameterPage::write(BoundField bound, double value, bool final) {
    tuning_.edit(bound.field, elementOf(bound), storedFromShown(fieldOf(bound.field), value), final);
}

double ParameterPage::shown(BoundField bound) const {
    return shownValue(tuning_.currentParameterSet(), fieldOf(bound.field), elementOf(bound));
}

QString ParameterPage::mixedNote(const Bound& bound, const std::vector<Holder>& holders) const {
    const Field& field = fieldOf(bound.to.field);
    const QString unit = QString::fromUtf8(field.unit.data(), static_cast<qsizetype>(field.unit.size()));
    bool differ = false;
    bool isShown = true;
    QString first;
    QString lines;
    for (const Holder& holder : holders) {
        const FieldIndex element{holder.element, elementOf(bound.to).inner};
        const double value = shownValue(tuning_.currentParameterSet(), field, element);
        const QString words = bound.binding->words(value);
        if (lines.isEmpty()) {
            first = words;
        }
        differ = differ || words != first;
        isShown = isShown && bound.binding->shows(value);
        lines += QStringLiteral("\n%1: %2").arg(holder.name, words);
        if (!unit.isEmpty()) {
            lines += QLatin1Char(' ') + unit;
        }
    }
    if (differ) {
        return QStringLiteral("Mixed: the ticked channels differ") + lines;
    }
    return isShown ? QString() : QStringLiteral("Mixed: not the value of the ticked channels") + lines;
}

void ParameterPage::markMixed(const std::vector<Holder>& holders) {
    forEachBound([&](const Bound& bound) { bound.binding->setMixed(mixedNote(bound, holders)); });
}

Binding::Write ParameterPage::writer(BoundField bound) {
    return [this, bound](double value, bool final) {
        write(bound, value, final);
        updateLook();
        updateMarks();
    };
}

QRect ParameterPage::placeIn(const QWidget* parent, const QRect& place) const {
    return parent == this ? place : place.translated(-parent->mapTo(this, QPoint(0, 0)));
}

SkinGroupBox* ParameterPage::addGroup(const QString& title, const QRect& place, QWidget* parent) {
    QWidget* owner = parent != nullptr ? parent : this;
    auto* group = new SkinGroupBox(title, -1, owner,
                                   owner == this ? SkinGroupBox::Kind::card : SkinGroupBox::Kind::inset);
    group->setGeometry(placeIn(owner, place));
    return group;
}

QLabel* ParameterPage::addLabel(const QString& text, const QRect& place, QWidget* parent,
                                Qt::Alignment alignment, QRgb color, int pixelSize) {
    auto* label = new QLabel(text, parent);
    label->setGeometry(placeIn(parent, place));
    label->setAlignment(alignment);
    label->setFont(theme::font(pixelSize));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(color));
    label->setPalette(palette);
    return label;
}

void ParameterPage::addLine(const QRect& place, QWidget* parent, QRgb color) {
    auto* line = new QLabel(parent);
    line->setGeometry(placeIn(parent, place));
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, QColor::fromRgb(color));
    line->setPalette(palette);
    line->setAutoFillBackground(true);
}

CxSkinButton* ParameterPage::addButton(const QString& caption, int id, const QRect& place, QWidget* parent) {
    auto* button = new CxSkinButton(caption, id, parent);
    button->setGeometry(placeIn(parent, place));
    return button;
}

CBitmapSlider* ParameterPage::makeSlider(const SliderRow& row, const QString& name, QWidget* parent) {
    auto* slider = new CBitmapSlider(row.orientation, row.sliderId, parent);
    slider->setGeometry(placeIn(parent, row.slider));
    slider->setColor(row.color);
    slider->setAccessibleName(name);
    if (fieldOf(row.bound.field).unit == "dB") {
        if (std::vector<int> ticks = decibelTicks(sliderScale(row.bound.field, row.orientation));
            !ticks.empty()) {
            slider->setTicks(std::move(ticks));
        }
    }
    return slider;
}

NumberEdit* ParameterPage::makeEdit(int id, const QRect& place, QRgb color, const QString& name,
                                    QWidget* parent) {
    auto* edit = new NumberEdit(id, parent);
    edit->setGeometry(placeIn(parent, place));
    edit->setColor(color);
    edit->setAccessibleName(name);
    return edit;
}

template <typename Made>
Made& ParameterPage::keep(BoundField bound, std::unique_ptr<Made> binding) {
    Made& made = *binding;
    bindings_.push_back({bound, -1, this, std::move(binding)});
    return made;
}

SliderBinding& ParameterPage::addSlider(const SliderRow& row, const QString& name, QWidget* parent) {
    CBitmapSlider* slider = makeSlider(row, name, parent);
    NumberEdit* edit = makeEdit(row.editId, row.edit, row.color, name, parent);
    SliderBinding& made = keep(
        row.bound, std::make_unique<SliderBinding>(
                       *slider, *edit, sliderScale(row.bound.field, row.orientation), writer(row.bound)));
    sliders_[row.sliderId] = &made;
    return made;
}

DelayBinding& ParameterPage::addDelay(const SliderRow& row, int distanceId, const QRect& distance,
                                      const QString& name, QWidget* parent) {
    CBitmapSlider* slider = makeSlider(row, name, parent);
    NumberEdit* edit = makeEdit(row.editId, row.edit, row.color, name, parent);
    NumberEdit* distanceEdit =
        makeEdit(distanceId, distance, row.color, name + QStringLiteral(" distance"), parent);
    DelayBinding& made =
        keep(row.bound, std::make_unique<DelayBinding>(*slider, *edit, *distanceEdit,
                                                       sliderScale(row.bound.field, row.orientation),
                                                       writer(row.bound)));
    sliders_[row.sliderId] = &made;
    return made;
}

NumberBinding& ParameterPage::addNumber(BoundField bound, int id, const QRect& place, QRgb color,
                                        const QString& name, QWidget* parent) {
    NumberEdit* edit = makeEdit(id, place, color, name, parent);
    return keep(bound, std::make_unique<NumberBinding>(*edit, sliderScale(bound.field, Qt::Horizontal),
                                                       writer(bound)));
}

SpinBinding& ParameterPage::addSpin(BoundField bound, int id, const QRect& place, const QString& name,
                                    QWidget* parent) {
    auto* spin = new SpinEdit(id, parent);
    spin->setGeometry(placeIn(parent, place));
    spin->setAccessibleName(name);
    return keep(
        bound, std::make_unique<SpinBinding>(*spin, sliderScale(bound.field, Qt::Horizontal), writer(bound)));
}

CheckBinding& ParameterPage::addCheck(BoundField bound, int id, const QRect& place, const QString& caption,
                                      bool inverted, const QString& name, QWidget* parent) {
    auto* box = new SkinCheckBox(caption, id, parent);
    box->setGeometry(placeIn(parent, place));
    box->setAccessibleName(name);
    return keep(bound, std::make_unique<CheckBinding>(*box, inverted, writer(bound)));
}

ComboBinding& ParameterPage::addCombo(BoundField bound, int id, const QRect& place,
                                      const QStringList& entries, std::vector<int> codes, const QString& name,
                                      QWidget* parent) {
    auto* list = new SkinComboBox(id, parent);
    list->setGeometry(placeIn(parent, place));
    list->addItems(entries);
    list->setAccessibleName(name);
    return keep(bound, std::make_unique<ComboBinding>(*list, std::move(codes), writer(bound)));
}

void ParameterPage::setReadingOrder(const std::vector<QWidget*>& controls) {
    for (std::size_t i = 0; i + 1 < controls.size(); ++i) {
        QWidget::setTabOrder(controls[i], controls[i + 1]);
    }
}

void ParameterPage::showEvent(QShowEvent* event) {
    CTabDialog::showEvent(event);
    updateMarks();
}

bool ParameterPage::event(QEvent* event) {
    if (!SliderEvent::isSliderEvent(*event)) {
        return CTabDialog::event(event);
    }
    form_.takeSliderEvent(*event);
    const auto& moved = static_cast<const SliderEvent&>(*event);
    const auto slider = sliders_.find(moved.controlId());
    if (slider != sliders_.end() && (moved.isFinal() || !sliderAtWork_)) {
        const QScopedValueRollback atWork(sliderAtWork_, true);
        slider->second->moved(moved.position(), moved.isFinal());
    }
    return true;
}

}  // namespace tessavo
