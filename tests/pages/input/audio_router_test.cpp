#include <QAccessible>
#include <QTest>

#include "controls/theme.h"
#include "pages/input/audio_router_fixture.h"

namespace tessavo::test {
namespace {

constexpr std::array<const char*, 14> sources{
    "Silenced",   "FrontLeft",      "FrontRight",      "Center",           "RearLeft",
    "RearRight",  "Subwoofer",      "FrontLeftCenter", "FrontRightCenter", "LeftTotal",
    "RightTotal", "LeftRightTotal", "RearLeftTotal",   "RearRightTotal"};

class Shows : public QObject {
 public:
    explicit Shows(QWidget& page) { page.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide || event->type() == QEvent::Show) {
            seen.push_back(event->type());
        }
        return false;
    }
    std::vector<QEvent::Type> seen;
};

TEST_F(AudioRouter, OffersTheFourteenSourcesAndShowsAFreshStoreSilenced) {
    for (int position = 0; position < 8; ++position) {
        SkinComboBox& selector = list(5001 + position);
        ASSERT_EQ(selector.count(), 14);
        for (int source = 0; source < 14; ++source) {
            EXPECT_EQ(selector.itemText(source), QLatin1String(sources[static_cast<std::size_t>(source)]));
        }
        EXPECT_EQ(selector.currentText(), QStringLiteral("Silenced"));
    }
}

TEST_F(AudioRouter, EverySelectorIsLabelledByItsChannel) {
    for (int position = 0; position < 8; ++position) {
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&list(5001 + position));
        ASSERT_NE(seen, nullptr);
        const auto labels = seen->relations(QAccessible::Label);
        ASSERT_EQ(labels.size(), 1);
        EXPECT_EQ(labels[0].first->text(QAccessible::Name), QStringLiteral("Channel %1").arg(position + 1));
    }
}

TEST_F(AudioRouter, ASourceGoesToTheChannelOfItsPosition) {
    for (int position = 0; position < 8; ++position) {
        const int source = 13 - position;
        choose(5001 + position, source);
        const std::size_t channel = pageChannels[static_cast<std::size_t>(position)];
        store[1568 + channel] = static_cast<std::uint8_t>(source);
        image[2916 + 4 * channel] = static_cast<std::uint8_t>(source);
        expectBytes();
        EXPECT_TRUE(takePending());
    }
}

TEST_F(AudioRouter, EverySourceCanBeChosenByTheKeyboard) {
    for (int source = 1; source < 14; ++source) {
        key(list(5003), Qt::Key_Down);
        EXPECT_EQ(actual.store()[1568 + 0], source);
    }
    chooseByKeys(5003, 0);
    expectBytes();
}

TEST_F(AudioRouter, AReceivedSourceIsShownAndAnUnknownOneLeavesTheListEmpty) {
    store[1568 + 7] = 9;
    store[1568 + 6] = 14;
    actual.load(store);
    page->refresh();
    EXPECT_EQ(list(5001).currentText(), QStringLiteral("LeftTotal"));
    EXPECT_EQ(list(5008).currentIndex(), -1);
    EXPECT_SAME_BYTES(actual.store(), store);
}

TEST_F(AudioRouter, ASilencedChannelWearsASmallMark) {
    const auto marked = [this] {
        const QImage picture = list(5001).grab().toImage();
        const double scale = picture.devicePixelRatio();
        return picture.pixel(qRound(12 * scale), qRound(14 * scale)) == theme::mark;
    };
    EXPECT_TRUE(marked());
    chooseByKeys(5001, 1);
    EXPECT_FALSE(marked());
    chooseByKeys(5001, 0);
    EXPECT_TRUE(marked());
}

TEST_F(AudioRouter, AtStartSurroundIsShownOffWhateverTheSetHolds) {
    expectSurround(false);
    store[1576] = 1;
    actual.load(store);
    open();
    expectSurround(false);
}

TEST_F(AudioRouter, TheFirstPressOnAFreshStoreKeepsTheTextsAndTheSecondSwitchesOn) {
    click(surround());
    store[1576] = 1;
    expectBytes();
    expectSurround(false);
    EXPECT_TRUE(takePending());
    click(surround());
    store[1576] = 0;
    expectBytes();
    expectSurround(true);
    EXPECT_TRUE(takePending());
    click(surround());
    expectSurround(false);
    EXPECT_EQ(actual.store()[1576], 1);
}

