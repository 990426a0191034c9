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

namespace tessavo {

// Makers of the settings dialogs' controls: each has its look, its name for a screen reader and a parent.

[[nodiscard]] CxSkinButton* makeButton(const QString& text, QWidget* parent);
[[nodiscard]] TextEditBox* makeEdit(const QString& name, QWidget* parent);
[[nodiscard]] SkinComboBox* makeCombo(const QString& name, const QStringList& items, QWidget* parent);
[[nodiscard]] SpinEdit* makeSpin(const QString& name, int minimum, int maximum, QWidget* parent);
[[nodiscard]] SkinCheckBox* makeCheck(const QString& text, QWidget* parent);
[[nodiscard]] CColorControl* makeLabel(const QString& text, QWidget* parent);
/// A group with room for its title above whatever its layout holds.
[[nodiscard]] SkinGroupBox* makeGroup(const QString& title, QWidget* parent);
inline constexpr QMargins groupMargins{12, 30, 12, 12};

/// Dialog with "OK" (Enter) and "Cancel" (Escape) at its foot.
class SettingsDialog : public CDialogSK {
    Q_OBJECT

 public:
    SettingsDialog(const QString& title, QWidget* parent);

 protected:
    /// Takes what stands in the controls; false keeps the dialog open.
    virtual bool apply() = 0;

    [[nodiscard]] QVBoxLayout& body() { return *body_; }
    /// Call once, after the body is filled.
    /// \param steps adds "<< Previous" and "Next >>" in front
    void addFoot(bool steps);
    /// Another item was asked for: -1 or 1.
    virtual void step(int /*direction*/) {}
    void enableSteps(bool previous, bool next);

 private:
    QVBoxLayout* body_;
    CxSkinButton* previous_ = nullptr;
    CxSkinButton* next_ = nullptr;
};

/// Title text and title font.
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

/// The four grids of the left and the bottom axis.
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

/// Name, size and style of a font, for people.
[[nodiscard]] QString fontDescription(const QFont& font);

}  // namespace tessavo
