#pragma once

#include <QAbstractButton>
#include <QRect>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pages/form/binding.h"
#include "pages/rows/control_row.h"

class QEvent;
class QLabel;

namespace tessavo {

class CBitmapSlider;
class SkinGroupBox;

/// A field behind a control; `element` is the band, crossover or position that the control belongs to.
struct BoundField {
    FieldId field;
    std::size_t element = 0;
};

[[nodiscard]] QRect rectOf(const Bounds& bounds);
/// A text of the rows, which is UTF-8.
[[nodiscard]] QString textOf(std::string_view text);
void setTextColour(QLabel& label, Colour colour);

/// Makes the controls of a page's rows, puts them where the rows say, and binds them to their fields.
///
/// The controls belong to the page; the form keeps their bindings and finds both again by number. It knows
/// no settings: what a person does goes to the writer. User-interface thread.
class Form {
 public:
    /// Gives what takes the values that a person sets in the controls of a field.
    using Writer = std::function<Binding::Write(BoundField)>;

    /// A control with a field behind it.
    struct Bound {
        BoundField to;
        int identifier;
        const QWidget* group;  ///< parent of the control
        std::unique_ptr<Binding> binding;
    };

    /// \param page the rows' places are inside it; outlives the form
    /// \param writer without one nothing is bound
    explicit Form(QWidget& page, Writer writer = {});
    ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    /// What becomes of texts in the boxes of the rows to come. Each kind has its own without a call.
    void setTyping(Typing typing) { typing_ = typing; }

    /// Makes the control of a row that only its page knows, as a child of `parent`.
    using MakeOwn = std::function<QWidget*(const ControlRow& row, QWidget& parent)>;

    /// Makes the controls of these rows. May be called again for more.
    /// \param makeOwn for rows of the kind `own`; these are left out without it
    void build(std::span<const ControlRow> rows, const MakeOwn& makeOwn = {});

    /// The control with this number. It exists and is of this kind.
    template <typename Control>
    [[nodiscard]] Control& control(int identifier) const {
        return *qobject_cast<Control*>(controls_.at(identifier));
    }
    /// The binding of the control with this number; of a slider's, not of its box.
    template <typename Kind>
    [[nodiscard]] Kind& binding(int identifier) const {
        return *qobject_cast<Kind*>(&bindingOf(identifier));
    }
    [[nodiscard]] std::span<const Bound> bindings() const { return bindings_; }
    /// The first group with this title.
    [[nodiscard]] SkinGroupBox& group(std::string_view title) const;
    /// The label at a place of the page.
    [[nodiscard]] QLabel& labelAt(const Bounds& bounds) const;

    /// Shows a group as switched on or off: its bar, and the colours of all that is bound inside.
    void setInCircuit(std::string_view title, bool on);
    /// Runs an action whenever a person presses the button with this number.
    template <typename Action>
    void onClick(int identifier, Action action) const {
        QObject::connect(&control<QAbstractButton>(identifier), &QAbstractButton::clicked, &page_,
                         std::move(action));
    }

    /// For the page's event(): tells the slider's binding of a move.
    /// \return false for any other event, which is left alone
    bool takeSliderEvent(const QEvent& event);

    /// A rectangle of the page in the coordinates of a control on it.
    [[nodiscard]] QRect boundsIn(const QWidget& parent, const Bounds& bounds) const;

 private:
    void make(const ControlRow& row, QWidget& parent);
    void makeGroup(const ControlRow& row, QWidget& parent);
    void makeLabel(const ControlRow& row, QWidget& parent);
    void makeLine(const ControlRow& row, QWidget& parent);
    void makeButton(const ControlRow& row, QWidget& parent);
    void makeCheck(const ControlRow& row, QWidget& parent);
    void makeCombo(const ControlRow& row, QWidget& parent);
    void makeSlider(const ControlRow& row, QWidget& parent);
    void makeNumber(const ControlRow& row, QWidget& parent);
    void makeSpin(const ControlRow& row, QWidget& parent);
    NumberEdit& makeEdit(const ControlRow& row, int identifier, const Bounds& bounds, QWidget& parent);
    QLabel& addLabel(const QString& text, const Bounds& bounds, TextSide side, Colour colour, int pixels,
                     QWidget& parent);
    /// Gives a new control its place and its name.
    void put(QWidget& control, const ControlRow& row);
    template <typename Kind, typename... Controls>
    void bind(const ControlRow& row, QWidget& parent, Controls&&... controls);
    void orderEdits(std::span<const ControlRow> rows);
    [[nodiscard]] QWidget& parentOf(const ControlRow& row) const;
    [[nodiscard]] Binding& bindingOf(int identifier) const;

    struct Group {
        Bounds bounds;
        std::string title;
        SkinGroupBox* box;
        bool isHidden;
    };

    QWidget& page_;
    Writer writer_;
    std::optional<Typing> typing_;
    std::vector<Group> groups_;
    std::vector<std::pair<Bounds, QLabel*>> labels_;
    std::map<int, QWidget*> controls_;  ///< by number
    std::map<int, SliderBinding*> sliders_;
    std::vector<Bound> bindings_;
    bool sliderAtWork_ = false;  ///< moves of other sliders meanwhile are ignored
};

}  // namespace tessavo