TEST_F(AudioRouter, AnyByteButOneCountsAsOn) {
    store[1576] = 200;
    actual.load(store);
    click(surround());
    EXPECT_EQ(actual.store()[1576], 1);
    expectSurround(false);
}

TEST_F(AudioRouter, TheSwitchWorksInLiveMode) {
    actual.state.setLiveMode(true);
    actual.state.takeUpdate();
    click(surround());
    EXPECT_EQ(actual.store()[1576], 1);
    EXPECT_TRUE(actual.state.updatePending());
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(AudioRouter, ALoadedSetShowsItsOwnSurroundState) {
    for (const std::uint8_t off : std::initializer_list<std::uint8_t>{0, 1, 7}) {
        store[1576] = off;
        actual.load(store);
        page->refresh();
        expectSurround(off != 1);
    }
}

TEST_F(AudioRouter, AfterTheSwitchThePageIsHiddenShownAndItsSelectorsRefreshed) {
    // Behind the page's back, so that only a refresh can bring it to the selectors.
    actual.state.setRouterSource({0}, 5);
    actual.state.setRouterSource({6}, 2);
    ASSERT_EQ(list(5003).currentIndex(), 0);
    Shows shows(*page);
    key(surround(), Qt::Key_Space);
    EXPECT_EQ(shows.seen, (std::vector<QEvent::Type>{QEvent::Hide, QEvent::Show}));
    EXPECT_TRUE(page->isVisible());
    EXPECT_TRUE(surround().hasFocus());
    EXPECT_EQ(list(5003).currentIndex(), 5);
    EXPECT_EQ(list(5008).currentIndex(), 2);
}

TEST_F(AudioRouter, APageThatIsNotInFrontStaysHidden) {
    page->hide();
    surround().click();
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(actual.store()[1576], 1);
}

TEST_F(AudioRouter, ModeAndRoomChooseTheFirstDelay) {
    for (int next = 1; next <= 2; ++next) {
        key(mode(), Qt::Key_Up);
        expectMode(next, startingDelay(next, 0));
        EXPECT_TRUE(takePending());
    }
    key(mode(), Qt::Key_Up);
    expectMode(2, startingDelay(2, 0));
    EXPECT_FALSE(takePending());
    for (int next = 1; next <= 4; ++next) {
        QTest::mouseClick(&room(), Qt::LeftButton, {}, room().buttonRect(true).center());
        expectRoom(next, startingDelay(2, next));
        EXPECT_TRUE(takePending());
    }
    QTest::mouseClick(&room(), Qt::LeftButton, {}, room().buttonRect(false).center());
    expectRoom(3, startingDelay(2, 3));
    key(mode(), Qt::Key_Down);
    key(mode(), Qt::Key_Down);
    expectMode(0, startingDelay(0, 3));
}

TEST_F(AudioRouter, TheDelayOfEveryModeAndRoomGrowsWithBoth) {
    for (int chosenMode = 0; chosenMode < 3; ++chosenMode) {
        mode().setFocus(Qt::TabFocusReason);
        mode().selectAll();
        QTest::keyClicks(&mode(), QString::number(chosenMode));
        for (int chosenRoom = 0; chosenRoom < 5; ++chosenRoom) {
            room().setFocus(Qt::TabFocusReason);
            room().selectAll();
            QTest::keyClicks(&room(), QString::number(chosenRoom));
            EXPECT_EQ(textOf(5036), std::to_string(startingDelay(chosenMode, chosenRoom)));
            EXPECT_EQ(actual.store()[1578], chosenMode);
            EXPECT_EQ(actual.store()[1577], chosenRoom);
        }
    }
}

TEST_F(AudioRouter, NumbersOutsideTheListsCountAsTheLast) {
    mode().setFocus(Qt::TabFocusReason);
    mode().selectAll();
    QTest::keyClicks(&mode(), QStringLiteral("3"));
    EXPECT_EQ(mode().warning(), QStringLiteral("Out of range: counts as 2"));
    key(mode(), Qt::Key_Tab);
    EXPECT_EQ(mode().text(), QStringLiteral("2"));
    expectMode(2, startingDelay(2, 0));
    room().setFocus(Qt::TabFocusReason);
    room().selectAll();
    QTest::keyClicks(&room(), QStringLiteral("x"));
    key(room(), Qt::Key_Tab);
    EXPECT_EQ(room().text(), QStringLiteral("0"));
    expectBytes();
}

TEST_F(AudioRouter, ATypedDelayTakesThePlaceOfItsEntryInTheTable) {
    typeAndLeave(5036, QStringLiteral("55"));
    expectDelay1(55);
    EXPECT_TRUE(takePending());
    key(room(), Qt::Key_Up);
    expectRoom(1, startingDelay(0, 1));
    key(room(), Qt::Key_Down);
    expectRoom(0, 55);
}

TEST_F(AudioRouter, ALoadedDelayIsTheEntryOfItsModeAndRoom) {
    store[1578] = 1;
    store[1577] = 2;
    writeAt(store, 1848, std::uint16_t{70});
    actual.load(store);
    image = actual.image();
    page->refresh();
    EXPECT_EQ(textOf(5036), "70");
    expectBytes();
    key(room(), Qt::Key_Up);
    expectRoom(3, startingDelay(1, 3));
    key(room(), Qt::Key_Down);
    expectRoom(2, 70);
}

TEST_F(AudioRouter, AModeOutOfRangeIsShownAsTheLastAndNotWritten) {
    store[1578] = 77;
    store[1577] = 255;
    actual.load(store);
    image = actual.image();
    page->refresh();
    EXPECT_EQ(mode().value(), 2);
    EXPECT_EQ(room().value(), 4);
    expectBytes();
    EXPECT_FALSE(takePending());
}

TEST_F(AudioRouter, TheNameOfTheModeInForceStandsOut) {
    const auto bright = [this](const char* name) {
        for (auto* label : page->findChildren<QLabel*>()) {
            if (label->text() == QLatin1String(name)) {
                return label->palette().color(QPalette::WindowText).rgb() == theme::text;
            }
        }
        throw std::logic_error(name);
    };
    EXPECT_TRUE(bright("0 - Music Club"));
    key(mode(), Qt::Key_Up);
    EXPECT_FALSE(bright("0 - Music Club"));
    EXPECT_TRUE(bright("1 - Concert Hall"));
    EXPECT_FALSE(bright("2 - Stadium"));
}

TEST_F(AudioRouter, ADelayIsWrittenAsItsTextChangesAndFinalWhenLeft) {
    NumberEdit& box = edit(5037);
    const auto expectWritten = [&](std::uint16_t delayMs, bool final) {
        writeAt(store, 1878, delayMs);
        writeAt(image, 2972, delayMs);
        expectBytes();
        EXPECT_EQ(takePending(), final);
    };
    box.setFocus(Qt::TabFocusReason);
    box.selectAll();
    QTest::keyClicks(&box, QStringLiteral("4"));
    expectWritten(4, false);
    QTest::keyClicks(&box, QStringLiteral("5"));
    expectWritten(45, false);
    QTest::keyClicks(&box, QStringLiteral("0"));
    expectWritten(100, false);
    EXPECT_EQ(textOf(5037), "450");
    QTest::keyClick(&box, Qt::Key_Return);
    expectWritten(100, true);
    EXPECT_EQ(textOf(5037), "100");
    EXPECT_TRUE(box.hasFocus());
    QTest::keyClicks(&box, QStringLiteral("8"));
    expectWritten(8, false);
    QTest::keyClick(&box, Qt::Key_Escape);
    EXPECT_EQ(textOf(5037), "100");
    expectWritten(100, true);
    typeAndLeave(5037, QString());
    expectWritten(0, true);
    EXPECT_EQ(textOf(5037), "0");
}

TEST_F(AudioRouter, TheTurnOffDelayFollowsItsBox) {
    typeOnly(5023, QStringLiteral("1500"));
    EXPECT_EQ(slider(5022).position(), 1500);
    EXPECT_EQ(readAt<std::uint16_t>(actual.image(), 2968), 1500);
    EXPECT_FALSE(takePending());
    key(edit(5023), Qt::Key_Tab);
    EXPECT_TRUE(takePending());
}

TEST_F(AudioRouter, TheSurroundSwitchRefreshesEverySelector) {
    for (const int first : {1, 5, 3}) {
        for (std::uint8_t position = 0; position < 8; ++position) {
            const auto source = static_cast<std::uint8_t>((first + position) % 14);
            actual.state.setRouterSource(recordChannelAt({position}), source);
            ASSERT_NE(list(5001 + position).currentIndex(), source);
        }
        click(surround());
        for (int position = 0; position < 8; ++position) {
            EXPECT_EQ(list(5001 + position).currentIndex(), (first + position) % 14) << position;
        }
    }
}

TEST_F(AudioRouter, TheTurnOffListHoldsOffAndOn) {
    ASSERT_EQ(list(5021).count(), 2);
    EXPECT_EQ(list(5021).itemText(0), QStringLiteral("Off"));
    EXPECT_EQ(list(5021).itemText(1), QStringLiteral("On"));
    EXPECT_EQ(list(5021).currentIndex(), 0);
    choose(5021, 1);
    store[1844] = 1;
    image[2964] = 1;
    expectBytes();
    EXPECT_TRUE(takePending());
    choose(5021, 0);
    store[1844] = 0;
    image[2964] = 0;
    expectBytes();
}

TEST_F(AudioRouter, TheCheckBoxesWriteTheirBytes) {
    struct Box {
        int id;
        const char* caption;
        std::size_t record, image;
    };
    for (const Box& box : {Box{5011, "Deactivate Channel 7 and 8 (for Line-Out use)", 2116, 3300},
                           Box{5038, "Use rear channel for surround calculation", 1904, 2982}}) {
        EXPECT_EQ(check(box.id).text(), QLatin1String(box.caption));
        EXPECT_FALSE(check(box.id).isChecked());
        for (const std::uint8_t value : std::initializer_list<std::uint8_t>{1, 0, 1}) {
            click(check(box.id));
            store[box.record] = value;
            image[box.image] = value;
            expectBytes();
            EXPECT_TRUE(takePending());
        }
        click(check(box.id));
        actual.load(store);
        page->refresh();
        EXPECT_TRUE(check(box.id).isChecked());
        image = actual.image();
    }
}

TEST_F(AudioRouter, ADecoderGainReadsFromSilenceToZero) {
    EXPECT_EQ(textOf(5051), "-Inf.");
    key(slider(5041), Qt::Key_Up);
    EXPECT_EQ(slider(5041).position(), -1);
    EXPECT_EQ(textOf(5051), "-29.9");
    key(slider(5041), Qt::Key_Home);
    EXPECT_EQ(slider(5041).position(), -300);
    EXPECT_EQ(textOf(5051), "0.0");
    EXPECT_EQ(readAt<std::uint16_t>(actual.store(), 1880), 300);
}

TEST_F(AudioRouter, SilenceCanBeTypedInTwoWays) {
    for (int gain = 0; gain < 4; ++gain) {
        for (const char* text : {"-inf.", "-Inf."}) {
            typeAndLeave(5051 + gain, QStringLiteral("-3.5"));
            ASSERT_EQ(slider(5041 + gain).position(), -265);
            typeAndLeave(5051 + gain, QLatin1String(text));
            EXPECT_EQ(textOf(5051 + gain), "-Inf.");
            EXPECT_EQ(slider(5041 + gain).position(), 0);
            expectBytes();
        }
    }
}

TEST_F(AudioRouter, OnTheWayToSilenceNothingGetsLoud) {
    typeAndLeave(5052, QStringLiteral("-20"));
    NumberEdit& box = edit(5052);
    box.setFocus(Qt::TabFocusReason);
    box.selectAll();
    for (const QChar letter : QStringLiteral("-inf.")) {
        QTest::keyClick(&box, letter.toLatin1());
        EXPECT_LE(readAt<std::uint16_t>(actual.store(), 1882), 100);
    }
    EXPECT_EQ(readAt<std::uint16_t>(actual.store(), 1882), 0);
}

TEST_F(AudioRouter, CarriesTheLabelsOfTheTarget) {
    QStringList texts;
    for (const auto* label : page->findChildren<QLabel*>()) {
        texts << label->text();
    }
    for (const char* text :
         {"Channel 1", "Channel 8", "[ms]", "Surround mode", "0 - Music Club", "1 - Concert Hall",
          "2 - Stadium", "Room size", "0 - Small Room....4 - Large Room", "Delay size 1 [ms]",
          "Delay size 2 [ms]", "Center\ngain [dB]", "Panorama\ngain [dB]", "Hall effect\ngain [dB]",
          "Rear to front\nmix gain [dB]"}) {
        EXPECT_TRUE(texts.contains(QLatin1String(text))) << text;
    }
    QStringList titles;
    for (const auto* group : page->findChildren<SkinGroupBox*>()) {
        titles << group->title();
    }
    EXPECT_EQ(titles,
              (QStringList{QStringLiteral("Output"), QStringLiteral("Long Turn-Off Delay settings"),
                           QStringLiteral("Surround"), QStringLiteral("Surround decoder gain setting")}));
}

}  // namespace
}  // namespace tessavo::test
