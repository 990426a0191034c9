#include "plot/chart/dialog_parts.h"

#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>

#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int controlHeight = 26;

}  // namespace

QPushButton* makeButton(const QString& text, QWidget* parent) {
    auto* const button = new QPushButton(text, parent);
    button->setFont(theme::font(12, QFont::Medium));
    button->setAutoDefault(false);
    button->setFixedHeight(28);
    button->setMinimumWidth(84);
    return button;
}

QLineEdit* makeEdit(const QString& name, QWidget* parent) {
    auto* const edit = new QLineEdit(parent);
    edit->setFont(theme::font(12));
    edit->setAccessibleName(name);
    edit->setFixedHeight(controlHeight);
    return edit;
}

QComboBox* makeCombo(const QString& name, const QStringList& items, QWidget* parent) {
    auto* const combo = new QComboBox(parent);
    combo->setFont(theme::font(12));
    combo->addItems(items);
    combo->setAccessibleName(name);
    combo->setFixedHeight(controlHeight);
    return combo;
}

QSpinBox* makeSpin(const QString& name, int minimum, int maximum, QWidget* parent) {
    auto* const spin = new QSpinBox(parent);
    spin->setFont(theme::font(12));
    spin->setRange(minimum, maximum);
    spin->setAccessibleName(name);
    spin->setFixedHeight(controlHeight);
    spin->setMinimumWidth(84);
    return spin;
}

QCheckBox* makeCheck(const QString& text, QWidget* parent) {
    auto* const check = new QCheckBox(text, parent);
    check->setFont(theme::font(12));
    return check;
}

QLabel* makeLabel(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    label->setFont(theme::font(11));
    return label;
}

SettingsDialog::SettingsDialog(const QString& title, QWidget* parent)
    : QDialog(parent,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      body_(new QVBoxLayout(this)) {
    setWindowTitle(title);
    body_->setContentsMargins(12, 12, 12, 12);
    body_->setSpacing(10);
    body_->setSizeConstraint(QLayout::SetFixedSize);
}

void SettingsDialog::addFoot(bool steps) {
    auto* const foot = new QHBoxLayout;
    foot->setSpacing(8);
    if (steps) {
        previous_ = makeButton(QStringLiteral("<< Previous"), this);
        next_ = makeButton(QStringLiteral("Next >>"), this);
        connect(previous_, &QPushButton::clicked, this, [this] { step(-1); });
        connect(next_, &QPushButton::clicked, this, [this] { step(1); });
        foot->addWidget(previous_);
        foot->addWidget(next_);
    }
    auto* const ok = makeButton(QStringLiteral("OK"), this);
    auto* const cancel = makeButton(QStringLiteral("Cancel"), this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] {
        if (apply()) {
            accept();
        }
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    foot->addSpacing(24);
    foot->addStretch();
    foot->addWidget(ok);
    foot->addWidget(cancel);
    body_->addLayout(foot);
}

void SettingsDialog::enableSteps(bool previous, bool next) {
    previous_->setEnabled(previous);
    next_->setEnabled(next);
}

TitleGroup::TitleGroup(IChartHost& host, QWidget* parent) : QGroupBox(QStringLiteral("Title"), parent) {
    edit_ = makeEdit(QStringLiteral("Title"), this);
    edit_->setMaxLength(100);
    description_ = makeLabel({}, this);
    auto* const choose = makeButton(QStringLiteral("Choose Font..."), this);
    connect(choose, &QPushButton::clicked, this, [this, &host] {
        if (const auto chosen = host.askFont(this, font_)) {
            font_ = *chosen;
            describeFont();
        }
    });
    auto* const grid = new QGridLayout(this);
    grid->addWidget(edit_, 0, 0, 1, 3);
    grid->addWidget(makeLabel(QStringLiteral("Title font description"), this), 1, 0);
    grid->addWidget(description_, 1, 1);
    grid->addWidget(choose, 1, 2);
    grid->setColumnStretch(1, 1);
}

void TitleGroup::show(const QString& title, const QFont& font) {
    edit_->setText(title);
    font_ = font;
    describeFont();
}

void TitleGroup::describeFont() {
    description_->setText(fontDescription(font_));
}

GridsGroup::GridsGroup(const CChart& chart, QWidget* parent)
    : QGroupBox(QStringLiteral("Grids"), parent),
      majorHorizontal_(makeCheck(QStringLiteral("Major Horizontal Grids"), this)),
      majorVertical_(makeCheck(QStringLiteral("Major Vertical Grids"), this)),
      minorHorizontal_(makeCheck(QStringLiteral("Minor Horizontal Grids"), this)),
      minorVertical_(makeCheck(QStringLiteral("Minor Vertical Grids"), this)) {
    // Level lines stand at the ticks of the upright axis.
    const AxisLook& upright = chart.axis(AxisSide::left).look();
    const AxisLook& level = chart.axis(AxisSide::bottom).look();
    majorHorizontal_->setChecked(upright.majorGrid);
    majorVertical_->setChecked(level.majorGrid);
    minorHorizontal_->setChecked(upright.minorGrid);
    minorVertical_->setChecked(level.minorGrid);
    auto* const grid = new QGridLayout(this);
    grid->addWidget(majorHorizontal_, 0, 0);
    grid->addWidget(majorVertical_, 0, 1);
    grid->addWidget(minorHorizontal_, 1, 0);
    grid->addWidget(minorVertical_, 1, 1);
    grid->setHorizontalSpacing(16);
}

void GridsGroup::apply(CChart& chart) const {
    const auto set = [&chart](AxisSide side, bool major, bool minor) {
        CAxis axis = chart.axis(side);
        AxisLook look = axis.look();
        look.majorGrid = major;
        look.minorGrid = minor;
        axis.setLook(look);
        chart.setAxis(axis);
    };
    set(AxisSide::left, majorHorizontal_->isChecked(), minorHorizontal_->isChecked());
    set(AxisSide::bottom, majorVertical_->isChecked(), minorVertical_->isChecked());
}

QString fontDescription(const QFont& font) {
    const QFontInfo info(font);
    QString text = QStringLiteral("%1, %2 px").arg(info.family()).arg(info.pixelSize());
    if (font.weight() > QFont::Medium) {
        text += QStringLiteral(", bold");
    }
    if (font.italic()) {
        text += QStringLiteral(", italic");
    }
    return text;
}

}  // namespace tessavo
