#include <gmock/gmock.h>

#include "app/import_filters_fixture.h"
#include "pages/form/channel_titles.h"

// What an import writes, into the sets, the history and the target.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string wholeText = "Preamp: -4.3 dB\n" + std::string(everyVerdictText);

class ImportingFilters : public ImportTest {
 protected:
    /// Which bytes of all five sets differ: the offsets in the store.
    static std::vector<std::size_t> differing(const ParameterStore& one, const ParameterStore& other) {
        const auto* const left = reinterpret_cast<const std::uint8_t*>(&one);
        const auto* const right = reinterpret_cast<const std::uint8_t*>(&other);
        std::vector<std::size_t> offsets;
        for (std::size_t i = 0; i < sizeof one; ++i) {
            if (left[i] != right[i]) {
                offsets.push_back(i);
            }
        }
        return offsets;
    }
    /// Where a channel of the current set lies in the store.
    [[nodiscard]] std::pair<std::size_t, std::size_t> extentOf(RecordChannel channel) const {
        const auto* const start = reinterpret_cast<const std::uint8_t*>(&tuning.store());
        const auto* const there = reinterpret_cast<const std::uint8_t*>(&set().channels.at(channel.value));
        const auto first = static_cast<std::size_t>(there - start);
        return {first, first + sizeof(OutputChannelParams)};
    }
    void importInto(std::uint8_t position, const std::string& text) {
        importWith([&](ImportFiltersDialog& dialog) {
            clickEntry(combo(dialog, "Channel"), position);
            paste(dialog, text);
            apply(dialog);
        });
    }
};

TEST_F(ImportingFilters, WriteOneChannelAsOneStepAndNothingElse) {
    view().showSet(2);
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const auto before = state();
        const ParameterStore storeBefore = tuning.store();
        const std::size_t stepsBefore = history->position();
        const RecordChannel channel = recordChannelAt({position});
        const ImportPlan plan =
            planImport(readFilterText(wholeText), channelAt(position),
                       {.bands = {true, true, true, true, false, false, false, false}, .keepOthers = true});
        importInto(position, wholeText);
        EXPECT_TRUE(same(channelAt(position), plan.after)) << int{position};
        EXPECT_FLOAT_EQ(channelAt(position).volumeDb, -4.3F);
        EXPECT_TRUE(channelAt(position).crossovers[0].enabled != 0 ||
                    channelAt(position).crossovers[1].enabled != 0);
        const auto [first, last] = extentOf(channel);
        const std::vector<std::size_t> changed = differing(storeBefore, tuning.store());
        ASSERT_FALSE(changed.empty());
        for (const std::size_t offset : changed) {
            EXPECT_TRUE(offset >= first && offset < last)
                << "byte " << offset << " of another channel or set";
        }
        EXPECT_EQ(history->position(), stepsBefore + 1);
        EXPECT_EQ(std::string(history->undoText()),
                  "Import filters into " + channelNumber(channel).toStdString());
        EXPECT_TRUE(pagesShowTheSet());
        const auto after = state();
        undoKey();
        EXPECT_TRUE(same(*before, *state())) << "every byte is back";
        redoKey();
        EXPECT_TRUE(same(*after, *state()));
        undoKey();
    }
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(ImportingFilters, BeginWithTheChannelOfThePage) {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        tuning.setSelectionMask(selectionBit({position}));
        importWith([&](ImportFiltersDialog& dialog) {
            EXPECT_EQ(dialog.channel().value, recordChannelAt({position}).value);
            EXPECT_EQ(combo(dialog, "Channel").currentIndex(), position);
        });
    }
    tuning.setSelectionMask(0);
    importWith([&](ImportFiltersDialog& dialog) { EXPECT_EQ(combo(dialog, "Channel").currentIndex(), 0); });
}

