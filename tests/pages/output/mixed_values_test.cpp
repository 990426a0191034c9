#include <QAccessible>
#include <QLabel>
#include <set>

#include "pages/output/output_eq_fixture.h"

namespace tessavo::test {
namespace {

template <typename Number>
Bytes numberBytes(Number number) {
    Bytes bytes(sizeof number);
    writeAt(bytes, 0, number);
    return bytes;
}

/// A field of every channel, two values for it, and the controls that show it.
struct ChannelField {
    std::string name;
    std::size_t inChannel;  ///< from the channel's parameters, or from its limiter
    bool ofLimiter;
    std::array<Bytes, 2> values;
    std::vector<int> controls;

    [[nodiscard]] std::size_t offsetIn(std::size_t channel) const {
        return (ofLimiter ? recordLimiterOffset(channel) : recordChannelOffset(channel)) + inChannel;
    }
};

template <typename Number>
ChannelField channelField(std::string name, std::size_t inChannel, Number one, Number other,
                          std::vector<int> controls) {
    return {std::move(name), inChannel, false, {numberBytes(one), numberBytes(other)}, std::move(controls)};
}

std::vector<ChannelField> channelFields() {
    using Byte = std::uint8_t;
    using Word = std::uint16_t;
    std::vector<ChannelField> fields;
    for (std::size_t b = 0; b < 8; ++b) {
        const BandControls& band = bandControls[b];
        const std::string name = "band " + std::to_string(b + 1);
        const std::size_t at = 16 * b;
        fields.push_back(channelField<Byte>(name + " type", at, 2, 1, {band.type}));
        fields.push_back(channelField<Word>(name + " frequency", at + 2, 500, 900,
                                            {band.frequency.slider, band.frequency.edit}));
        fields.push_back(
            channelField<float>(name + " gain", at + 4, 1.5F, -3.5F, {band.gain.slider, band.gain.edit}));
        fields.push_back(channelField<float>(name + " Q", at + 8, 1.0F, 2.4F, {band.q.slider, band.q.edit}));
        fields.push_back(channelField<Byte>(name + " off", at + 12, 1, 0, {band.enabled}));
    }
    for (std::size_t k = 0; k < 2; ++k) {
        const CrossoverControls& crossover = crossoverControls[k];
        const std::string name = "crossover " + std::to_string(k + 1);
        const std::size_t at = 128 + 6 * k;
        fields.push_back(channelField<Byte>(name + " enabled", at, 0, 1, {crossover.enabled}));
        fields.push_back(channelField<Byte>(name + " kind", at + 1, 0, 1, {crossover.kind}));
        fields.push_back(channelField<Word>(name + " frequency", at + 2, 200, 3000,
                                            {crossover.frequency.slider, crossover.frequency.edit}));
        fields.push_back(channelField<Byte>(name + " order", at + 4, 2, 4, {crossover.order}));
    }
    fields.push_back(
        channelField<float>("volume", 140, 0.0F, 2.5F, {volumeControls.slider, volumeControls.edit}));
    fields.push_back(channelField<Byte>("phase", 153, 0, 1, {invertPhaseBox}));
    const std::size_t limiter = fields.size();
    fields.push_back(channelField("limiter attack", 0, 50, 33, {1358}));
    fields.push_back(channelField("limiter release", 4, 120, 44, {1359}));
    fields.push_back(channelField("limiter gain", 8, -60, -33, {1346, 1347}));
    fields.push_back(channelField("limiter activate level", 12, -70, -80, {1355, 1356}));
    fields.push_back(channelField("limiter deactivate level", 16, -210, -200, {1353, 1354}));
    fields.push_back(channelField<Byte>("limiter enabled", 20, 1, 0, {limiterDisabledBox}));
    for (std::size_t i = limiter; i < fields.size(); ++i) {
        fields[i].ofLimiter = true;
    }
    return fields;
}

constexpr std::size_t bandEightType = 35;  ///< in the list of fields

class MixedValues : public OutputEqTest {
 protected:
    MixedValues() {
        Bytes store = actual.store();
        for (const ChannelField& field : fields) {
            for (std::size_t channel = 0; channel < 8; ++channel) {
                put(store, field, channel, 0);
            }
        }
        load(store);
    }

