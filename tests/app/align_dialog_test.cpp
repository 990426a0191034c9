#include "app/align_dialog.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <random>

#include "app/align_parts.h"
#include "app/undo_fixture.h"
#include "compare/sets.h"
#include "controls/number_edit.h"
#include "controls/skin_radio_button.h"
#include "pages/rows/output_group_rows.h"
#include "params/set_text.h"
#include "params/volume_gain_table.h"

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;

const QStringList car{QStringLiteral("112"), QStringLiteral("142"), QStringLiteral("116"),
                      QStringLiteral("138"), QStringLiteral("124"), QStringLiteral("148"),
                      QStringLiteral("96"),  QStringLiteral("245")};
const QStringList carNeeds{QStringLiteral("3.9"), QStringLiteral("3.0"), QStringLiteral("3.8"),
                           QStringLiteral("3.1"), QStringLiteral("3.5"), QStringLiteral("2.8"),
                           QStringLiteral("4.3"), QStringLiteral("0.0")};
constexpr std::array<int, channelCount> carGroups{20, 20, 20, 20, 20, 20, 20, 0};
constexpr std::array<int, channelCount> carChannels{19, 10, 18, 11, 15, 8, 20, 0};
constexpr std::array<const char16_t*, channelCount> carNames{u"Tweeter L", u"Tweeter R", u"Mid L", u"Mid R",
                                                             u"Woofer L",  u"Woofer R",  u"Rear",  u"Sub"};

/// The window with five random sets and named channels, and the dialog that aligns.
class Aligning : public UndoTest {
 protected:
    Aligning() {
        std::mt19937_64 random(44);
        for (std::uint32_t index = 0; index < setCount; ++index) {
            ParameterSet filled = randomSet(random);
            filled.recordSize = parameterSetSize;
            writeSetText(filled.setName, u"Filled");
            tuning.replaceSet(index, filled);
        }
        FileNotes notes;
        for (std::uint8_t position = 0; position < channelCount; ++position) {
            setChannelName(notes, recordChannelAt({position}), carNames.at(position));
        }
        tuning.setNotes(notes);
        history->commit("filled");
        view().refreshPages();
    }

    [[nodiscard]] const OutputChannelParams& channelAt(std::uint8_t position) const {
        return tuning.currentParameterSet().channels.at(recordChannelAt({position}).value);
    }
    template <typename Control>
    static Control& captioned(QWidget& dialog, const char* text) {
        for (Control* each : dialog.findChildren<Control*>()) {
            if (each->text() == QLatin1String(text)) {
                return *each;
            }
        }
        throw std::logic_error(text);
    }
    static NumberEdit& celsius(QWidget& dialog) {
        for (NumberEdit* each : dialog.findChildren<NumberEdit*>()) {
            if (each->accessibleName() == QStringLiteral("Air temperature")) {
                return *each;
            }
        }
        throw std::logic_error("no temperature");
    }
    static void press(QWidget& dialog, const char* caption) {
        QTest::mouseClick(&captioned<QAbstractButton>(dialog, caption), Qt::LeftButton, {}, QPoint(10, 14));
    }
    /// Clicks into a box, which selects its number, and types another one.
    static void typeNumber(NumberEdit& box, const QString& text) {
        QTest::mouseClick(&box, Qt::LeftButton);
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, text);
    }
    static void typeAll(AlignDialog& dialog, const QStringList& texts) {
        for (std::uint8_t position = 0; position < channelCount; ++position) {
            typeNumber(dialog.rows().box({position}), texts.at(position));
        }
    }
    /// What a column of the table shows, from the top: the labels whose right or left edge is there.
    static QStringList column(AlignDialog& dialog, int left) {
        QStringList texts;
        for (int row = 0; row < static_cast<int>(channelCount); ++row) {
            const QWidget* const label = dialog.rows().childAt(left + 20, 40 + AlignRows::rowPitch * row);
            texts << label->property("text").toString();
        }
        return texts;
    }
    static QStringList needs(AlignDialog& dialog) { return column(dialog, 480); }
    static QStringList groups(AlignDialog& dialog) { return column(dialog, 545); }
    static QStringList channels(AlignDialog& dialog) { return column(dialog, 615); }
    static QStringList results(AlignDialog& dialog) { return column(dialog, 720); }

    AlignDialog& showAlone(const AlignInputs& inputs = {}) {
        alone_ = std::make_unique<AlignDialog>(tuning, inputs, frame.get());
        // Whatever the size of the screen is.
        alone_->setFixedSize(AlignDialog::usualSize);
        alone_->open();
        alone_->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == alone_.get(); }));
        return *alone_;
    }
    /// A person chooses the entry of the menu and does something with the dialog, which closes at the latest then.
    void alignWith(std::function<void(AlignDialog&)> act) {
        withDialog(QStringLiteral("Tools"), QStringLiteral("Align..."), std::move(act));
    }
    void alignTheCar() {
        alignWith([](AlignDialog& dialog) {
            typeAll(dialog, car);
            press(dialog, "Apply");
        });
    }
    static QStringList inTenths(const std::array<int, channelCount>& tenths) {
        QStringList texts;
        for (const int tenth : tenths) {
            texts << QString::number(tenth / 10.0, 'f', 1);
        }
        return texts;
    }
    std::string noticeText() {
        const Notice* const notice = frame->statusLine().noticeLine().standing();
        return notice == nullptr ? std::string() : notice->text.toStdString();
    }

    std::unique_ptr<AlignDialog> alone_;
};

