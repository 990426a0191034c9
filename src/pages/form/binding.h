#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "pages/form/value_scale.h"
#include "params/tuning_state.h"

namespace tessavo {

class CBitmapSlider;
class NumberEdit;
class SkinCheckBox;
class SkinComboBox;
class SpinEdit;

/// What becomes of a text that a person types into an edit box. Escape puts back the value that was there
/// before, also one that the controls cannot show.
enum class Typing {
    kept,       ///< taken by Enter or by leaving the box, and left as it was typed
    rewritten,  ///< taken in the same way, and rewritten with what was taken
    followed,   ///< taken at every change, not final; by Enter or by leaving the box final and rewritten
};

/// Keeps the controls of one parameter in step with each other and with its value. The controls belong to
/// their parent widget and live as long as the binding.
class Binding : public QObject {
    Q_OBJECT

 public:
    /// Takes a value that a person has set; `final` is false while a slider moves.
    using Write = std::function<void(double value, bool final)>;

    explicit Binding(Write write) : write_(std::move(write)) {}

    /// Shows a value, clamped to what the controls can hold. Writes nothing.
    virtual void show(double value) = 0;
    /// Takes the colour of the controls away, or gives it back.
    virtual void setBypassed(bool) {}
    /// Marks a box whose number is not what is in force, or not what plays.
    ///
    /// \param inForce value of the record
    /// \param played what plays in its place, as a sentence; empty where it plays
    virtual void mark([[maybe_unused]] double inForce, [[maybe_unused]] const QString& played) {}
    /// That sentence for an element of a field.
    [[nodiscard]] virtual QString played(const TuningState& tuning, FieldId field, FieldIndex index) const;

    // For a value that belongs to several channels at once. What is never assigned to several shows no marks.

    /// Whether the controls stand where show() would put them for a value.
    [[nodiscard]] virtual bool shows(double) const { return true; }
    /// A stored value in words, without a unit. Different values have different words.
    [[nodiscard]] virtual QString words(double) const { return {}; }
    /// Marks the controls with a note about the channels' values; takes the marks away without one.
    virtual void setMixed(const QString&) {}

 protected:
    Write write_;
};

/// An edit box for a number within the field's range. Its text is rewritten unless the page says otherwise.
class NumberBinding : public Binding {
    Q_OBJECT

 public:
    NumberBinding(NumberEdit& edit, const ValueScale& scale, Write write, Typing typing = Typing::rewritten);

    void show(double value) override;
    void setBypassed(bool bypassed) override;
    [[nodiscard]] bool shows(double value) const override;
    [[nodiscard]] QString words(double value) const override;
    void setMixed(const QString& note) override;
    void mark(double inForce, const QString& played) override;

    [[nodiscard]] NumberEdit& edit() { return edit_; }
    void setTyping(Typing typing) { typing_ = typing; }

    /// Takes the text of the box: clamped, and the text becomes what `Typing` says.
    virtual void applyText();

 protected:
    [[nodiscard]] const ValueScale& scale() const { return scale_; }
    /// Where the value stands on its scale.
    [[nodiscard]] virtual int position() const { return position_; }
    virtual void setPosition(int position) { position_ = position; }
    /// Writes the value at a position into the box, or boxes.
    virtual void showText(int position);
    void moveTo(int position);
    /// Position that the text of the box asks for.
    [[nodiscard]] int typed() const;
    void write(double value, bool final);
    [[nodiscard]] bool isBusy() const { return busy_; }
    /// Runs an action whose changes of the controls are not a person's.
    template <typename Action>
    void whileBusy(Action action);

 private:
    void leave();
    void followText();
    void takeBack();
    void step(int steps, bool coarse);

    NumberEdit& edit_;
    ValueScale scale_;
    Typing typing_;
    int position_ = 0;
    bool busy_ = false;
    bool follows_ = false;  ///< the value of a text under way is written
    double held_ = 0;       ///< last value that was shown or written by something else than such a text
};

/// A slider with the edit box of its number. A text in the box is kept unless the page says otherwise.
class SliderBinding : public NumberBinding {
    Q_OBJECT

 public:
    SliderBinding(CBitmapSlider& slider, NumberEdit& edit, const ValueScale& scale, Write write);

    void setBypassed(bool bypassed) override;
    [[nodiscard]] bool shows(double value) const override;
    void setMixed(const QString& note) override;

    [[nodiscard]] CBitmapSlider& slider() { return slider_; }
    /// Value that the slider stands at.
    [[nodiscard]] double value() const;

    /// A person has moved the slider: the box follows and the value is written. Ignored while the binding
    /// itself is at work, unless `final`.
    void moved(int position, bool final);

 protected:
    [[nodiscard]] int position() const override;
    void setPosition(int position) override;

 private:
    CBitmapSlider& slider_;
};

/// A delay: slider and box in milliseconds, and a second box with the distance that sound goes in that time.
class DelayBinding : public SliderBinding {
    Q_OBJECT

 public:
    DelayBinding(CBitmapSlider& slider, NumberEdit& edit, NumberEdit& distance, const ValueScale& scale,
                 Write write);

    void setBypassed(bool bypassed) override;
    void setMixed(const QString& note) override;
    void mark(double inForce, const QString& played) override;
    /// Both boxes are rewritten with what was taken.
    void applyText() override;

    /// Takes a distance typed in centimetres; only the box of the time is rewritten.
    void applyDistance();

 protected:
    void showText(int position) override;

 private:
    [[nodiscard]] TypedNumber typedDistance() const;

    NumberEdit& distance_;
};

/// A small whole number with an up-down column. Every change by a person is final.
class SpinBinding : public Binding {
    Q_OBJECT

 public:
    SpinBinding(SpinEdit& spin, const ValueScale& scale, Write write);

    void show(double value) override;
    void mark(double inForce, const QString& played) override;
    [[nodiscard]] SpinEdit& spin() { return spin_; }

 private:
    SpinEdit& spin_;
    ValueScale scale_;
};

/// A check box for a switch; an inverted one is checked where the field is 0.
class CheckBinding : public Binding {
    Q_OBJECT

 public:
    CheckBinding(SkinCheckBox& box, bool inverted, Write write);

    void show(double value) override;
    [[nodiscard]] bool shows(double value) const override;
    [[nodiscard]] QString words(double value) const override;
    void setMixed(const QString& note) override;
    void mark(double inForce, const QString& played) override;
    /// Also tells of a code that the control has no state for.
    [[nodiscard]] QString played(const TuningState& tuning, FieldId field, FieldIndex index) const override;
    [[nodiscard]] SkinCheckBox& box() { return box_; }

 private:
    SkinCheckBox& box_;
    bool inverted_;
};

/// A list whose entries stand for codes. A code that no entry has leaves the list without a selection.
class ComboBinding : public Binding {
    Q_OBJECT

 public:
    /// \param codes one for each entry of the list
    ComboBinding(SkinComboBox& list, std::vector<int> codes, Write write);

    void show(double value) override;
    [[nodiscard]] bool shows(double value) const override;
    [[nodiscard]] QString words(double value) const override;
    void setMixed(const QString& note) override;
    void mark(double inForce, const QString& played) override;
    /// Also tells of a code that the control has no entry for.
    [[nodiscard]] QString played(const TuningState& tuning, FieldId field, FieldIndex index) const override;
    [[nodiscard]] SkinComboBox& list() { return list_; }
    /// Code of the selected entry, -1 without one.
    [[nodiscard]] int code() const;

 private:
    [[nodiscard]] int indexOf(double value) const;

    SkinComboBox& list_;
    std::vector<int> codes_;
};

}  // namespace tessavo
