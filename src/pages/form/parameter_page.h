#pragma once

#include <QString>
#include <vector>

#include "controls/tab_dialog.h"
#include "pages/form/form.h"
#include "params/tuning_state.h"

namespace tessavo {

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

    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    [[nodiscard]] Binding::Write writer(BoundField bound);
    [[nodiscard]] QString playedText(const Form::Bound& bound) const;
    [[nodiscard]] QString mixedNote(const Form::Bound& bound, const std::vector<Holder>& holders) const;

    TuningState& tuning_;
    Form form_;
};

}  // namespace tessavo
