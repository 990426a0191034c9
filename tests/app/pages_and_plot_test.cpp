#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <QStackedWidget>
#include <QTabBar>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <set>

#include "plot/chart/plot_dlg.h"
#include "plot/response_curve.h"
#include "support/frame_fixture.h"

// Tabs, pages and the plot.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Pages : public FrameTest {
 protected:
    CPlotDlg& plot() { return view().plot(); }
    int shownPage() { return frame->findChild<QStackedWidget*>()->currentIndex(); }
    /// Heights of the curve that the plot shows, in dB.
    std::vector<double> curveDb() {
        const CChartData* curve = plot().chart().dataSet(plot().curveIdentifier());
        return curve == nullptr ? std::vector<double>{}
                                : std::vector<double>(curve->yValues().begin(), curve->yValues().end());
    }
};

using Plot = Pages;

double highest(const std::vector<double>& values) {
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// ---- tabs

TEST_F(Pages, StandInTheirOrderUnderTheirTitles) {
    QStringList titles;
    for (int i = 0; i < tabs().count(); ++i) {
        titles << tabs().tabText(i);
    }
    EXPECT_EQ(titles, (QStringList{QStringLiteral("Equalizing Input"), QStringLiteral("Channel Config"),
                                   QStringLiteral("Equalizing Output"), QStringLiteral("Output Group"),
                                   QStringLiteral("Clip Detection"), QStringLiteral("Communication")}));
    EXPECT_EQ(view().pages().size(), 6U);
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(shownPage(), 0);
}

TEST_F(Pages, ShowWhatTheirTableSays) {
    makeFrame(realPages());
    std::set<std::string> pictures;
    std::set<const QMetaObject*> classes;
    for (const PageEntry& entry : pageTable()) {
        const int index = static_cast<int>(entry.page);
        clickTab(index);
        EXPECT_EQ(shownPage(), index);
        EXPECT_EQ(tabs().tabText(index).toStdString(), entry.title);
        EXPECT_EQ(view().pages()[static_cast<std::size_t>(index)]->accessibleName().toStdString(),
                  entry.title);
        EXPECT_EQ(plot().windowTitle().toStdString(), entry.plotTitle);
        EXPECT_EQ(curveDb().empty(), entry.curve == PageCurve::none) << entry.title;
        EXPECT_TRUE(classes.insert(view().pages()[static_cast<std::size_t>(index)]->metaObject()).second);
        EXPECT_TRUE(pictures.insert(entry.picture).second) << entry.picture;
    }
    EXPECT_EQ(tabs().count(), static_cast<int>(pictures.size()));
}

// The widths that the window was drawn with; a gap belongs to the tab before it.
TEST_F(Pages, TabsAreAsWideAsTheyWereDrawn) {
    makeFrame(realPages());
    constexpr int gap = 2;
    const std::vector<int> left{0, 140, 266, 412, 526, 650};
    const std::vector<int> width{138, 124, 144, 112, 122, 126};
    ASSERT_EQ(tabs().count(), static_cast<int>(width.size()));
    for (int i = 0; i < tabs().count(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        EXPECT_EQ(tabs().tabRect(i).left(), left[at]) << i;
        EXPECT_EQ(tabs().tabRect(i).width(), width[at] + gap) << i;
    }
}

TEST_F(Pages, AClickOnATabShowsItsPage) {
    for (const int index : {5, 3, 0, 4, 2, 1}) {
        clickTab(index);
        EXPECT_EQ(tabs().currentIndex(), index);
        EXPECT_EQ(shownPage(), index);
        EXPECT_TRUE(view().pages()[static_cast<std::size_t>(index)]->isVisible());
    }
}

TEST_F(Pages, ArrowKeysOnTheTabsShowTheirPages) {
    tabs().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&tabs(), Qt::Key_Right);
    QTest::keyClick(&tabs(), Qt::Key_Right);
    EXPECT_EQ(shownPage(), 2);
    EXPECT_EQ(plot().windowTitle(), QStringLiteral("OutputEQ Graph"));
    QTest::keyClick(&tabs(), Qt::Key_Left);
    EXPECT_EQ(shownPage(), 1);
}

TEST_F(Pages, OtherMouseButtonsLeaveTabAndPageTogether) {
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        clickTab(2, button);
        EXPECT_EQ(tabs().currentIndex(), 0);
        EXPECT_EQ(shownPage(), 0);
        EXPECT_EQ(plot().windowTitle(), QStringLiteral("InputEQ Graph"));
    }
}

