#pragma once

#include <QTimer>

#include "app/compare_curves.h"
#include "app/compare_model.h"
#include "app/compare_side.h"
#include "app/compare_tree.h"
#include "app/set_edits.h"
#include "controls/dialog_sk.h"

namespace tessavo {

class CColorControl;
class CxSkinButton;
class SkinCheckBox;
class UndoCommands;

/// "Compare": two sets side by side, by channel; chosen values are copied into the side that can be written, as one step.
/// Not modal: it follows the pages, and the pages follow it.
class CompareDialog : public CDialogSK {
    Q_OBJECT

 public:
    struct Dependencies {
        const TuningState& tuning;
        UndoCommands& undo;
        IFileDialogs& dialogs;
        SetEdits& edits;
        CompareSources sources = {};
    };

    static constexpr QSize usualSize{940, 660};
    static constexpr QSize leastSize{600, 330};

    /// Left shows the current set, right the set after it.
    /// \param dependencies outlive the dialog
    explicit CompareDialog(Dependencies dependencies, QWidget* parent = nullptr);

    [[nodiscard]] CompareSide& left() { return *left_; }
    [[nodiscard]] CompareSide& right() { return *right_; }
    [[nodiscard]] CompareTree& tree() { return *tree_; }
    [[nodiscard]] CompareModel& model() { return model_; }
    [[nodiscard]] CompareChart& chart() { return *chart_; }
    /// What stands at the foot.
    [[nodiscard]] QString message() const;

 protected:
    void paintBackground(QPainter& painter, QSize size) const override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    void makeHead();
    void makeTree();
    void makeFoot();
    void setTabOrders();
    void compareAnew();
    void compareSoon();
    void showCurves();
    void showFoot();
    void showTrouble(const QString& text);
    void exchange();
    void copy();
    /// The side that chosen values go to; null where neither can be written.
    [[nodiscard]] const CompareSide* destination() const;
    [[nodiscard]] std::uint32_t baseSet(const CompareSide* other) const;
    [[nodiscard]] QString footText() const;

    Dependencies dependencies_;
    CompareModel model_;
    CurveMaker curves_;
    SkinCheckBox* differencesOnly_ = nullptr;
    SkinCheckBox* realOnly_ = nullptr;
    CompareSide* left_ = nullptr;
    CxSkinButton* exchange_ = nullptr;
    CompareSide* right_ = nullptr;
    CompareTree* tree_ = nullptr;
    CompareChart* chart_ = nullptr;
    CColorControl* message_ = nullptr;
    CxSkinButton* copy_ = nullptr;
    CxSkinButton* close_ = nullptr;
    QTimer soon_;
    QString trouble_;  ///< of the last source that could not be read
};

}  // namespace tessavo