TEST_F(Aligning, ShowsWhatACarNeedsAndWhatItLacks) {
    AlignDialog& dialog = showAlone();
    typeAll(dialog, car);
    EXPECT_EQ(needs(dialog), carNeeds);
    EXPECT_EQ(groups(dialog), inTenths(carGroups));
    EXPECT_EQ(channels(dialog), inTenths(carChannels));
    EXPECT_EQ(results(dialog).join(QLatin1Char('|')).toStdString(),
              "within 1 cm|within 1 cm|within 2 cm|within 1 cm|within 1 cm|within 1 cm|12 cm too early|the "
              "farthest");
    EXPECT_EQ(
        dialog.verdict().text().toStdString(),
        "Rear: 4.3 ms are needed, 4.0 ms are possible (2.0 ms in the group, 2.0 ms in the channel); 0.3 ms "
        "or 12 "
        "cm are missing.\nAll eight are in line if the farthest is at 233 cm or nearer: Sub now 245 cm.");
    EXPECT_TRUE(dialog.verdict().isShortfall());
    EXPECT_TRUE(captioned<QLabel>(dialog, "343.2 m/s").isVisible());
    typeNumber(dialog.rows().box({7}), QStringLiteral("233"));
    EXPECT_EQ(dialog.verdict().text().toStdString(), "All eight are in line.");
    EXPECT_FALSE(dialog.verdict().isShortfall());
    EXPECT_EQ(channels(dialog).at(6).toStdString(), "2.0");
}

TEST_F(Aligning, IsWorkedOutAnewAtEveryEdit) {
    AlignDialog& dialog = showAlone();
    auto& apply = captioned<QAbstractButton>(dialog, "Apply");
    EXPECT_FALSE(apply.isEnabled());
    EXPECT_EQ(dialog.verdict().text().toStdString(),
              "Type how far each loudspeaker is from the seat.\nA channel without a number stays as it is.");
    typeNumber(dialog.rows().box({0}), QStringLiteral("100"));
    EXPECT_TRUE(apply.isEnabled());
    EXPECT_EQ(dialog.verdict().text().toStdString(),
              "One channel alone gets no delay.\nA channel without a number stays as it is.");
    typeNumber(dialog.rows().box({1}), QStringLiteral("200"));
    EXPECT_EQ(needs(dialog).first(2), (QStringList{QStringLiteral("2.9"), QStringLiteral("0.0")}));
    EXPECT_EQ(results(dialog).at(2).toStdString(), "stays as it is");
    typeNumber(celsius(dialog), QStringLiteral("-40"));
    EXPECT_EQ(needs(dialog).at(0).toStdString(), "3.3");
    typeNumber(celsius(dialog), QStringLiteral("61"));
    EXPECT_FALSE(apply.isEnabled());
    EXPECT_EQ(dialog.verdict().text().toStdString(),
              "\"61\" is no temperature.\nAir has -40 to 60 \u00b0C here.");
    EXPECT_NE(celsius(dialog).warning(), QString());
    typeNumber(celsius(dialog), QStringLiteral("20"));
    for (const char* wrong : {"x", "-1", "1e6", "100000.1", "nan", "1 2"}) {
        typeNumber(dialog.rows().box({6}), QLatin1String(wrong));
        EXPECT_FALSE(apply.isEnabled()) << wrong;
        EXPECT_NE(dialog.rows().box({6}).warning(), QString()) << wrong;
        EXPECT_EQ(results(dialog).join(QLatin1Char('|')).toStdString(),
                  "||stays as it is|stays as it is|stays as it is|stays as it is||stays as it is");
        EXPECT_EQ(needs(dialog).join(QString()), QString()) << "nothing is worked out";
        EXPECT_EQ(dialog.verdict().text().toStdString(),
                  std::string("Rear: \"") + wrong + "\" is no distance.\nDistances are 0 to 100000 cm.");
    }
    typeNumber(dialog.rows().box({6}), QStringLiteral(" 142,5 "));
    EXPECT_TRUE(apply.isEnabled());
    EXPECT_EQ(dialog.rows().box({6}).warning(), QString());
    EXPECT_EQ(needs(dialog).at(6).toStdString(), "1.7");
    QTest::keyClick(&dialog.rows().box({6}), Qt::Key_Up);
    EXPECT_EQ(dialog.rows().box({6}).text().toStdString(), "143.5");
    QTest::keyClick(&dialog.rows().box({6}), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(dialog.rows().box({6}).text().toStdString(), "133.5");
    EXPECT_EQ(needs(dialog).at(6).toStdString(), "1.9");
}

TEST_F(Aligning, TakesTimesBesideTheDistances) {
    AlignDialog& dialog = showAlone();
    typeAll(dialog, car);
    press(dialog, "Times");
    EXPECT_EQ(dialog.verdict().text().toStdString(),
              "Type when the sound of each loudspeaker arrives at the seat.\nA channel without a number "
              "stays as it is.");
    for (const auto& text : dialog.rows().texts()) {
        EXPECT_EQ(text, QString());
    }
    typeNumber(dialog.rows().box({2}), QStringLiteral("3.1"));
    typeNumber(dialog.rows().box({3}), QStringLiteral("7.6"));
    typeNumber(dialog.rows().box({4}), QStringLiteral("3.5"));
    EXPECT_EQ(dialog.verdict().text().toStdString(),
              "Mid L: 4.5 ms are needed, 4.0 ms are possible (2.0 ms in the group, 2.0 ms in the channel); "
              "0.5 ms or "
              "17 cm are missing.\nAll three are in line if the farthest arrives at 7.10 ms or sooner: Mid R "
              "now 7.6 "
              "ms. 1 more comes too early.");
    QTest::keyClick(&dialog.rows().box({4}), Qt::Key_Up);
    EXPECT_EQ(dialog.rows().box({4}).text().toStdString(), "3.6");
    press(dialog, "Distances");
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        EXPECT_EQ(dialog.rows().box({position}).text(), car.at(position));
    }
    EXPECT_EQ(needs(dialog), carNeeds);
    press(dialog, "Times");
    EXPECT_EQ(dialog.rows().box({3}).text().toStdString(), "7.6");
}

