#include "plot/chart/dialog_parts.h"

#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <algorithm>

#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int controlHeight = 26;
// Nothing looks for these controls by number.
constexpr int noId = -1;

}  // namespace

CxSkinButton* makeButton(const QString& text, QWidget* parent) {
    auto* const button = new CxSkinButton(text, noId, parent);
    button->setAutoDefault(false);
    button->setFixedHeight(28);
    button->setMinimumWidth(std::max(84, button->neededWidth()));
    return button;
}

TextEditBox* makeEdit(const QString& name, QWidget* parent) {
    auto* const edit = new TextEditBox(noId, parent);
    edit->setAccessibleName(name);
    edit->setFixedHeight(controlHeight);
    return edit;
}

SkinComboBox* makeCombo(const QString& name, const QStringList& items, QWidget* parent) {
    auto* const combo = new SkinComboBox(noId, parent);
    combo->addItems(items);
    combo->setAccessibleName(name);
    combo->setFixedHeight(controlHeight);
    combo->setMinimumWidth(std::max(90, combo->neededWidth()));
    return combo;
}

SpinEdit* makeSpin(const QString& name, int minimum, int maximum, QWidget* parent) {
    auto* const spin = new SpinEdit(noId, parent);
    spin->setRange(minimum, maximum);
    spin->setAccessibleName(name);
    spin->setFixedSize(84, controlHeight);
    return spin;
}

SkinCheckBox* makeCheck(const QString& text, QWidget* parent) {
    return new SkinCheckBox(text, noId, parent);
}

CColorControl* makeLabel(const QString& text, QWidget* parent) {
    return new CColorControl(text, noId, parent);
}

SkinGroupBox* makeGroup(const QString& title, QWidget* parent) {
    return new SkinGroupBox(title, noId, parent);
}

QGridLayout* makeGrid(QWidget* group) {
    auto* const grid = new QGridLayout(group);
    grid->setContentsMargins(groupMargins);
    grid->setHorizontalSpacing(12);
    return grid;
}

SettingsDialog::SettingsDialog(const QString& title, QWidget* parent)
    : CDialogSK(parent), body_(new QVBoxLayout(this)) {
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(title);
    body_->setContentsMargins(8, 8, 8, 8);
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
    ok->setAccented(true);
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

TitleGroup::TitleGroup(IChartHost& host, QWidget* parent)
    : SkinGroupBox(QStringLiteral("Title"), noId, parent) {
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
    grid->setContentsMargins(groupMargins);
    grid->addWidget(edit_, 0, 0, 1, 3);
    grid->addWidget(makeLabel(QStringLiteral("Title font description"), this), 1, 0);
    grid->addWidget(description_, 1, 1);
    description_->setColors(QColor(theme::text));
    grid->setHorizontalSpacing(12);
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
    : SkinGroupBox(QStringLiteral("Grids"), noId, parent),
      majorHorizontal_(makeCheck(QStringLiteral("Major Horizontal Grids"), this)),
      majorVertical_(makeCheck(QStringLiteral("Major Vertical Grids"), this)),
      minorHorizontal_(makeCheck(QStringLiteral("Minor Horizontal Grids"), this)),
      minorVertical_(makeCheck(QStringLiteral("Minor Vertical Grids"), this)) {
    // Horizontal grid lines belong to the ticks of the vertical axis.
    const AxisLook& upright = chart.axis(AxisSide::left).look();
    const AxisLook& level = chart.axis(AxisSide::bottom).look();
    majorHorizontal_->setChecked(upright.majorGrid);
    majorVertical_->setChecked(level.majorGrid);
    minorHorizontal_->setChecked(upright.minorGrid);
    minorVertical_->setChecked(level.minorGrid);
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(groupMargins);
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
