#pragma once

#include <QBoxLayout>
#include <QFont>
#include <QStringList>

#include "controls/color_control.h"
#include "controls/dialog_sk.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/spin_edit.h"
#include "controls/text_edit_box.h"
#include "plot/chart/chart.h"
#include "plot/chart/chart_host.h"

class QGridLayout;

namespace tessavo {

// Makers of the settings dialogs' controls: each has its look, its name for a screen reader and a parent.

[[nodiscard]] CxSkinButton* makeButton(const QString& text, QWidget* parent);
[[nodiscard]] TextEditBox* makeEdit(const QString& name, QWidget* parent);
[[nodiscard]] SkinComboBox* makeCombo(const QString& name, const QStringList& items, QWidget* parent);
[[nodiscard]] SpinEdit* makeSpin(const QString& name, int minimum, int maximum, QWidget* parent);
[[nodiscard]] SkinCheckBox* makeCheck(const QString& text, QWidget* parent);
[[nodiscard]] CColorControl* makeLabel(const QString& text, QWidget* parent);
/// A group box; its layout gets the margins `groupMargins`, which leave room for the title.
[[nodiscard]] SkinGroupBox* makeGroup(const QString& title, QWidget* parent);
inline constexpr QMargins groupMargins{12, 30, 12, 12};
/// The grid layout of a group, with its margins and with the usual distance between columns.
[[nodiscard]] QGridLayout* makeGrid(QWidget* group);

/// Dialog with "OK" (Enter) and "Cancel" (Escape) at its foot.
class SettingsDialog : public CDialogSK {
    Q_OBJECT

 public:
    SettingsDialog(const QString& title, QWidget* parent);

 protected:
    /// Applies what stands in the controls to the chart. Called by OK.
    /// \return false to keep the dialog open
    virtual bool apply() = 0;

    [[nodiscard]] QVBoxLayout& body() { return *body_; }
    /// Adds the row of buttons. A derived class calls it once, after it has filled the body.
    /// \param steps whether "<< Previous" and "Next >>" stand in front
    void addFoot(bool steps);
    /// Called by "<< Previous" with -1 and by "Next >>" with 1.
    virtual void step(int /*direction*/) {}
    void enableSteps(bool previous, bool next);

 private:
    QVBoxLayout* body_;
    CxSkinButton* previous_ = nullptr;
    CxSkinButton* next_ = nullptr;
};

/// Controls for a title and its font.
class TitleGroup : public SkinGroupBox {
    Q_OBJECT

 public:
    TitleGroup(IChartHost& host, QWidget* parent);
    void show(const QString& title, const QFont& font);
    [[nodiscard]] QString titleText() const { return edit_->text(); }
    [[nodiscard]] const QFont& titleFont() const { return font_; }

 private:
    void describeFont();

    TextEditBox* edit_;
    CColorControl* description_;
    QFont font_;
};

/// Check boxes for the four grids: major and minor lines of the left and the bottom axis.
class GridsGroup : public SkinGroupBox {
    Q_OBJECT

 public:
    GridsGroup(const CChart& chart, QWidget* parent);
    void apply(CChart& chart) const;

 private:
    SkinCheckBox* majorHorizontal_;
    SkinCheckBox* majorVertical_;
    SkinCheckBox* minorHorizontal_;
    SkinCheckBox* minorVertical_;
};

/// A font in words: name, size and style.
[[nodiscard]] QString fontDescription(const QFont& font);

}  // namespace tessavo