TEST_F(Aligning, IsOneStepInRecordImageAndPageAndChangesNoOtherByte) {
    view().showSet(2);
    ASSERT_EQ(tuning.currentSet(), 2U);
    const auto before = state();
    ParameterStore expected = tuning.store();
    ParameterImage image = tuning.image();
    const std::size_t stepsBefore = history->position();
    alignTheCar();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const std::size_t record = recordChannelAt({position}).value;
        OutputChannelParams& channel = expected.sets.at(2).channels.at(record);
        channel.groupDelayMs = static_cast<float>(carGroups.at(position)) / 10.0F;
        channel.delayMs = static_cast<float>(carChannels.at(position)) / 10.0F;
        image.channels.at(record).delaySamples = delaySamplesOf(channel.delayMs, channel.groupDelayMs);
        image.groupDelayTenthMs.at(record) = static_cast<std::uint32_t>(carGroups.at(position));
    }
    EXPECT_EQ(std::memcmp(&expected, &tuning.store(), sizeof expected), 0);
    EXPECT_EQ(std::memcmp(&image, &tuning.image(), sizeof image), 0);
    EXPECT_EQ(history->position(), stepsBefore + 1);
    EXPECT_EQ(std::string(history->undoText()), "Align");
    EXPECT_TRUE(pagesShowTheSet());
    for (std::size_t slider = 0; slider < channelCount; ++slider) {
        const std::size_t position = pagePositionOf({groupSliderMap.at(slider)}).value;
        EXPECT_EQ(on<QLineEdit>(Page::outputGroup, groupRows[1].edits.at(slider)).text(),
                  inTenths(carGroups).at(static_cast<qsizetype>(position)))
            << slider;
    }
    const auto after = state();
    undoKey();
    EXPECT_TRUE(same(*before, *state())) << "every byte is back";
    EXPECT_TRUE(pagesShowTheSet());
    redoKey();
    EXPECT_TRUE(same(*after, *state()));
    EXPECT_THAT(shown, IsEmpty());
    const std::size_t position = history->position();
    alignWith([](AlignDialog& dialog) { press(dialog, "Apply"); });
    EXPECT_EQ(history->position(), position) << "what was typed is still there, and changes nothing";
    EXPECT_EQ(noticeText(), "Align: the delays are these already");
}

