#include <QApplication>
#include <QDialog>
#include <QScreen>
#include <QScrollArea>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "app/tessavo_app.h"
#include "app/tessavo_view.h"
#include "app/ui_file_dialogs.h"
#include "controls/theme.h"
#include "params/settings_commands.h"
#include "plot/chart/chart_host.h"
#include "plot/chart/plot_dlg.h"
#include "support/temporary_folder.h"

// The whole window on the screen that the environment gives: ctest runs this on screens of several sizes and
// scales.

namespace tessavo::test {
namespace {

class OnTheScreen : public ::testing::Test {
 protected:
    OnTheScreen() {
        app = std::make_unique<CTessavoApp>(count_, arguments_.data(),
                                            std::make_unique<Profile>(textOf(folder / "profile.ini")));
        EXPECT_TRUE(app->InitInstance({}));
        frame().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&frame()));
    }
    CMainFrame& frame() { return app->frame(); }
    /// What of a control has to be seen: all of it, but of a row of tabs only the one in front.
    static QRect neededOf(const QWidget& control) {
        const auto* tabs = qobject_cast<const QTabBar*>(&control);
        return tabs != nullptr ? tabs->tabRect(tabs->currentIndex()) & tabs->rect() : control.rect();
    }

    /// What can be seen of a control at most: some are larger than the page on a small screen.
    static QSize roomOf(const QWidget& control) {
        constexpr int gapBeside = 12;
        QSize room = control.window()->size();
        for (const QWidget* above = control.parentWidget(); above != nullptr; above = above->parentWidget()) {
            if (const auto* area = qobject_cast<const QScrollArea*>(above)) {
                room = room.boundedTo(area->viewport()->size() - QSize(gapBeside, 0));
            }
        }
        return room;
    }

    TemporaryFolder folder;
    std::unique_ptr<CTessavoApp> app;

 private:
    std::array<char, 8> name_{"tessavo"};
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    int count_ = 1;
};

TEST_F(OnTheScreen, TheWindowFits) {
    ASSERT_NE(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    const QRect room = frame().screen()->availableGeometry();
    EXPECT_TRUE(room.contains(frame().geometry()))
        << frame().width() << " x " << frame().height() << " on " << room.width() << " x " << room.height();
    EXPECT_EQ(frame().size(),
              QSize(CMainFrame::widthFor(room.width()), CMainFrame::heightFor(room.height())));
    EXPECT_EQ(frame().minimumSize(), frame().maximumSize());
}

TEST_F(OnTheScreen, TheTabKeyReachesEveryControlAndBringsItIntoSight) {
    for (std::size_t page = 0; page < pageCount; ++page) {
        frame().view().showPage(static_cast<Page>(page));
        QTest::qWait(0);
        std::set<QWidget*> reachable;
        for (QWidget* widget : frame().findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->isEnabled() && widget->focusProxy() == nullptr &&
                (widget->focusPolicy() & Qt::TabFocus) != 0) {
                reachable.insert(widget);
            }
        }
        EXPECT_GT(reachable.size(), 14U);
        std::set<QWidget*> reached;
        for (std::size_t press = 0; press < reachable.size() + 5; ++press) {
            QTest::keyClick(frame().windowHandle(), Qt::Key_Tab);
            QWidget* now = QApplication::focusWidget();
            ASSERT_NE(now, nullptr) << "page " << page;
            reached.insert(now);
            const QRect seen = now->visibleRegion().boundingRect() & neededOf(*now);
            const QSize enough = neededOf(*now).size().boundedTo(roomOf(*now));
            EXPECT_TRUE(seen.width() >= enough.width() && seen.height() >= enough.height())
                << "page " << page << ", " << now->objectName().toStdString() << " "
                << now->metaObject()->className();
        }
        for (const QWidget* widget : reachable) {
            // Of a group of radio buttons one stands for all.
            EXPECT_TRUE(reached.contains(const_cast<QWidget*>(widget)) || widget->inherits("QRadioButton"))
                << "page " << page << ", " << widget->objectName().toStdString() << " "
                << widget->metaObject()->className();
        }
    }
}

TEST_F(OnTheScreen, ThePlotFitsIntoItToo) {
    CPlotDlg& plot = frame().view().plot();
    plot.showCentred();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&plot));
    const QRect room = plot.screen()->availableGeometry();
    EXPECT_TRUE(room.contains(plot.frameGeometry()))
        << plot.width() << " x " << plot.height() << " on " << room.width() << " x " << room.height();
}

class ToolkitHost : public DialogChartHost {
 public:
    void showMessage(QWidget*, const QString&) override {}
    std::optional<QString> askSavePath(QWidget*, const QString&, const QString&) override { return {}; }
};

TEST_F(OnTheScreen, TheFileAndTheFontDialogFitIntoItToo) {
    const QRect room = frame().screen()->availableGeometry();
    int dialogs = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->windowHandle()->isExposed()) {
            return;
        }
        ++dialogs;
        EXPECT_TRUE(QRect(QPoint(), room.size()).contains(QRect(QPoint(), dialog->frameSize())))
            << dialog->metaObject()->className() << ' ' << dialog->width() << " x " << dialog->height()
            << " on " << room.width() << " x " << room.height();
        dialog->reject();
    });
    look.start(10);
    Profile profile(textOf(folder / "other.ini"));
    UiFileDialogs files(&frame(), profile);
    EXPECT_EQ(files.askOpenPath(settingsFilter), std::nullopt);
    EXPECT_EQ(files.askSavePath(settingsFilter), std::nullopt);
    ToolkitHost host;
    EXPECT_EQ(host.askFont(&frame(), theme::font(12)), std::nullopt);
    EXPECT_EQ(dialogs, 3);
}

}  // namespace
}  // namespace tessavo::test