    static void put(Bytes& store, const ChannelField& field, std::size_t channel, std::size_t which) {
        const Bytes& value = field.values.at(which);
        std::copy(value.begin(), value.end(),
                  store.begin() + static_cast<std::ptrdiff_t>(field.offsetIn(channel)));
    }
    /// One of the two values in every field of every channel, by chance.
    void loadEither(std::uint64_t seed) {
        std::mt19937_64 random(seed);
        Bytes store = actual.store();
        for (const ChannelField& field : fields) {
            for (std::size_t channel = 0; channel < 8; ++channel) {
                put(store, field, channel, random() % 2);
            }
        }
        load(store);
    }
    void load(const Bytes& store) {
        actual.load(store);
        twin.load(store);
        page->refresh();
    }
    Bytes valueOf(const ChannelField& field, std::size_t position) {
        const Bytes store = actual.store();
        const auto start =
            store.begin() + static_cast<std::ptrdiff_t>(field.offsetIn(pageChannels[position]));
        return {start, start + static_cast<std::ptrdiff_t>(field.values[0].size())};
    }
    static bool wearsMark(const QWidget& widget) {
        if (const auto* slider = qobject_cast<const CBitmapSlider*>(&widget)) {
            return slider->isMixed();
        }
        if (const auto* edit = qobject_cast<const NumberEdit*>(&widget)) {
            return edit->isMixed();
        }
        if (const auto* list = qobject_cast<const SkinComboBox*>(&widget)) {
            return list->isMixed();
        }
        return dynamic_cast<const SkinCheckBox&>(widget).isMixed();
    }
    /// The mark is a whole one: outline, tooltip and words for screen readers, or none of them.
    bool isMarked(int id) {
        QWidget& widget = control<QWidget>(id);
        const bool marked = wearsMark(widget);
        EXPECT_EQ(widget.toolTip().contains(QLatin1String("Mixed: ")), marked) << id;
        EXPECT_EQ(spoken(id).contains(QStringLiteral("Mixed: ")), marked) << id;
        return marked;
    }
    QString spoken(int id) {
        return QAccessible::queryAccessibleInterface(&control<QWidget>(id))->text(QAccessible::Description);
    }
    std::set<std::string> markedFields() {
        std::set<std::string> marked;
        for (const ChannelField& field : fields) {
            std::size_t controls = 0;
            for (const int id : field.controls) {
                controls += isMarked(id) ? 1U : 0U;
            }
            EXPECT_TRUE(controls == 0 || controls == field.controls.size()) << field.name;
            if (controls != 0) {
                marked.insert(field.name);
            }
        }
        return marked;
    }
    /// Fields of which some ticked channel holds another value than this one.
    std::set<std::string> fieldsThatDifferFrom(std::size_t shownPosition) {
        std::set<std::string> differing;
        for (const ChannelField& field : fields) {
            for (std::size_t position = 0; position < 8; ++position) {
                const bool ticked = (actual.state.selectionMask() & (0x80U >> position)) != 0;
                if (ticked && valueOf(field, position) != valueOf(field, shownPosition)) {
                    differing.insert(field.name);
                }
            }
        }
        return differing;
    }
    /// Sets the field's first control to anything but what it shows.
    void edit(const ChannelField& field) {
        QWidget& widget = control<QWidget>(field.controls.front());
        if (auto* box = qobject_cast<SkinCheckBox*>(&widget)) {
            click(*box);
        } else if (auto* list = qobject_cast<SkinComboBox*>(&widget)) {
            chooseByKeys(field.controls.front(), list->currentIndex() == 0 ? 1 : 0);
        } else if (qobject_cast<CBitmapSlider*>(&widget) != nullptr) {
            key(widget, Qt::Key_PageUp);
        } else {
            typeAndEnter(field.controls.front(), QStringLiteral("77"));
        }
    }
    bool saysThatEditsGoNowhere() {
        for (const QLabel* label : page->findChildren<QLabel*>()) {
            if (label->isVisible() && label->text() == QLatin1String("No channel: edits go nowhere")) {
                return true;
            }
        }
        return false;
    }

