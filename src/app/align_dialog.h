#pragma once

#include <array>
#include <optional>

#include "app/align_rows.h"
#include "controls/dialog_sk.h"
#include "measure/alignment.h"
#include "params/tuning_state.h"

class QScrollArea;

namespace tessavo {

class AlignVerdict;
class CColorControl;
class CxSkinButton;
class NumberEdit;
class SkinRadioButton;

/// What a person tells of the loudspeakers, as it was typed.
struct AlignInputs {
    AlignmentUnit unit = AlignmentUnit::centimeters;
    AlignTexts distances{};
    AlignTexts times{};
    QString celsius = QStringLiteral("20");
};

/// "Align": delays from the distances of the eight loudspeakers, or from the times of their sound. Worked out anew at every
/// edit. Changes nothing itself: what Apply accepts is record(), for a whole-set write.
class AlignDialog : public CDialogSK {
    Q_OBJECT

 public:
    /// On a smaller screen all but the foot scrolls.
    static constexpr QSize usualSize{860, 486};

    /// \param tuning outlives the dialog
    /// \param inputs that it begins with
    AlignDialog(const TuningState& tuning, const AlignInputs& inputs, QWidget* parent = nullptr);

    [[nodiscard]] AlignInputs inputs() const;
    /// The current set with the delays; without a change where something that was typed is no number.
    [[nodiscard]] ParameterSet record() const;

    [[nodiscard]] AlignRows& rows() { return *rows_; }
    [[nodiscard]] AlignVerdict& verdict() { return *verdict_; }

 protected:
    void paintBackground(QPainter& painter, QSize size) const override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void makeHead();
    void makeFoot();
    void setTabOrders();
    void showUnit(AlignmentUnit unit);
    void alignAnew();
    void showVerdict();
    void showShortfall();
    void showWrong(PagePosition position);

    const TuningState& tuning_;
    QScrollArea* area_ = nullptr;
    QWidget* body_;       ///< of all but the foot
    AlignInputs inputs_;  ///< texts of the unit that is not shown, besides
    std::optional<Alignment> alignment_;
    SkinRadioButton* byDistance_ = nullptr;
    SkinRadioButton* byTime_ = nullptr;
    NumberEdit* celsius_ = nullptr;
    CColorControl* speed_ = nullptr;
    AlignRows* rows_ = nullptr;
    AlignVerdict* verdict_ = nullptr;
    CColorControl* note_ = nullptr;
    CxSkinButton* apply_ = nullptr;
    CxSkinButton* cancel_ = nullptr;
};

}  // namespace tessavo
