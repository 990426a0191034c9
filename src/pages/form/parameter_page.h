#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <map>
#include <memory>
#include <vector>

#include "controls/tab_dialog.h"
#include "controls/theme.h"
#include "pages/form/binding.h"
#include "pages/form/form.h"
#include "params/tuning_state.h"

class QLabel;

namespace tessavo {

class CBitmapSlider;
class CxSkinButton;
class NumberEdit;
class SkinGroupBox;

/// Place and look of a slider with its edit box. Rectangles are page pixels.
struct SliderRow {
    BoundField bound;
    int sliderId;
    int editId;
    Qt::Orientation orientation;
    QRect slider;
    QRect edit;
    QRgb color;
};

/// A page that edits fields of the current set: it makes the controls of a table's rows, keeps each bound to
/// its field, and reads all of them again on a refresh.
class ParameterPage : public CTabDialog {
    Q_OBJECT

 public:
    /// \param tuning outlives the page.
    explicit ParameterPage(TuningState& tuning, QWidget* parent = nullptr);
    ~ParameterPage() override;

    /// Shows the current set. Neither writes a value nor raises `updatePending`.
    void refresh() override;

 protected:
    [[nodiscard]] Form& form() { return form_; }
    [[nodiscard]] const Form& form() const { return form_; }
    [[nodiscard]] TuningState& tuning() { return tuning_; }
    [[nodiscard]] const TuningState& tuning() const { return tuning_; }

    /// Element of a repeated field that a control shows; `element` unless the page says otherwise.
    [[nodiscard]] virtual FieldIndex elementOf(BoundField bound) const;
    /// Carries out an edit; `TuningState::edit` unless the page says otherwise.
    /// \param value as a person reads it, in the field's unit
    virtual void write(BoundField bound, double value, bool final);
    /// Called after every refresh and every edit, for what depends on other values: bars, colours.
    virtual void updateLook() {}
    /// Marks every control that shows something else than what is in force or what plays. Called after every
    /// refresh and every edit, and when the page comes to the front: another page's edit may count here.
    virtual void updateMarks();
    /// Element that the marks of a control go by; that which it shows unless the page says otherwise.
    [[nodiscard]] virtual FieldIndex markedElement(BoundField bound) const { return elementOf(bound); }

    /// Something that has values of its own for the page's controls.
    struct Holder {
        QString name;
        std::size_t element;  ///< in the outer dimension of the controls' fields
    };

    /// All that an edit goes to where that is not just the element above: what plays is told of each.
    [[nodiscard]] virtual std::vector<Holder> markedHolders() const;

    /// Value that the current set holds, as a person reads it.
    [[nodiscard]] double shown(BoundField bound) const;

    /// Marks every control whose value is not the same for all holders, or not the one that the control
    /// shows, with a note that tells each holder's value; takes all marks away without a holder.
    void markMixed(const std::vector<Holder>& holders);

    // For pages that do not yet hand rows to the form.
    // Each makes a control at a place in page pixels, inside `parent`: the page itself or a group on it.
    SkinGroupBox* addGroup(const QString& title, const QRect& place, QWidget* parent = nullptr);
    QLabel* addLabel(const QString& text, const QRect& place, QWidget* parent,
                     Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter, QRgb color = theme::text2,
                     int pixelSize = 11);
    /// A hairline between parts of a group.
    void addLine(const QRect& place, QWidget* parent, QRgb color = theme::line);
    CxSkinButton* addButton(const QString& caption, int id, const QRect& place, QWidget* parent);
    /// \param name what screen readers call slider and box
    SliderBinding& addSlider(const SliderRow& row, const QString& name, QWidget* parent);
    /// \param distanceId, distance box of the centimetres
    DelayBinding& addDelay(const SliderRow& row, int distanceId, const QRect& distance, const QString& name,
                           QWidget* parent);
    NumberBinding& addNumber(BoundField bound, int id, const QRect& place, QRgb color, const QString& name,
                             QWidget* parent);
    SpinBinding& addSpin(BoundField bound, int id, const QRect& place, const QString& name, QWidget* parent);
    CheckBinding& addCheck(BoundField bound, int id, const QRect& place, const QString& caption,
                           bool inverted, const QString& name, QWidget* parent);
    ComboBinding& addCombo(BoundField bound, int id, const QRect& place, const QStringList& entries,
                           std::vector<int> codes, const QString& name, QWidget* parent);

    /// Tab goes through the controls in this order.
    static void setReadingOrder(const std::vector<QWidget*>& controls);

    // The controls alone, for a page that binds them itself.
    [[nodiscard]] CBitmapSlider* makeSlider(const SliderRow& row, const QString& name, QWidget* parent);
    [[nodiscard]] NumberEdit* makeEdit(int id, const QRect& place, QRgb color, const QString& name,
                                       QWidget* parent);

    /// A page rectangle in the coordinates of `parent`.
    [[nodiscard]] QRect placeIn(const QWidget* parent, const QRect& place) const;

    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    using Bound = Form::Bound;

    template <typename Visit>
    void forEachBound(Visit visit) const;
    [[nodiscard]] Binding::Write writer(BoundField bound);
    [[nodiscard]] QString playedText(const Bound& bound) const;
    [[nodiscard]] QString mixedNote(const Bound& bound, const std::vector<Holder>& holders) const;
    template <typename Made>
    Made& keep(BoundField bound, std::unique_ptr<Made> binding);

    TuningState& tuning_;
    Form form_;
    std::vector<Bound> bindings_;
    std::map<int, SliderBinding*> sliders_;  ///< by control id
    bool sliderAtWork_ = false;              ///< moves of other sliders meanwhile are ignored
};

}  // namespace tessavo