    const std::vector<ChannelField> fields = channelFields();
};

TEST_F(MixedValues, EveryControlOfAFieldThatDiffersIsMarkedAndNoOther) {
    const Bytes same = actual.store();
    ASSERT_EQ(fields[bandEightType].name, "band 8 type");
    for (const ChannelField& field : fields) {
        Bytes store = same;
        put(store, field, pageChannels[5], 1);
        load(store);
        selectSeveral({0, 2, 5});
        // Band 8's type is written as soon as a channel is ticked, so that it never differs.
        const bool never = field.name == "band 8 type";
        EXPECT_EQ(markedFields(), never ? std::set<std::string>{} : std::set{field.name});
        click(check(assignBox));
        EXPECT_EQ(markedFields(), std::set<std::string>{}) << field.name << ", one channel again";
        severalMask_ = 0;
    }
}

TEST_F(MixedValues, AFieldWithOneValueThatIsNotTheShownOneIsMarkedToo) {
    Bytes store = actual.store();
    put(store, fields[2], pageChannels[3], 1);
    put(store, fields[2], pageChannels[4], 1);
    load(store);
    selectSeveral({3, 4});
    EXPECT_EQ(markedFields(), std::set<std::string>{"band 1 gain"});
    EXPECT_EQ(textOf(bandControls[0].gain.edit), "1.5");
    EXPECT_EQ(check(bandControls[0].enabled).toolTip(), QString());
    EXPECT_EQ(
        PageTest::edit(bandControls[0].gain.edit).toolTip(),
        QStringLiteral("In force: -3.5 dB\nMixed: not the value of the ticked channels\nChannel 4: -3.5 dB\n"
                       "Channel 5: -3.5 dB"));
}

TEST_F(MixedValues, TheNoteTellsTheValueOfEveryTickedChannel) {
    for (const auto& [position, volume] : {std::pair{1U, 3.04F}, {6U, -2.0F}, {7U, 0.0F}}) {
        actual.state.setSelectionMask(static_cast<std::uint8_t>(0x80U >> position));
        actual.state.setVolume(volume, true);
        actual.state.setLimiter(position == 6 ? LimiterField::disable : LimiterField::enable, 0, true);
        actual.state.setBandType(0, static_cast<std::uint8_t>(position - 1));
    }
    selectSeveral({7, 1, 6});
    const QString volume = QStringLiteral(
        "Mixed: the ticked channels differ\nChannel 2: 3.04 dB\nChannel 7: -2.0 dB\nChannel 8: 0.0 dB");
    EXPECT_EQ(slider(volumeControls.slider).toolTip(), volume);
    EXPECT_EQ(PageTest::edit(volumeControls.edit).toolTip(),
              QStringLiteral("Channel 2: Plays 3.0 dB\n") + volume);
    const QString said = QStringLiteral(
        "Mixed: the ticked channels differ; Channel 2: 3.04 dB; Channel 7: -2.0 dB; Channel 8: 0.0 dB");
    EXPECT_EQ(spoken(volumeControls.slider), said);
    EXPECT_EQ(spoken(volumeControls.edit), QStringLiteral("dB. Channel 2: Plays 3.0 dB. ") + said);
    EXPECT_EQ(check(limiterDisabledBox).toolTip(),
              QStringLiteral("Mixed: the ticked channels differ\nChannel 2: not checked\n"
                             "Channel 7: checked\nChannel 8: not checked"));
    // The last two types are codes that the list does not know.
    EXPECT_EQ(list(bandControls[0].type).toolTip(),
              QStringLiteral("Mixed: the ticked channels differ\nChannel 2: High Shelf\nChannel 7: 5\n"
                             "Channel 8: 6\nChannel 7: In force: code 5\nChannel 8: In force: code 6"));
    // What was there before the mark is there after it.
    typeAndEnter(volumeControls.edit, QStringLiteral("1"));
    EXPECT_EQ(PageTest::edit(volumeControls.edit).toolTip(), QString());
    EXPECT_EQ(spoken(volumeControls.edit), QStringLiteral("dB"));
}

TEST_F(MixedValues, TheMarksFollowEveryTickAndUntick) {
    for (const std::uint64_t seed : {31U, 32U, 33U}) {
        loadEither(seed);
        std::mt19937_64 random(seed);
        selectSeveral({});
        std::size_t most = 0;
        for (int step = 0; step < 25; ++step) {
            click(check(channelChecks[random() % 8]));
            const std::set<std::string> marked = markedFields();
            EXPECT_EQ(marked, [&] {
                // The page goes on showing the first channel; band 8's type is never mixed.
                std::set<std::string> expected = fieldsThatDifferFrom(0);
                expected.erase("band 8 type");
                return expected;
            }());
            most = std::max(most, marked.size());
        }
        EXPECT_GT(most, 40U);
        click(check(assignBox));
        EXPECT_EQ(markedFields(), std::set<std::string>{});
        severalMask_ = 0;
    }
}

TEST_F(MixedValues, AnEditTakesTheMarkFromItsControlsAndFromNoOther) {
    // What an edit of a crossover writes besides.
    const auto alsoWritten = [](const std::string& name) {
        std::set<std::string> names{name};
        if (name.starts_with("crossover")) {
            const std::string crossover = name.substr(0, 11);
            const std::string what = name.substr(12);
            if (what != "frequency") {
                names = {crossover + " enabled", crossover + " kind", crossover + " order"};
            }
            if (what == "order") {
                names.insert(crossover + " frequency");
            }
        }
        return names;
    };
    loadEither(34);
    const Bytes store = actual.store();
    std::size_t edited = 0;
    for (const ChannelField& field : fields) {
        load(store);
        selectSeveral({0, 1, 2, 3, 4, 5, 6, 7});
        std::set<std::string> marked = markedFields();
        edited += marked.contains(field.name) ? 1U : 0U;
        edit(field);
        for (const std::string& written : alsoWritten(field.name)) {
            marked.erase(written);
        }
        EXPECT_EQ(markedFields(), marked) << field.name;
        click(check(assignBox));
        severalMask_ = 0;
    }
    EXPECT_GE(edited, 50U);
}

TEST_F(MixedValues, TheFirstMoveOfADragTakesTheMark) {
    loadEither(35);
    selectSeveral({0, 1, 2, 3, 4, 5, 6, 7});
    for (const SliderWithEdit& controls : {bandControls[1].gain, volumeControls}) {
        ASSERT_TRUE(isMarked(controls.slider) && isMarked(controls.edit));
        drag(controls.slider, 8);
        EXPECT_FALSE(isMarked(controls.slider) || isMarked(controls.edit));
        release(controls.slider);
        EXPECT_FALSE(isMarked(controls.slider) || isMarked(controls.edit));
    }
}

TEST_F(MixedValues, TheButtonsTakeTheMarksOfWhatTheyWrite) {
    loadEither(36);
    selectSeveral({0, 1, 2, 3, 4, 5, 6, 7});
    std::set<std::string> marked = markedFields();
    click(control<CxSkinButton>(allFiltersButton));
    for (std::size_t band = 1; band <= 8; ++band) {
        EXPECT_EQ(marked.erase("band " + std::to_string(band) + " off"), 1U);
    }
    EXPECT_EQ(markedFields(), marked);
    boxes.answers = {BoxAnswer::ok};
    click(control<CxSkinButton>(resetButton));
    EXPECT_EQ(markedFields(), std::set<std::string>{"volume"});
}

TEST_F(MixedValues, ARefreshRenewsTheMarks) {
    loadEither(37);
    selectSeveral({2, 6});
    loadEither(38);
    // The last ticked channel is shown now.
    EXPECT_EQ(markedFields(), fieldsThatDifferFrom(6));
    EXPECT_FALSE(markedFields().empty());
}

TEST_F(MixedValues, ASingleChannelIsNeverMarked) {
    for (const std::size_t position : {4U, 0U, 7U}) {
        loadEither(39 + position);
        selectChannel(position);
        EXPECT_EQ(markedFields(), std::set<std::string>{});
    }
}

TEST_F(MixedValues, WithNoneTickedThePageSaysThatEditsGoNowhere) {
    EXPECT_FALSE(saysThatEditsGoNowhere());
    EXPECT_EQ(check(assignBox).toolTip(), QString());
    selectSeveral({});
    EXPECT_TRUE(saysThatEditsGoNowhere());
    EXPECT_EQ(spoken(assignBox), QStringLiteral("No channel is ticked: edits go nowhere"));
    EXPECT_EQ(check(assignBox).toolTip(), spoken(assignBox));
    EXPECT_EQ(markedFields(), std::set<std::string>{});
    for (const bool ticked : {true, false, true}) {
        click(check(channelChecks[3]));
        EXPECT_EQ(saysThatEditsGoNowhere(), !ticked);
        EXPECT_EQ(spoken(assignBox).isEmpty(), ticked);
    }
    click(check(channelChecks[3]));
    click(check(assignBox));
    EXPECT_FALSE(saysThatEditsGoNowhere());
    EXPECT_EQ(spoken(assignBox), QString());
}

TEST_F(MixedValues, WhatWasEditedWithNoneTickedIsMarkedOnceAChannelIs) {
    selectSeveral({});
    typeAndEnter(volumeControls.edit, QStringLiteral("4"));
    EXPECT_EQ(markedFields(), std::set<std::string>{});
    click(check(channelChecks[5]));
    EXPECT_EQ(markedFields(), std::set<std::string>{"volume"});
    EXPECT_EQ(slider(volumeControls.slider).toolTip(),
              QStringLiteral("Mixed: not the value of the ticked channels\nChannel 6: 0.0 dB"));
}

}  // namespace
}  // namespace tessavo::test
