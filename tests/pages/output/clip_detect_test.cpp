#include <QLabel>
#include <QRegularExpression>
#include <QTest>
#include <atomic>
#include <mutex>
#include <random>

#include "controls/clip_light.h"
#include "controls/state_lamp.h"
#include "pages/output/clip_detect_dlg.h"
#include "support/page_fixture.h"
#include "support/stepped_clock.h"

namespace tessavo::test {
namespace {

class ClipDetection : public PageTest {
 protected:
    ClipDetection() {
        auto made = std::make_unique<CClipDetectDlg>(
            CClipDetectDlg::Dependencies{.ask = [this]() -> std::optional<ClipState> {
                                             ++asked;
                                             const std::lock_guard guard(mutex);
                                             return next;
                                         },
                                         .takeTurn = [](const auto&) { return true; },
                                         .clock = &clock});
        dialog = made.get();
        showPage(std::move(made));
        clock.waitForPause();
    }
    ~ClipDetection() override {
        // Its thread asks this object.
        clock.end();
        delete page;
        page = nullptr;
    }

    QRect placeOf(const QWidget& widget) const { return {widget.mapTo(page, QPoint(0, 0)), widget.size()}; }
    QRect placeOf(int id) { return placeOf(control<QWidget>(id)); }
    bool shows(int id) { return control<ClipLight>(id).isVisible(); }
    QString stateText() { return control<QLabel>(clip_id::state).text(); }
    /// The text beside it with every time as "<time>".
    std::string answerText() {
        QString text = control<QLabel>(clip_id::lastAnswer).text();
        return text
            .replace(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d")), QStringLiteral("<time>"))
            .toStdString();
    }
    void targetAnswers(bool answers) {
        const std::lock_guard guard(mutex);
        next = answers ? std::optional(ClipState{}) : std::nullopt;
    }
    void pass() {
        clock.step();
        deliver();
    }

    /// Ids of the pictures of an entry, computed from the answer's layout.
    struct Ids {
        int clipping;
        int notClipping;
    };
    static std::optional<Ids> idsOf(std::size_t group, std::size_t entry) {
        constexpr std::array<int, 8> row{3, 7, 0, 4, 1, 5, 2, 6};
        const int number = static_cast<int>(entry);
        switch (group) {
            case 0:
                return entry < 6 ? std::optional(Ids{1386 + number, 1392 + number}) : std::nullopt;
            case 1:
                return entry < 6 ? std::optional(Ids{1380 + number, 1398 + number}) : std::nullopt;
            case 2:
                return Ids{1404 + row[entry], 1412 + row[entry]};
            default:
                return Ids{1420 + row[entry], 1428 + row[entry]};
        }
    }
    void expectShown(const ClipState& state) {
        for (std::size_t group = 0; group < 4; ++group) {
            for (std::size_t entry = 0; entry < 8; ++entry) {
                if (const auto ids = idsOf(group, entry)) {
                    const bool clips = state.groups[group][entry] != 0;
                    EXPECT_EQ(shows(ids->clipping), clips) << group << ", " << entry;
                    EXPECT_EQ(shows(ids->notClipping), !clips) << group << ", " << entry;
                }
            }
        }
        EXPECT_EQ(shows(1376), state.amplifiers[0] != 0);
        EXPECT_EQ(shows(1378), state.amplifiers[0] == 0);
        EXPECT_EQ(shows(1375), state.amplifiers[1] != 0);
        EXPECT_EQ(shows(1377), state.amplifiers[1] == 0);
    }

    SteppedClock clock;
    std::atomic<int> asked = 0;
    std::mutex mutex;
    std::optional<ClipState> next = ClipState{};
    CClipDetectDlg* dialog = nullptr;
};

TEST_F(ClipDetection, StandsAtItsPlaces) {
    EXPECT_EQ(placeOf(clip_id::switchGroup), QRect(0, 8, 984, 62));
    EXPECT_EQ(placeOf(clip_id::onOff), QRect(16, 23, 112, 32));
    EXPECT_EQ(placeOf(clip_id::stateLamp), QRect(147, 30, 18, 18));
    EXPECT_EQ(placeOf(clip_id::state), QRect(174, 23, 200, 32));
    EXPECT_EQ(placeOf(clip_id::lastAnswer), QRect(382, 23, 586, 32));
    const std::array<const char*, 4> captions{"ADC", "Input EQ", "Signal Processing", "Output EQ"};
    const std::array<const char*, 6> sides{"Vorne Links",   "Vorne Rechts",  "Hinten Links",
                                           "Hinten Rechts", "Line-In Links", "Line-In Rechts"};
    for (int group = 0; group < 4; ++group) {
        auto& box = control<SkinGroupBox>(clip_id::firstColumn + group);
        EXPECT_EQ(placeOf(box), QRect(252 * group, 80, 228, 424));
        EXPECT_EQ(box.title(), QLatin1String(captions[static_cast<std::size_t>(group)]));
        for (int row = 0; row < (group < 2 ? 6 : 8); ++row) {
            const QRect bounds(252 * group + 16, 120 + 47 * row, 140, 47);
            const auto labels = page->findChildren<QLabel*>();
            const auto label = std::find_if(labels.begin(), labels.end(),
                                            [&](const QLabel* each) { return placeOf(*each) == bounds; });
            ASSERT_NE(label, labels.end()) << group << ", " << row;
            EXPECT_EQ((*label)->text(), group < 2 ? QLatin1String(sides[static_cast<std::size_t>(row)])
                                                  : QStringLiteral("Kanal %1").arg(row + 1));
            EXPECT_LE((*label)->fontMetrics().horizontalAdvance((*label)->text()), bounds.width());
        }
    }
    const int firsts[4][2]{{1386, 1392}, {1380, 1398}, {1404, 1412}, {1420, 1428}};
    for (int group = 0; group < 4; ++group) {
        for (int row = 0; row < (group < 2 ? 6 : 8); ++row) {
            const QRect bounds(252 * group + 178, 127 + 47 * row, 34, 34);
            EXPECT_EQ(placeOf(firsts[group][0] + row), bounds);
            EXPECT_EQ(placeOf(firsts[group][1] + row), bounds);
        }
    }
    EXPECT_EQ(placeOf(1376), QRect(425, 529, 44, 44));
    EXPECT_EQ(placeOf(1377), QRect(425, 529, 44, 44));
    EXPECT_EQ(placeOf(1375), QRect(929, 529, 44, 44));
    EXPECT_EQ(placeOf(1378), QRect(929, 529, 44, 44));
}

TEST_F(ClipDetection, TheAmplifiersAreNamed) {
    for (int row = 0; row < 2; ++row) {
        const QString text = QStringLiteral("Amplifier %1 Clipping Status").arg(row + 1);
        const QLabel* named = nullptr;
        for (const QLabel* each : page->findChildren<QLabel*>()) {
            if (each->text() == text) {
                EXPECT_EQ(named, nullptr) << "once only: " << text.toStdString();
                named = each;
            }
        }
        ASSERT_NE(named, nullptr) << text.toStdString();
        EXPECT_TRUE(named->isVisible());
        EXPECT_LE(named->fontMetrics().horizontalAdvance(text), named->width());
        const QRect light = placeOf(row == 0 ? 1376 : 1375);
        EXPECT_TRUE(placeOf(*named).top() < light.center().y() &&
                    light.center().y() < placeOf(*named).bottom())
            << "beside its light";
        EXPECT_LT(placeOf(*named).right(), light.left());
        EXPECT_LT(light.left() - placeOf(*named).left(), 480) << "on the same card";
    }
}

TEST_F(ClipDetection, StartsOffWithNothingClipping) {
    EXPECT_FALSE(dialog->isOn());
    EXPECT_EQ(stateText(), QStringLiteral("Clip Detection is OFF"));
    EXPECT_FALSE(control<StateLamp>(clip_id::stateLamp).isLit());
    EXPECT_FALSE(control<SkinGroupBox>(clip_id::switchGroup).bar().isValid());
    expectShown({});
}

TEST_F(ClipDetection, TheButtonSwitches) {
    click(control<QWidget>(clip_id::onOff));
    EXPECT_TRUE(dialog->isOn());
    EXPECT_EQ(stateText(), QStringLiteral("Clip Detection is ON"));
    EXPECT_TRUE(control<StateLamp>(clip_id::stateLamp).isLit());
    EXPECT_TRUE(control<SkinGroupBox>(clip_id::switchGroup).bar().isValid());
    click(control<QWidget>(clip_id::onOff));
    EXPECT_FALSE(dialog->isOn());
    EXPECT_EQ(stateText(), QStringLiteral("Clip Detection is OFF"));
    EXPECT_TRUE(page->isVisible());
}

TEST_F(ClipDetection, EveryEntryLightsItsRowAndNoOther) {
    for (std::size_t group = 0; group < 4; ++group) {
        for (std::size_t entry = 0; entry < 8; ++entry) {
            ClipState state;
            state.groups[group][entry] = static_cast<std::uint8_t>(1 + entry * 36);
            dialog->showState(state);
            expectShown(state);
        }
    }
}

TEST_F(ClipDetection, AnAnswerOfZerosShowsEveryIndicatorNotClipping) {
    constexpr std::array<std::array<int, 3>, 4> columns{
        {{1386, 1392, 6}, {1380, 1398, 6}, {1404, 1412, 8}, {1420, 1428, 8}}};
    ClipState loud;
    for (auto& group : loud.groups) {
        group.fill(255);
    }
    loud.amplifiers = {255, 255};
    const auto expectAll = [&](bool clipping) {
        int indicators = 0;
        const auto expect = [&](int clippingId, int notClippingId) {
            EXPECT_EQ(shows(clippingId), clipping) << clippingId;
            EXPECT_EQ(shows(notClippingId), !clipping) << notClippingId;
            ++indicators;
        };
        for (const auto& [firstClipping, firstNotClipping, rows] : columns) {
            for (int row = 0; row < rows; ++row) {
                expect(firstClipping + row, firstNotClipping + row);
            }
        }
        expect(1376, 1378);
        expect(1375, 1377);
        EXPECT_EQ(indicators, 30);
    };
    dialog->showState(loud);
    expectAll(true);
    dialog->showState({});
    expectAll(false);
}

TEST_F(ClipDetection, TheFirstEntryOfSignalProcessingIsKanal4) {
    ClipState state;
    state.groups[2][0] = 1;
    dialog->showState(state);
    EXPECT_TRUE(shows(1407));
    EXPECT_EQ(control<QWidget>(1407).accessibleName(),
              QStringLiteral("Signal Processing, Kanal 4: clipping"));
    EXPECT_FALSE(shows(1415));
}

TEST_F(ClipDetection, EntriesSixAndSevenOfTheInputsChangeNothing) {
    ClipState state;
    for (const std::size_t entry : {6U, 7U}) {
        state.groups[0][entry] = 1;
        state.groups[1][entry] = 255;
    }
    dialog->showState(state);
    expectShown({});
}

TEST_F(ClipDetection, AmplifiersArePairedCrosswise) {
    ClipState state;
    state.amplifiers = {1, 0};
    dialog->showState(state);
    // Row 1 shows both its pictures, row 2 none.
    EXPECT_TRUE(shows(1376));
    EXPECT_TRUE(shows(1377));
    EXPECT_FALSE(shows(1375));
    EXPECT_FALSE(shows(1378));
    const auto above = control<QWidget>(1376).parentWidget()->children();
    EXPECT_GT(above.indexOf(&control<QWidget>(1376)), above.indexOf(&control<QWidget>(1377)))
        << "the warning lies on top";
    state.amplifiers = {0, 1};
    dialog->showState(state);
    EXPECT_FALSE(shows(1376));
    EXPECT_FALSE(shows(1377));
    EXPECT_TRUE(shows(1375));
    EXPECT_TRUE(shows(1378));
    state.amplifiers = {1, 1};
    dialog->showState(state);
    expectShown(state);
    dialog->showState({});
    expectShown({});
}

TEST_F(ClipDetection, RandomStatesAreShownAsTheyCome) {
    std::mt19937 random(34);
    for (int i = 0; i < 200; ++i) {
        ClipState state;
        for (auto& group : state.groups) {
            for (auto& entry : group) {
                entry = static_cast<std::uint8_t>(random() % 3);
            }
        }
        state.amplifiers = {static_cast<std::uint8_t>(random() % 2), static_cast<std::uint8_t>(random() % 2)};
        dialog->showState(state);
        expectShown(state);
    }
}

TEST_F(ClipDetection, AnAnswerOfTheThreadReachesTheLightsUntilSwitchedOff) {
    ClipState state;
    state.groups[3][2] = 1;
    const auto answer = [&](const ClipState& next_) {
        const std::lock_guard guard(mutex);
        next = next_;
    };
    answer(state);
    click(control<QWidget>(clip_id::onOff));
    clock.step();
    EXPECT_EQ(asked, 1);
    deliver();
    EXPECT_TRUE(shows(1420));
    expectShown(state);
    click(control<QWidget>(clip_id::onOff));
    answer({});
    for (int i = 0; i < 5; ++i) {
        clock.step();
        deliver();
    }
    EXPECT_EQ(asked, 1) << "nothing is asked any more";
    expectShown(state);
    click(control<QWidget>(clip_id::onOff));
    clock.step();
    EXPECT_EQ(asked, 2);
    deliver();
    expectShown({});
}

TEST_F(ClipDetection, AFailedRequestKeepsTheLights) {
    ClipState state;
    state.groups[0][0] = 1;
    dialog->showState(state);
    {
        const std::lock_guard guard(mutex);
        next.reset();
    }
    click(control<QWidget>(clip_id::onOff));
    clock.step();
    EXPECT_EQ(asked, 1);
    deliver();
    expectShown(state);
}

TEST_F(ClipDetection, TellsWhenTheLastAnswerCameAndSinceWhenNoneDoes) {
    EXPECT_EQ(answerText(), "");
    click(control<QWidget>(clip_id::onOff));
    EXPECT_EQ(answerText(), "no answer yet");
    targetAnswers(false);
    pass();
    EXPECT_EQ(answerText(), "no answer since <time>");
    const QString silent = control<QLabel>(clip_id::lastAnswer).text();
    const QColor red = control<QLabel>(clip_id::lastAnswer).palette().color(QPalette::WindowText);
    const QTime before = QTime::currentTime();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QTime::currentTime().second() != before.second(); }));
    for (int i = 0; i < 3; ++i) {
        pass();
        EXPECT_EQ(control<QLabel>(clip_id::lastAnswer).text(), silent) << "since the first";
    }
    targetAnswers(true);
    pass();
    EXPECT_EQ(answerText(), "last answer <time>");
    EXPECT_NE(control<QLabel>(clip_id::lastAnswer).palette().color(QPalette::WindowText), red);
    targetAnswers(false);
    pass();
    EXPECT_EQ(answerText(), "last answer <time>, none since <time>");
    EXPECT_EQ(control<QLabel>(clip_id::lastAnswer).palette().color(QPalette::WindowText), red);
    const QLabel& label = control<QLabel>(clip_id::lastAnswer);
    EXPECT_LE(label.fontMetrics().horizontalAdvance(label.text()), label.width());
    const QLabel& state = control<QLabel>(clip_id::state);
    EXPECT_LE(state.fontMetrics().horizontalAdvance(state.text()), state.width());
    click(control<QWidget>(clip_id::onOff));
    EXPECT_EQ(answerText(), "");
    dialog->noteNoAnswer();
    EXPECT_EQ(answerText(), "") << "a question from before that has failed";
    click(control<QWidget>(clip_id::onOff));
    EXPECT_EQ(answerText(), "no answer yet") << "what was before is forgotten";
    dialog->noteNoAnswer();
    EXPECT_EQ(answerText(), "no answer since <time>") << "told before the question has returned";
}

