#include "controls/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "controls/bitmap_slider.h"
#include "controls/clip_light.h"
#include "controls/skin_group_box.h"
#include "controls/state_lamp.h"
#include "controls/transfer_line.h"

namespace tessavo {
namespace {

/// A widget with a value: assistive technology reads it as a number and as a text.
class ValueWidget : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) {
            return static_cast<QAccessibleValueInterface*>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? valueText() : QAccessibleWidget::text(kind);
    }

 protected:
    ValueWidget(QWidget& widget, QAccessible::Role role) : QAccessibleWidget(&widget, role) {}
    [[nodiscard]] virtual QString valueText() const = 0;
};

class SliderInterface : public ValueWidget {
 public:
    explicit SliderInterface(CBitmapSlider& slider)
        : ValueWidget(slider, QAccessible::Slider), slider_(slider) {}

    [[nodiscard]] QVariant currentValue() const override { return slider_.valueOf(slider_.position()); }
    void setCurrentValue(const QVariant& value) override {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (isNumber) {
            slider_.setValueByUser(number);
        }
    }
    // With a negative scale the lowest position has the highest value.
    [[nodiscard]] QVariant minimumValue() const override {
        return qMin(slider_.valueOf(slider_.minimum()), slider_.valueOf(slider_.maximum()));
    }
    [[nodiscard]] QVariant maximumValue() const override {
        return qMax(slider_.valueOf(slider_.minimum()), slider_.valueOf(slider_.maximum()));
    }
    [[nodiscard]] QVariant minimumStepSize() const override { return qAbs(slider_.valuePerStep()); }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (slider_.isEnabled()) {
            names << increaseAction() << decreaseAction();
        }
        return names;
    }
    void doAction(const QString& name) override {
        if (name == increaseAction()) {
            slider_.stepValueByUser(1);
        } else if (name == decreaseAction()) {
            slider_.stepValueByUser(-1);
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

 protected:
    [[nodiscard]] QString valueText() const override { return slider_.valueText(); }

 private:
    CBitmapSlider& slider_;
};

class TransferInterface : public ValueWidget {
 public:
    explicit TransferInterface(TransferLine& line)
        : ValueWidget(line, QAccessible::ProgressBar), line_(line) {}

    [[nodiscard]] QVariant currentValue() const override { return line_.blocksSent(); }
    void setCurrentValue(const QVariant& /*value*/) override {}
    [[nodiscard]] QVariant minimumValue() const override { return 0; }
    [[nodiscard]] QVariant maximumValue() const override { return line_.blocks(); }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }

 protected:
    [[nodiscard]] QString valueText() const override { return line_.text(); }

 private:
    TransferLine& line_;
};

/// A widget that needs no more than its role, name and description.
class PlainInterface : public QAccessibleWidget {
 public:
    PlainInterface(QWidget& widget, QAccessible::Role role) : QAccessibleWidget(&widget, role) {}
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    if (auto* slider = qobject_cast<CBitmapSlider*>(object)) {
        return new SliderInterface(*slider);
    }
    if (auto* line = qobject_cast<TransferLine*>(object)) {
        return new TransferInterface(*line);
    }
    if (auto* group = qobject_cast<SkinGroupBox*>(object)) {
        return new PlainInterface(*group, QAccessible::Grouping);
    }
    if (auto* light = qobject_cast<ClipLight*>(object)) {
        return new PlainInterface(*light, QAccessible::Indicator);
    }
    if (auto* lamp = qobject_cast<StateLamp*>(object)) {
        return new PlainInterface(*lamp, QAccessible::Indicator);
    }
    return nullptr;
}

}  // namespace

void installAccessibility() {
    QAccessible::installFactory(makeInterface);
}

void announceValue(QWidget& control, double value) {
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(&control, value);
        QAccessible::updateAccessibility(&event);
    }
}

void announceText(QWidget& control) {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&control, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
}

}  // namespace tessavo
