#include "app/group_terms_offer.h"

#include <gmock/gmock.h>

#include "app/ab_fixture.h"
#include "app/compare_fixture.h"
#include "compare/group_terms.h"
#include "pages/rows/communication_rows.h"

// After a set with group terms was read.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;

class GroupTermsRead : public CompareTest {
 protected:
    const Notice* notice() { return frame->statusLine().noticeLine().standing(); }
    [[nodiscard]] const ParameterSet& current() const { return tuning.currentParameterSet(); }
    /// The target plays what this set gives, and that is read.
    void read(const ParameterSet& set) {
        commands().settle();
        tuning.replaceImage(imageOf(set));
        tuning.imageToSet();
        view().refreshPages();
        Q_EMIT line.commandReported({Command::readSet, 3, CommandReport::Result::done});
        settleEvents();
    }
    [[nodiscard]] ParameterSet withTerms() const {
        ParameterSet set = current();
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            set.channels.at(channel).volumeDb = -1;
            set.channels.at(channel).groupGainDb = channel % 2 == 0 ? -2.0F : 0.0F;
            set.channels.at(channel).delayMs = 1;
            set.channels.at(channel).groupDelayMs = channel % 3 == 0 ? 2.0F : 0.0F;
        }
        return set;
    }
    void clickOffer() {
        auto* const button = frame->statusLine().findChild<CxSkinButton*>();
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), QStringLiteral("Take Them Out of the Channels"));
        click(*button);
    }
};

TEST_F(GroupTermsRead, NothingIsOfferedWithoutThem) {
    read(current());
    EXPECT_EQ(notice(), nullptr);
}

TEST_F(GroupTermsRead, AreTakenOutAsOneStepThatKeepsGainAndDelayOfEveryChannel) {
    read(withTerms());
    ASSERT_NE(notice(), nullptr);
    EXPECT_EQ(notice()->text, QStringLiteral("Group values count twice"));
    const ParameterImage received = tuning.image();
    const GroupTermsResult expected = takeOutGroupTerms(current(), received);
    ASSERT_FALSE(expected.taken.empty());
    const std::size_t count = steps();
    const auto before = state();
    clickOffer();
    EXPECT_EQ(steps(), count + 1);
    EXPECT_EQ(history->undoText(), "Took the group values out of the channels");
    EXPECT_EQ(std::memcmp(&current(), &expected.record, sizeof expected.record), 0);
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        EXPECT_EQ(tuning.image().channels.at(channel).gainWord, received.channels.at(channel).gainWord)
            << channel;
        EXPECT_EQ(tuning.image().channels.at(channel).delaySamples,
                  received.channels.at(channel).delaySamples)
            << channel;
    }
    EXPECT_TRUE(pagesShowTheSet());
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
}

TEST_F(GroupTermsRead, ChannelsThatStayAreNamed) {
    ParameterSet set = withTerms();
    set.channels[channelMap[2]].volumeDb = static_cast<float>(fieldOf(FieldId::volume).minimum - 4);
    set.channels[channelMap[2]].groupGainDb = 6;
    read(set);
    const GroupTermsResult expected = takeOutGroupTerms(current(), tuning.image());
    ASSERT_FALSE(expected.stays.empty());
    clickOffer();
    ASSERT_NE(notice(), nullptr);
    for (const UntakenChannel& channel : expected.stays) {
        EXPECT_THAT(notice()->text.toStdString(), HasSubstr(channel.reason));
    }
}

TEST_F(GroupTermsRead, TheOfferEndsWithTheValuesThatItIsAbout) {
    read(withTerms());
    ASSERT_NE(notice(), nullptr);
    // What has nothing to do with it changes nothing.
    tuning.setInputEqOn(!static_cast<bool>(current().inputEqOn));
    history->commit();
    EXPECT_NE(notice(), nullptr);
    tuning.setVolume(-5, true);
    history->commit();
    EXPECT_EQ(notice(), nullptr);
    read(withTerms());
    ASSERT_NE(notice(), nullptr);
    Q_EMIT line.commandReported({Command::readSet, 3, CommandReport::Result::exchangeFailed});
    EXPECT_NE(notice(), nullptr) << "nothing was read";
}

/// The window reads what a target really holds.
class GroupTermsOfATarget : public AbTest {};

TEST_F(GroupTermsOfATarget, TakenOutTheTargetGetsWhatItHadToTheByteAlsoAfterAnEdit) {
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        tuning.setSelectionMask(selectionBit({c}));
        setVolume(static_cast<float>(c) - 2.0F);
        tuning.setDelay(0.1F * static_cast<float>(c), true);
        tuning.setGroupGain({c}, c % 2 == 0 ? 3.5F : 0.0F);
        tuning.setGroupDelay({c}, c % 3 == 0 ? 0.7F : 0.0F);
    }
    commands().settle();
    const ParameterSet sent = tuning.currentParameterSet();
    goLive();
    click(on<CxSkinButton>(Page::communication, comm_id::firstSave + 2));
    click(eqMode());
    click(on<CxSkinButton>(Page::communication, comm_id::firstLoad + 2));
    settleEvents();
    const ParameterImage received = tuning.image();
    ASSERT_TRUE(holds(target.memory().sets[2], received));
    ASSERT_NE(tuning.currentParameterSet().channels[0].volumeDb, sent.channels[0].volumeDb);
    auto* const offer = frame->statusLine().findChild<CxSkinButton*>();
    ASSERT_NE(offer, nullptr);
    ASSERT_EQ(offer->text(), QStringLiteral("Take Them Out of the Channels"));
    click(*offer);
    const auto taken = state();
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        EXPECT_EQ(tuning.currentParameterSet().channels[c].volumeDb, sent.channels[c].volumeDb) << int{c};
        EXPECT_EQ(tuning.currentParameterSet().channels[c].groupGainDb, sent.channels[c].groupGainDb);
        if (c % 3 == 0) {
            EXPECT_EQ(tuning.currentParameterSet().channels[c].delayMs, sent.channels[c].delayMs) << int{c};
        }
        EXPECT_EQ(tuning.currentParameterSet().channels[c].groupDelayMs, sent.channels[c].groupDelayMs);
    }
    click(eqMode());
    EXPECT_TRUE(targetPlays(received));
    // What counted twice before: the group gain once more as it is.
    tuning.setGroupGain({0}, taken->store.sets[0].channels[0].groupGainDb);
    tuning.setGroupDelay({0}, taken->store.sets[0].channels[0].groupDelayMs);
    EXPECT_TRUE(targetPlays(received));
}

}  // namespace
}  // namespace tessavo::test
