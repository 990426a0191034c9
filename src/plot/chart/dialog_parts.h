#pragma once

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFont>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStringList>

#include "plot/chart/chart.h"
#include "plot/chart/chart_host.h"

namespace tessavo {

// Makers of the settings dialogs' controls: each has its look, its name for a screen reader and a parent.

[[nodiscard]] QPushButton* makeButton(const QString& text, QWidget* parent);
[[nodiscard]] QLineEdit* makeEdit(const QString& name, QWidget* parent);
[[nodiscard]] QComboBox* makeCombo(const QString& name, const QStringList& items, QWidget* parent);
[[nodiscard]] QSpinBox* makeSpin(const QString& name, int minimum, int maximum, QWidget* parent);
[[nodiscard]] QCheckBox* makeCheck(const QString& text, QWidget* parent);
[[nodiscard]] QLabel* makeLabel(const QString& text, QWidget* parent);

/// Dialog with "OK" (Enter) and "Cancel" (Escape) at its foot.
class SettingsDialog : public QDialog {
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
    QPushButton* previous_ = nullptr;
    QPushButton* next_ = nullptr;
};

/// Title text and title font.
class TitleGroup : public QGroupBox {
    Q_OBJECT

 public:
    TitleGroup(IChartHost& host, QWidget* parent);
    void show(const QString& title, const QFont& font);
    [[nodiscard]] QString titleText() const { return edit_->text(); }
    [[nodiscard]] const QFont& titleFont() const { return font_; }

 private:
    void describeFont();

    QLineEdit* edit_;
    QLabel* description_;
    QFont font_;
};

/// The four grids of the left and the bottom axis.
class GridsGroup : public QGroupBox {
    Q_OBJECT

 public:
    GridsGroup(const CChart& chart, QWidget* parent);
    void apply(CChart& chart) const;

 private:
    QCheckBox* majorHorizontal_;
    QCheckBox* majorVertical_;
    QCheckBox* minorHorizontal_;
    QCheckBox* minorVertical_;
};

/// Name, size and style of a font, for people.
[[nodiscard]] QString fontDescription(const QFont& font);

}  // namespace tessavo