// ---- refresh and change of set

TEST_F(Pages, AreMadeOnceEachInTabOrder) {
    std::vector<int> made;
    makeFrame([&made](Page page) {
        made.push_back(static_cast<int>(page));
        return new CTabDialog;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return made.size() >= pageCount; }));
    EXPECT_THAT(made, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST_F(Pages, BehindTheFirstAreMadeWhenTheyAreNeeded) {
    std::vector<int> made;
    const PageFactory factory = [&made](Page page) {
        made.push_back(static_cast<int>(page));
        return new CTabDialog;
    };
    CTessavoView other(tuning, chartHost, nullptr, factory);
    other.initialUpdate();
    EXPECT_THAT(made, ElementsAre(0));
    other.showPage(Page::outputEqualizer);
    EXPECT_THAT(made, ElementsAre(0, 1, 2));
    other.refreshPages();
    EXPECT_THAT(made, ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_EQ(other.pages().size(), pageCount);
}

TEST_F(Pages, ThePlotIsMadeWhenItIsAskedForAndShowsTheTabInFront) {
    const auto plots = [] {
        return std::ranges::count_if(QApplication::topLevelWidgets(), [](const QWidget* widget) {
            return qobject_cast<const CPlotDlg*>(widget) != nullptr;
        });
    };
    const auto before = plots();
    clickTab(2);
    clickTab(0);
    EXPECT_EQ(plots(), before);
    clickTab(2);
    EXPECT_EQ(plot().windowTitle(), QStringLiteral("OutputEQ Graph"));
    EXPECT_EQ(plots(), before + 1);
    clickTab(0);
    EXPECT_GT(curvePoints(), 0U);
}

TEST_F(Pages, AChangeOfSetIsOfferedToEachInTabOrder) {
    makeFrame(recordingPages());
    EXPECT_THAT(pageCalls, IsEmpty());
    choose(setSelector(), 3);
    EXPECT_THAT(pageCalls, ElementsAre("set 3 on 0", "set 3 on 1", "set 3 on 2", "set 3 on 3", "set 3 on 4",
                                       "set 3 on 5"));
}

TEST_F(Pages, FindTheNewSetInPlaceWhenTheyAreTold) {
    struct Watcher : CTabDialog {
        explicit Watcher(TuningState& state) : tuning(state) {}
        void changeSet(std::uint32_t) override {
            seenSet = tuning.currentSet();
            seenGain = tuning.image().channels[7].bands[0].gainDb;
        }
        TuningState& tuning;
        std::uint32_t seenSet = 99;
        float seenGain = -1;
    };
    std::vector<Watcher*> watchers;
    makeFrame([&](Page) {
        watchers.push_back(new Watcher(tuning));
        return watchers.back();
    });
    tuning.selectSet(2);
    tuning.setBandGainOrQ(0, BandValue::gain, 4.0F, true);
    tuning.selectSet(0);
    choose(setSelector(), 2);
    for (const Watcher* watcher : watchers) {
        EXPECT_EQ(watcher->seenSet, 2U);
        EXPECT_EQ(watcher->seenGain, 4.0F);
    }
}

TEST_F(Pages, ALoadedFileRefreshesEachInTabOrderAndThenTheSelector) {
    makeFrame(recordingPages());
    frame->openFile(settingsFileNamed("a.eqs", u"Loaded"));
    EXPECT_THAT(pageCalls,
                ElementsAre("refresh 0", "refresh 1", "refresh 2", "refresh 3", "refresh 4", "refresh 5"));
    EXPECT_EQ(setSelector().itemText(4), QStringLiteral("Loaded"));
    EXPECT_EQ(setName().text(), QStringLiteral("Loaded"));
}

TEST_F(Pages, ARefreshLeavesTheSelectorOnTheCurrentSet) {
    choose(setSelector(), 3);
    view().refreshPages();
    EXPECT_EQ(setSelector().currentIndex(), 3);
    EXPECT_EQ(tuning.currentSet(), 3U);
}

TEST_F(Pages, ARefusedFileRefreshesNothing) {
    makeFrame(recordingPages());
    writeFile(folder / "bad.eqs", Bytes(10600, 0));
    frame->openFile(pathIn("bad.eqs"));
    EXPECT_THAT(pageCalls, IsEmpty());
}

// ---- plot

TEST_F(Plot, TheButtonShowsAndHidesItInTheMiddleOfTheScreen) {
    EXPECT_FALSE(plot().isVisible());
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_TRUE(plot().isVisible());
    EXPECT_EQ(showPlot().text(), QStringLiteral("Hide Plot"));
    const QPoint off = plot().frameGeometry().center() - plot().screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 2);
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_FALSE(plot().isVisible());
    EXPECT_EQ(showPlot().text(), QStringLiteral("Show Plot"));
}

TEST_F(Plot, ClosingItByItsFrameIsHidingIt) {
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_TRUE(plot().close());
    EXPECT_FALSE(plot().isVisible());
    EXPECT_EQ(showPlot().text(), QStringLiteral("Show Plot"));
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_TRUE(plot().isVisible());
    QTest::keyClick(&plot(), Qt::Key_Escape);
    EXPECT_FALSE(plot().isVisible());
    EXPECT_EQ(showPlot().text(), QStringLiteral("Show Plot"));
    EXPECT_TRUE(frame->isVisible());
}

TEST_F(Plot, StaysInFrontOfTheFrameAndGoesWithIt) {
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_TRUE(plot().isWindow());
    EXPECT_EQ(plot().parentWidget(), frame.get());
    ASSERT_NE(plot().windowHandle(), nullptr);
    EXPECT_EQ(plot().windowHandle()->transientParent(), frame->windowHandle());
}

TEST_F(Plot, EndsWithItsFrameHoweverTheFrameIsBuilt) {
    for (const bool narrow : {false, true}) {
        makeFrame();
        QTest::mouseClick(&showPlot(), Qt::LeftButton);
        if (narrow) {
            frame->fitInto({800, 600});
        }
        const QPointer<CPlotDlg> watched(&plot());
        frame.reset();
        EXPECT_EQ(watched, nullptr);
        tuning.setInputBandGain(4, 12.0F, true);
    }
}

TEST_F(Plot, ShownAgainItShowsWhatWasChosenMeanwhile) {
    tuning.setSelectionMask(0x08);
    tuning.setBandGainOrQ(3, BandValue::gain, 6.0F, true);
    tuning.setSelectionMask(0x02);
    tuning.setBandGainOrQ(3, BandValue::gain, 12.0F, true);
    clickTab(2);
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    ASSERT_NEAR(highest(curveDb()), 12.0, 1.0);
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    tuning.setSelectionMask(0x08);
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_NEAR(highest(curveDb()), 6.0, 1.0);
    // Hiding it brings it up to date too.
    tuning.setSelectionMask(0x02);
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    EXPECT_FALSE(plot().isVisible());
    EXPECT_NEAR(highest(curveDb()), 12.0, 1.0);
}

TEST_F(Plot, AsksForFilesInTheProgramsOwnDialogs) {
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    auto& chart = *plot().findChild<CChartView*>();
    dialogs.answer = folder / "curve.png";
    chart.savePicture();
    EXPECT_EQ(QImage(pathIn("curve.png")).size(), chart.size() * chart.devicePixelRatioF());
    dialogs.answer = folder / "curve.txt";
    chart.saveData();
    const Bytes text = readFile(folder / "curve.txt");
    EXPECT_EQ(std::ranges::count(text, std::uint8_t{'\n'}), static_cast<int>(curvePointCount));
    ASSERT_EQ(dialogs.asked.size(), 2U);
    EXPECT_TRUE(dialogs.asked[0].save && dialogs.asked[1].save);
    EXPECT_EQ(dialogs.asked[0].filter, "PNG pictures (*.png)|*.png||");
    EXPECT_EQ(dialogs.asked[0].extension, "png");
    EXPECT_EQ(dialogs.asked[1].filter, "Text files (*.txt)|*.txt||");
    EXPECT_EQ(dialogs.asked[1].extension, "txt");
    EXPECT_EQ(dialogs.localeResets, 2);
    dialogs.answer = std::filesystem::path();
    chart.savePicture();
    dialogs.answer.reset();
    chart.saveData();
    EXPECT_EQ(dialogs.localeResets, 4);
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Plot, WearsTheTitleOfTheTab) {
    EXPECT_EQ(plot().windowTitle(), QStringLiteral("InputEQ Graph"));
    const QStringList titles{QStringLiteral("InputEQ Graph"),  QStringLiteral("No Plot"),
                             QStringLiteral("OutputEQ Graph"), QStringLiteral("No Plot"),
                             QStringLiteral("Loudness"),       QStringLiteral("TAVO curve")};
    for (int index = 5; index >= 0; --index) {
        clickTab(index);
        EXPECT_EQ(plot().windowTitle(), titles[index]);
    }
}

TEST_F(Plot, HasACurveOnTheEqualizersTabsOnly) {
    EXPECT_EQ(curvePoints(), curvePointCount);
    for (const int index : {5, 4, 3, 2, 1, 0}) {
        clickTab(index);
        EXPECT_EQ(curvePoints(), index == 0 || index == 2 ? curvePointCount : 0) << index;
    }
}

TEST_F(Plot, ShowsTheInputsCurveOnTheFirstTabAndTheChannelsOnTheThird) {
    tuning.setInputBandGain(4, 12.0F, true);
    EXPECT_NEAR(highest(curveDb()), 12.0, 1.0);
    clickTab(2);
    EXPECT_EQ(highest(curveDb()), 0.0);
    tuning.setBandGainOrQ(3, BandValue::gain, 6.0F, true);
    EXPECT_NEAR(highest(curveDb()), 6.0, 1.0);
    clickTab(0);
    EXPECT_NEAR(highest(curveDb()), 12.0, 1.0);
}

TEST_F(Plot, ShowsTheLastSelectedChannelInPageOrder) {
    // Page positions 4 and 6 are record channels 1 and 2.
    tuning.setSelectionMask(0x08);
    tuning.setBandGainOrQ(3, BandValue::gain, 6.0F, true);
    tuning.setSelectionMask(0x02);
    tuning.setBandGainOrQ(3, BandValue::gain, 12.0F, true);
    tuning.setSelectionMask(0x08);
    clickTab(2);
    EXPECT_NEAR(highest(curveDb()), 6.0, 1.0);
    tuning.setSelectionMask(0x0A);
    clickTab(2);
    EXPECT_NEAR(highest(curveDb()), 12.0, 1.0) << "a click on the tab in front brings the plot up to date";
    tuning.setSelectionMask(0x08);
    tuning.setBandType(7, 2);
    tuning.setSelectionMask(0);
    clickTab(2);
    EXPECT_NEAR(highest(curveDb()), 6.0, 1.0) << "with none selected the channel that was edited last";
}

TEST_F(Plot, FollowsTheSet) {
    tuning.setInputBandGain(4, 12.0F, true);
    choose(setSelector(), 1);
    EXPECT_EQ(highest(curveDb()), 0.0);
    choose(setSelector(), 0);
    EXPECT_NEAR(highest(curveDb()), 12.0, 1.0);
}

TEST_F(Plot, FollowsALoadedFile) {
    const QString flat = settingsFileNamed("flat.eqs");
    tuning.setInputBandGain(4, 12.0F, true);
    frame->openFile(flat);
    EXPECT_EQ(highest(curveDb()), 0.0);
}

TEST_F(Plot, KeepsOneCurveInItsColour) {
    const int identifier = plot().curveIdentifier();
    for (int i = 0; i < 30; ++i) {
        clickTab(i % 6);
        tuning.setInputBandGain(2, static_cast<float>(i % 12), true);
    }
    EXPECT_EQ(plot().curveIdentifier(), identifier);
    ASSERT_NE(plot().chart().dataSet(identifier), nullptr);
    EXPECT_EQ(plot().chart().dataSet(identifier)->style.color, CPlotDlg::curveColor);
}

TEST_F(Plot, ARefusedRangeIsToldInABox) {
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    const QList<QLineEdit*> edits = plot().findChildren<QLineEdit*>();
    ASSERT_EQ(edits.size(), 2);
    for (QLineEdit* edit : edits) {
        type(*edit, QStringLiteral("3"));
    }
    QTest::keyClick(edits[0], Qt::Key_Return);
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_NE(shown[0].text, "");
    EXPECT_EQ(shown[0].icon, BoxIcon::error);
}

}  // namespace
}  // namespace tessavo::test
