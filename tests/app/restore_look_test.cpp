#include <QProgressBar>
#include <QTest>
#include <QTreeWidget>
#include <gmock/gmock.h>

#include "app/restore_dialog.h"
#include "controls/color_control.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/theme.h"
#include "support/settings_fakes.h"

// "Restore Target" as a person meets it: by keys alone, and on a low screen.

namespace tessavo::test {
namespace {

class NoBoxes : public IMessageBox {
 public:
    BoxAnswer show(std::string_view /*text*/, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        return BoxAnswer::cancel;
    }
};

class RestoreLook : public ::testing::Test {
 protected:
    RestoreLook() {
        dialog.show();
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }
    void giveSources() {
        RestoreSource source{
            .title = "car", .place = "/backups/car", .time = {}, .port = "COM3", .sets = {}, .troubles = {}};
        for (const std::uint8_t set : targetSetNumbers) {
            source.sets.push_back({.targetSet = set, .image = {}});
        }
        dialog.setSources({source});
    }
    template <typename Button>
    Button& named(const QString& text) {
        for (auto* each : dialog.findChildren<Button*>()) {
            if (each->text() == text) {
                return *each;
            }
        }
        throw std::logic_error("no " + text.toStdString());
    }
    [[nodiscard]] bool tells(const QString& text) {
        for (const auto* each : dialog.findChildren<CColorControl*>()) {
            if (each->isVisible() && each->text() == text) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] QColor barColour() {
        const QImage picture = dialog.findChild<QProgressBar*>()->grab().toImage();
        return picture.pixelColor(picture.width() / 2, picture.height() / 2);
    }

    NoBoxes boxes;
    int folders = 0;
    int restored = 0;
    int sent = 0;
    RestoreReport report;
    RestoreDialog dialog{{.boxes = boxes,
                          .restore =
                              [this](std::span<const SetToWrite> sets, const CopyWatch&) {
                                  ++restored;
                                  for (const SetToWrite& each : sets) {
                                      report.sets.push_back({each.targetSet, RestoredState::done});
                                  }
                                  return report;
                              },
                          .askFolder = [this]() -> std::optional<RestoreSource> {
                              ++folders;
                              return std::nullopt;
                          },
                          .sendCurrentSet = [this] { ++sent; }}};
};

TEST_F(RestoreLook, TellsWhatIsStillToBeDone) {
    EXPECT_TRUE(tells(QStringLiteral("Looking for copies")));
    giveSources();
    auto& amplifiers = named<SkinCheckBox>(QStringLiteral("The amplifiers are off or turned down"));
    EXPECT_TRUE(tells(
        QStringLiteral("Tick that the amplifiers are off or turned down; then Restore can be pressed.")));
    amplifiers.click();
    EXPECT_TRUE(tells(QStringLiteral("Ready: 5 sets are restored, one after another.")));
    EXPECT_TRUE(named<CxSkinButton>(QStringLiteral("Restore")).isEnabled());
    for (int set = 1; set <= 5; ++set) {
        named<SkinCheckBox>(QStringLiteral("Set %1").arg(set)).click();
    }
    EXPECT_TRUE(tells(QStringLiteral("Tick the sets to restore.")));
    EXPECT_FALSE(named<CxSkinButton>(QStringLiteral("Restore")).isEnabled());
}

TEST_F(RestoreLook, EnterPressesTheButtonThatHasTheFocusAndNoOther) {
    giveSources();
    auto* const list = dialog.findChild<QTreeWidget*>();
    EXPECT_EQ(QApplication::focusWidget(), list);
    QTest::keyClick(list, Qt::Key_Return);
    auto& amplifiers = named<SkinCheckBox>(QStringLiteral("The amplifiers are off or turned down"));
    amplifiers.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&amplifiers, Qt::Key_Enter);
    EXPECT_EQ(folders, 0);
    QTest::keyClick(&amplifiers, Qt::Key_Space);
    QTest::keyClick(&amplifiers, Qt::Key_Return);
    EXPECT_EQ(restored, 0);
    QTest::keyClick(&amplifiers, Qt::Key_Tab);
    auto& restores = named<CxSkinButton>(QStringLiteral("Restore"));
    EXPECT_EQ(QApplication::focusWidget(), &restores);
    QTest::keyClick(&restores, Qt::Key_Return);
    EXPECT_EQ(restored, 1);
    auto& sends = named<CxSkinButton>(QStringLiteral("Send Current Set"));
    EXPECT_EQ(QApplication::focusWidget(), &sends);
    EXPECT_TRUE(sends.isAccented()) << "what comes next";
    EXPECT_FALSE(restores.isAccented());
    QTest::keyClick(&sends, Qt::Key_Return);
    EXPECT_EQ(sent, 1);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(RestoreLook, TheBarTellsHowItEnded) {
    giveSources();
    auto& amplifiers = named<SkinCheckBox>(QStringLiteral("The amplifiers are off or turned down"));
    amplifiers.click();
    report.end = RestoreReport::End::done;
    named<CxSkinButton>(QStringLiteral("Restore")).click();
    EXPECT_EQ(barColour(), QColor::fromRgb(theme::live));
    auto* const bar = dialog.findChild<QProgressBar*>();
    report.end = RestoreReport::End::failed;
    report.sets.clear();
    bar->setValue(bar->maximum());
    named<CxSkinButton>(QStringLiteral("Restore")).click();
    EXPECT_EQ(barColour(), QColor::fromRgb(theme::clip));
}

TEST_F(RestoreLook, OnALowScreenTheButtonsStayAndTheFocusComesIntoView) {
    giveSources();
    dialog.resize(660, 350);
    ASSERT_TRUE(QTest::qWaitFor([this] { return dialog.height() <= 352; })) << dialog.height();
    for (auto* each : dialog.findChildren<CxSkinButton*>()) {
        if (each->parentWidget() == &dialog && each->isVisible()) {
            EXPECT_TRUE(dialog.rect().contains(each->geometry())) << each->text().toStdString();
        }
    }
    // Round once, and back.
    for (const bool forwards : {true, false}) {
        for (int i = 0; i < 12; ++i) {
            QTest::keyClick(QApplication::focusWidget(), forwards ? Qt::Key_Tab : Qt::Key_Backtab);
            QWidget* const now = QApplication::focusWidget();
            const QRegion seen = now->visibleRegion();
            EXPECT_EQ(seen.boundingRect().height(), now->height())
                << now->accessibleName().toStdString() << i;
        }
    }
}

}  // namespace
}  // namespace tessavo::test