TEST_F(ClipDetection, PicturesDifferInShapeNotOnlyInColour) {
    // Read as grey, the two pictures of a place are still far apart, small ones and the amplifiers' large
    // ones.
    ClipState allClip;
    for (auto& group : allClip.groups) {
        group.fill(1);
    }
    allClip.amplifiers = {1, 1};
    for (const int id : {1386, 1380, 1404, 1420, 1376, 1375}) {
        const QRect bounds = placeOf(id);
        const auto grey = [&] {
            return page->grab(bounds).toImage().convertToFormat(QImage::Format_Grayscale8);
        };
        const auto darkness = [](const QImage& image) {
            double sum = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    sum += 255 - qGray(image.pixel(x, y));
                }
            }
            return sum / (image.width() * image.height());
        };
        dialog->showState({});
        const QImage quiet = grey();
        dialog->showState(allClip);
        const QImage loud = grey();
        ASSERT_EQ(quiet.size(), loud.size());
        int far = 0;
        for (int y = 0; y < quiet.height(); ++y) {
            for (int x = 0; x < quiet.width(); ++x) {
                far += std::abs(qGray(quiet.pixel(x, y)) - qGray(loud.pixel(x, y))) > 60 ? 1 : 0;
            }
        }
        // A large one has more of everything.
        const int diameter = bounds.width() == 44 ? 28 : 22;
        EXPECT_GT(far, 150 * diameter * diameter / (22 * 22)) << id;
        EXPECT_GT(std::abs(darkness(quiet) - darkness(loud)), 3) << id;
    }
}

}  // namespace
}  // namespace tessavo::test
