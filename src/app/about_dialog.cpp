#include "app/about_dialog.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <array>

#include "controls/skin_button.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int okButton = 1;
constexpr int iconSize = 64;

struct Line {
    const char* text;
    int pixelSize;
    QFont::Weight weight;
    QRgb color;
};

constexpr std::array<Line, 4> lines{{
    {"Tessavo Velmira ", 15, QFont::Medium, theme::text},
    {"Version 1.0.6", 12, QFont::Normal, theme::text2},
    {"Date 2013-04-18", 12, QFont::Normal, theme::text2},
    {"Copyright (c) The Tessavo developers, MIT License", 12, QFont::Normal, theme::text2},
}};

}  // namespace

AboutDialog::AboutDialog(QWidget* parent) : CDialogSK(parent) {
    setObjectName(QStringLiteral("about"));
    setWindowTitle(QStringLiteral("About"));
    setFixedSize(460, 208);
    setWindowOpacity(1.0);
    auto* icon = new QLabel(this);
    icon->setGeometry(24, 28, iconSize, iconSize);
    icon->setPixmap(QApplication::windowIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    int top = 26;
    for (const Line& line : lines) {
        auto* label = new QLabel(QLatin1String(line.text), this);
        label->setGeometry(112, top, width() - 124, 24);
        label->setFont(theme::font(line.pixelSize, line.weight));
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, QColor::fromRgb(line.color));
        label->setPalette(palette);
        top += 26;
    }
    auto* ok = new CxSkinButton(QStringLiteral("OK"), okButton, this);
    ok->setGeometry(width() - 84 - 16, height() - 28 - 16, 84, 28);
    ok->setAccented(true);
    ok->setDefault(true);
    ok->setFocus();
    connect(ok, &QAbstractButton::clicked, this, &QDialog::accept);
}

}  // namespace tessavo
