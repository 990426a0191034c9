#include <QFontDatabase>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <tuple>
#include <vector>

#include "controls/clip_light.h"
#include "controls/color_control.h"
#include "controls/control_sheet.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/skin_message_box.h"
#include "controls/skin_radio_button.h"
#include "controls/skin_tab_bar.h"
#include "controls/theme.h"
#include "controls/transfer_line.h"

namespace tessavo::test {
namespace {

constexpr double scales[]{1.0, 1.5, 2.0};

/// Pixels of a colour within a place in logical pixels of a picture at a scale.
int countOf(const QImage& picture, QRgb color, const QRect& place, double scale) {
    int count = 0;
    for (int y = qRound(place.top() * scale); y < qRound((place.top() + place.height()) * scale); ++y) {
        for (int x = qRound(place.left() * scale); x < qRound((place.left() + place.width()) * scale); ++x) {
            count += picture.pixel(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

/// The widest of the program's fonts.
void useWidestFont(QWidget& control) {
    QFont font = control.font();
    font.setFamilies({QStringLiteral("DejaVu Sans")});
    control.setFont(font);
}

/// How much wider a text is at a scale, back in logical pixels, than at 1x: glyphs are rounded differently.
double growth(const QFont& font, const QString& text, double scale) {
    QFont scaled = font;
    scaled.setPixelSize(qRound(font.pixelSize() * scale));
    const double exact = QFontMetricsF(scaled).horizontalAdvance(text) / scale;
    return exact * font.pixelSize() * scale / scaled.pixelSize() - QFontMetrics(font).horizontalAdvance(text);
}

void expectFit(const QWidget& control, int neededWidth, const QString& text, QSize place) {
    for (const double scale : scales) {
        EXPECT_LE(neededWidth + growth(control.font(), text, scale), place.width() + 0.5)
            << text.toStdString() << " at " << scale;
    }
    EXPECT_LE(control.fontMetrics().height(), place.height()) << text.toStdString();
}

TEST(TextFit, TheWidestFontIsThere) {
    EXPECT_TRUE(QFontDatabase::families().contains(QStringLiteral("DejaVu Sans")))
        << "the package fonts-dejavu-core is missing";
}

struct Caption {
    const char* text;
    int width, height;
    bool light = false;
};

TEST(TextFit, ButtonsHoldTheirCaptions) {
    for (const Caption& caption : {Caption{"EQ Mode Off", 124, 28, true},
                                   {"EQ Mode On", 124, 28, true},
                                   {"Show Plot", 92, 28},
                                   {"Hide Plot", 92, 28},
                                   {"EQ Off", 92, 26, true},
                                   {"EQ On", 92, 26, true},
                                   {"Reset", 74, 26},
                                   {"Disable Surround", 152, 32},
                                   {"Enable Surround", 152, 32},
                                   {"Disable All Filters", 160, 28},
                                   {"Enable All Filters", 160, 28},
                                   {"Reset Channel", 160, 28},
                                   {"On/Off", 112, 32},
                                   {"Set 5", 46, 28},
                                   {"Default Set", 98, 28},
                                   {"Select Image File", 130, 28},
                                   {"Flash File", 130, 28},
                                   {"Refresh", 176, 28},
                                   {"Update", 176, 28},
                                   {"Clear Communication Log", 170, 28},
                                   {"SET", 84, 28},
                                   {"Cancel", 84, 28}}) {
        CxSkinButton button(QString::fromLatin1(caption.text), 1);
        button.setToggle(caption.light);
        useWidestFont(button);
        expectFit(button, button.neededWidth(), button.text(), {caption.width, caption.height});
    }
}

TEST(TextFit, ChecksAndRadiosHoldTheirCaptions) {
    for (const Caption& caption : {Caption{"Enabled", 86, 22},
                                   {"Disable", 91, 22},
                                   {"Disabled", 99, 22},
                                   {"Invert Phase", 113, 22},
                                   {"Assign to multiple Ch.", 167, 22},
                                   {"Channel 8", 119, 25},
                                   {"Deactivate Channel 7 and 8 (for Line-Out use)", 363, 22},
                                   {"Use rear channel for surround calculation", 403, 22},
                                   {"Show Status Message", 157, 28},
                                   {"Show Error Message", 149, 28},
                                   {"Show TX Message", 135, 28},
                                   {"Show RX Message", 137, 28}}) {
        SkinCheckBox check(QString::fromLatin1(caption.text), 1);
        SkinRadioButton radio(QString::fromLatin1(caption.text), 1);
        useWidestFont(check);
        useWidestFont(radio);
        expectFit(check, check.neededWidth(), check.text(), {caption.width, caption.height});
        expectFit(radio, radio.neededWidth(), radio.text(), {caption.width, caption.height});
    }
}

TEST(TextFit, CombosHoldTheirEntries) {
    for (const Caption& entry : {Caption{"High Shelf", 80, 24},
                                 {"Low Shelf", 80, 24},
                                 {"HP", 58, 24},
                                 {"8", 48, 24},
                                 {"BZT/MZT", 96, 28},
                                 {"FrontRightCenter", 252, 28},
                                 {"COM255", 108, 28},
                                 {"Type 5", 132, 28}}) {
        SkinComboBox combo(1);
        combo.addItem(QString::fromLatin1(entry.text));
        combo.resize(entry.width, entry.height);
        combo.grab();
        useWidestFont(combo);
        expectFit(combo, combo.neededWidth(), combo.itemText(0), combo.size());
    }
    SkinComboBox group(1);
    group.addItem(QStringLiteral("G"));
    group.setItemDot(0, QColor::fromRgb(theme::groups[6]));
    group.resize(52, 24);
    group.grab();
    useWidestFont(group);
    expectFit(group, group.neededWidth(), group.itemText(0), group.size());
}

TEST(TextFit, EditsHoldTheirNumbers) {
    for (const Caption& number : {Caption{"20000", 58, 24},
                                  {"-18.0", 58, 24},
                                  {"-30.0", 50, 24},
                                  {"-Inf.", 56, 26},
                                  {"30000", 58, 26},
                                  {"-20.0", 48, 24},
                                  {"68.6", 47, 24},
                                  {"1000", 56, 24}}) {
        NumberEdit edit(1);
        edit.resize(number.width, number.height);
        useWidestFont(edit);
        edit.grab();
        const QString text = QString::fromLatin1(number.text);
        expectFit(edit, edit.neededWidth(text), text, edit.size());
    }
}

TEST(TextFit, TabsHoldTheirTitles) {
    SkinTabBar bar(1);
    useWidestFont(bar);
    const std::pair<const char*, int> tabs[]{{"Equalizing Input", 138},  {"Channel Config", 124},
                                             {"Equalizing Output", 144}, {"Output Group", 112},
                                             {"Clip Detection", 122},    {"Communication", 126}};
    for (const auto& [title, width] : tabs) {
        const int index = bar.addFixedTab(QString::fromLatin1(title), width);
        QFont medium = theme::font(13, QFont::Medium);
        medium.setFamilies({QStringLiteral("DejaVu Sans")});
        const int needed = QFontMetrics(medium).horizontalAdvance(bar.tabText(index)) + 8;
        expectFit(bar, needed, bar.tabText(index), {width, 34});
    }
}

TEST(TextFit, GroupsHoldTheirTitles) {
    for (const Caption& title :
         {Caption{"Filter 8", 94, 30}, {"Crossover Filter 2", 594, 60}, {"Channel 8", 114, 40}}) {
        SkinGroupBox group(QString::fromLatin1(title.text), 1);
        group.setTitlePosition({8, 7});
        useWidestFont(group);
        expectFit(group, group.neededWidth(), group.title(), {title.width, title.height});
    }
}

TEST(TextFit, ATransferHoldsItsLongestWords) {
    TransferLine line(1);
    useWidestFont(line);
    line.showProgress(511, 512, std::chrono::hours(500));
    for (const QString& words :
         {QStringLiteral("Block 512 of 512, 100 %, 59:59 left"), QStringLiteral("No transfer"),
          QStringLiteral("Stopped at block 512 of 512")}) {
        const int needed = line.fontMetrics().horizontalAdvance(words);
        expectFit(line, needed, words, {270, 16});
    }
}

TEST(TextFit, AMessageBoxMakesRoomForItsText) {
    for (const char* text : {"Are you sure?\r\nThe current channel settings will be lost!",
                             "The current settings will be lost!\r\n Do you want to save settings?",
                             "Please turn on Live Mode", "x"}) {
        SkinMessageBox box(QStringLiteral("Tessavo Velmira"), QString::fromLatin1(text),
                           SkinMessageBox::Icon::stop, SkinMessageBox::Buttons::yesNoCancel);
        for (const QString& line : QString::fromLatin1(text).split(QStringLiteral("\r\n"))) {
            EXPECT_LE(70 + box.fontMetrics().horizontalAdvance(line) + 16, box.width()) << text;
        }
    }
}

TEST(TextFit, EverythingOnTheSheetOfAllControlsFits) {
    ControlSheet sheet;
    int checked = 0;
    for (auto* button : sheet.findChildren<CxSkinButton*>()) {
        useWidestFont(*button);
        expectFit(*button, button->neededWidth(), button->text(), button->size());
        ++checked;
    }
    for (auto* combo : sheet.findChildren<SkinComboBox*>()) {
        useWidestFont(*combo);
        expectFit(*combo, combo->neededWidth(), combo->currentText(), combo->size());
        ++checked;
    }
    for (auto* edit : sheet.findChildren<NumberEdit*>()) {
        useWidestFont(*edit);
        expectFit(*edit, edit->neededWidth(edit->text()), edit->text(), edit->size());
        ++checked;
    }
    for (auto* label : sheet.findChildren<CColorControl*>()) {
        if (label->font().fixedPitch()) {
            continue;
        }
        useWidestFont(*label);
        expectFit(*label, label->fontMetrics().horizontalAdvance(label->text()), label->text(),
                  label->size());
        ++checked;
    }
    EXPECT_GT(checked, 100);
}

TEST(TextFit, TheSheetIsDrawnAtEveryScale) {
    ControlSheet sheet;
    for (const double scale : scales) {
        const QImage picture = sheet.picture(scale).toImage();
        EXPECT_EQ(picture.size(), (QSizeF(1280, 1502) * scale).toSize());
        EXPECT_EQ(picture.pixel(qRound(5 * scale), qRound(5 * scale)), theme::window);
        // Every slider in circuit is filled with its colour, and the lights that are lit shine red.
        for (const auto& [color, place, least] : {std::tuple{theme::frequency, QRect(24, 52, 260, 268), 120},
                                                  {theme::level, QRect(278, 52, 260, 268), 120},
                                                  {theme::quality, QRect(532, 52, 260, 268), 120},
                                                  {theme::level, QRect(24, 336, 612, 202), 120}}) {
            EXPECT_GT(countOf(picture, color, place, scale), least * scale * scale) << scale;
        }
        for (const auto* light : sheet.findChildren<ClipLight*>()) {
            const QRect place(light->mapTo(&sheet, QPoint()), light->size());
            EXPECT_EQ(countOf(picture, theme::clip, place, scale) > 0,
                      light->picture() == ClipLight::Picture::clipping)
                << scale;
        }
    }
}

// An edge that is drawn at the screen's scale goes from one colour to the next without any between.
TEST(TextFit, TheEdgesOfTheSheetAreSharpAtEveryScale) {
    ControlSheet sheet;
    for (const double scale : scales) {
        const QImage picture = sheet.picture(scale).toImage();
        int edges = 0;
        for (const auto* button : sheet.findChildren<CxSkinButton*>()) {
            if (!button->isEnabled() || button->text() != QLatin1String("Reset Channel")) {
                continue;
            }
            const QRect place(button->mapTo(&sheet, QPoint()), button->size());
            const int y = qRound(place.center().y() * scale);
            std::vector<QRgb> run;
            for (int x = qRound((place.left() - 3) * scale); x < qRound((place.left() + 8) * scale); ++x) {
                if (run.empty() || run.back() != picture.pixel(x, y)) {
                    run.push_back(picture.pixel(x, y));
                }
            }
            // Section, border and face; with the focus a ring inside.
            EXPECT_LE(run.size(), 5U) << scale << ' ' << place.left();
            EXPECT_GE(run.size(), 3U) << scale << ' ' << place.left();
            ++edges;
        }
        EXPECT_EQ(edges, 4);
    }
}

}  // namespace
}  // namespace tessavo::test