TEST_F(Aligning, LeavesOutEveryChannelWithoutANumber) {
    for (std::uint8_t left = 0; left < channelCount; ++left) {
        const ParameterStore storeBefore = tuning.store();
        const ParameterImage imageBefore = tuning.image();
        const OutputChannelParams before = channelAt(left);
        alignWith([&](AlignDialog& dialog) {
            typeAll(dialog, car);
            typeNumber(dialog.rows().box({left}), QString());
            press(dialog, "Apply");
        });
        EXPECT_EQ(std::memcmp(&before, &channelAt(left), sizeof before), 0) << int{left};
        const std::size_t record = recordChannelAt({left}).value;
        EXPECT_EQ(tuning.image().channels.at(record).delaySamples,
                  imageBefore.channels.at(record).delaySamples);
        EXPECT_EQ(tuning.image().groupDelayTenthMs.at(record), imageBefore.groupDelayTenthMs.at(record));
        ASSERT_NE(std::memcmp(&storeBefore, &tuning.store(), sizeof storeBefore), 0) << int{left};
        undoKey();
        EXPECT_EQ(std::memcmp(&storeBefore, &tuning.store(), sizeof storeBefore), 0) << int{left};
    }
}

TEST_F(Aligning, ChangesNothingWhenItIsCancelledAndKnowsWhatWasTyped) {
    const auto before = state();
    const std::size_t count = steps();
    const bool pending = tuning.updatePending();
    const std::vector<std::function<void(AlignDialog&)>> ways{
        [](AlignDialog& dialog) { press(dialog, "Cancel"); },
        [](AlignDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](AlignDialog& dialog) { dialog.close(); }};
    for (const auto& way : ways) {
        alignWith([&](AlignDialog& dialog) {
            typeAll(dialog, car);
            way(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
        EXPECT_TRUE(same(*before, *state()));
        EXPECT_EQ(steps(), count);
        EXPECT_EQ(tuning.updatePending(), pending);
    }
    alignWith([](AlignDialog& dialog) {
        for (std::uint8_t position = 0; position < channelCount; ++position) {
            EXPECT_EQ(dialog.rows().box({position}).text(), car.at(position));
        }
    });
}

TEST_F(Aligning, IsDoneByTheKeysAlone) {
    alignWith([](AlignDialog& dialog) {
        EXPECT_TRUE(dialog.rows().box({0}).hasFocus());
        for (const QString& text : car) {
            QTest::keyClicks(QApplication::focusWidget(), text);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        EXPECT_TRUE(captioned<QAbstractButton>(dialog, "Apply").hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        EXPECT_FLOAT_EQ(channelAt(position).groupDelayMs, static_cast<float>(carGroups.at(position)) / 10.0F);
        EXPECT_FLOAT_EQ(channelAt(position).delayMs, static_cast<float>(carChannels.at(position)) / 10.0F);
    }
}

TEST_F(Aligning, InLiveModeTheTargetHoldsTheDelays) {
    ASSERT_TRUE(line.startWorker());
    click(eqMode());
    ASSERT_TRUE(targetPlays(tuning.image()));
    const ParameterImage before = tuning.image();
    alignTheCar();
    ASSERT_NE(std::memcmp(&before, &tuning.image(), sizeof before), 0);
    ASSERT_TRUE(targetPlays(tuning.image()));
    undoKey();
    ASSERT_TRUE(targetPlays(tuning.image()));
    EXPECT_EQ(std::memcmp(target.memory().live.data(), &before, sizeof before), 0);
}

TEST_F(Aligning, ScrollsWhereTheScreenIsSmallAndKeepsItsFoot) {
    AlignDialog& dialog = showAlone();
    dialog.setFixedSize(500, 300);
    settleEvents();
    for (const char* caption : {"Apply", "Cancel"}) {
        auto& button = captioned<QAbstractButton>(dialog, caption);
        EXPECT_TRUE(dialog.rect().contains(button.geometry())) << caption;
        EXPECT_FALSE(button.visibleRegion().isEmpty()) << caption;
    }
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        NumberEdit& box = dialog.rows().box({position});
        box.setFocus();
        settleEvents();
        EXPECT_EQ(box.visibleRegion().boundingRect(), box.rect()) << int{position};
    }
}

TEST_F(Aligning, CutsNothingOffThatATypicalCarShows) {
    AlignDialog& dialog = showAlone();
    typeAll(dialog, car);
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->isVisible()) {
            EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width())
                << label->text().toStdString();
            EXPECT_TRUE(dialog.rect().contains(QRect(label->mapTo(&dialog, QPoint()), label->size())));
            EXPECT_FALSE(label->text().endsWith(QChar(0x2026))) << label->text().toStdString();
        }
    }
}

}  // namespace
}  // namespace tessavo::test