TEST_F(ImportingFilters, ChangeNothingWhenTheyAreCancelled) {
    const auto before = state();
    const std::size_t count = steps();
    const bool pending = tuning.updatePending();
    const std::vector<std::function<void(ImportFiltersDialog&)>> ways{
        [](ImportFiltersDialog& dialog) { QTest::mouseClick(&button(dialog, "Cancel"), Qt::LeftButton); },
        [](ImportFiltersDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](ImportFiltersDialog& dialog) { dialog.close(); }};
    for (const auto& way : ways) {
        importWith([&](ImportFiltersDialog& dialog) {
            paste(dialog, wholeText);
            for (std::size_t band = 0; band < bandCount; ++band) {
                QTest::mouseClick(&bandBox(dialog, band), Qt::LeftButton, {}, QPoint(10, 10));
            }
            clickEntry(combo(dialog, "Channel"), 3);
            clickEntry(combo(dialog, "Other bands"), 1);
            way(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
        EXPECT_TRUE(same(*before, *state()));
        EXPECT_EQ(steps(), count);
        EXPECT_EQ(tuning.updatePending(), pending);
    }
}

TEST_F(ImportingFilters, TwoOfThemAreTwoSteps) {
    const auto start = state();
    const std::size_t count = steps();
    importInto(1, peaks(2));
    const auto between = state();
    importInto(1, peaks(5));
    EXPECT_EQ(steps(), count + 2);
    EXPECT_EQ(channelAt(1).bands[4].frequencyHz, 500);
    undoKey();
    EXPECT_TRUE(same(*between, *state()));
    undoKey();
    EXPECT_TRUE(same(*start, *state()));
    // The same once more changes nothing, which is told.
    redoKey();
    const std::size_t position = history->position();
    importInto(1, peaks(2));
    EXPECT_EQ(history->position(), position);
    EXPECT_EQ(noticeText(), "Channel 2: the same as the filters already");
}

TEST_F(ImportingFilters, TheChosenBandsAreWrittenAndTheOthersAsAsked) {
    importWith([&](ImportFiltersDialog& dialog) {
        paste(dialog, peaks(3));
        for (const std::size_t band : {0U, 1U, 5U, 7U}) {
            QTest::mouseClick(&bandBox(dialog, band), Qt::LeftButton, {}, QPoint(10, 10));
        }
        clickEntry(combo(dialog, "Other bands"), 1);
        apply(dialog);
    });
    const OutputChannelParams& written = set().channels.at(lastSelected(tuning.selectionMask())->value);
    const std::array<int, bandCount> frequencies{1000, 1000, 100, 1000, 1000, 200, 1000, 300};
    for (std::size_t band = 0; band < bandCount; ++band) {
        EXPECT_EQ(written.bands[band].frequencyHz, frequencies.at(band)) << band;
        EXPECT_EQ(written.bands[band].off != 0, frequencies.at(band) == 1000) << band;
    }
}

TEST_F(ImportingFilters, InLiveModeTheTargetHoldsThemByOneSend) {
    ASSERT_TRUE(line.startWorker());
    int rounds = 0;
    QObject::connect(&line, &CommLink::workerState, &line, [&rounds](LiveWorker::State told) {
        rounds += told == LiveWorker::State::confirmed ? 1 : 0;
    });
    click(eqMode());
    ASSERT_TRUE(targetPlays(tuning.image()));
    settleEvents();
    rounds = 0;
    const ParameterImage before = tuning.image();
    importInto(4, wholeText);
    const std::size_t record = recordChannelAt({4}).value;
    ASSERT_NE(std::memcmp(&before.channels.at(record), &tuning.image().channels.at(record),
                          sizeof before.channels[0]),
              0);
    ASSERT_TRUE(targetPlays(tuning.image()));
    settleEvents();
    EXPECT_EQ(rounds, 1);
    const auto live = target.memory().live;
    ParameterImage held;
    std::memcpy(&held, live.data(), sizeof held);
    EXPECT_NE(held.channels.at(record).gainWord, before.channels.at(record).gainWord) << "the preamp too";
    for (std::size_t other = 0; other < channelCount; ++other) {
        EXPECT_EQ(
            std::memcmp(&held.channels.at(other), &before.channels.at(other), sizeof before.channels[0]) == 0,
            other != record)
            << other;
    }
    undoKey();
    ASSERT_TRUE(targetPlays(tuning.image()));
    EXPECT_EQ(std::memcmp(target.memory().live.data(), &before, sizeof before), 0);
}

}  // namespace
}  // namespace tessavo::test
