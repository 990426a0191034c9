#pragma once

#include "pages/output/output_eq.h"
#include "support/page_fixture.h"

namespace tessavo::test {

struct SliderWithEdit {
    int slider;
    int edit;
};

/// Numbers of a band's controls.
struct BandControls {
    int enabled;
    int type;
    SliderWithEdit frequency;
    SliderWithEdit gain;
    SliderWithEdit q;
};

inline constexpr std::array<BandControls, 8> bandControls{{
    {1098, 1269, {2000, 1111}, {1112, 1116}, {1117, 1121}},
    {1099, 1270, {1107, 1110}, {1010, 1115}, {1009, 1120}},
    {1034, 1271, {1014, 1109}, {1016, 1114}, {1015, 1119}},
    {1035, 1272, {1020, 1108}, {1022, 1113}, {1021, 1118}},
    {1036, 1161, {1026, 1049}, {1028, 1050}, {1027, 1051}},
    {1100, 1162, {2001, 1123}, {1126, 1124}, {1127, 1125}},
    {1101, 1163, {1128, 1129}, {1011, 1130}, {1012, 1131}},
    {1037, 1164, {1017, 1132}, {1018, 1133}, {1019, 1134}},
}};

struct CrossoverControls {
    int enabled;
    int order;
    int kind;
    SliderWithEdit frequency;
};

inline constexpr std::array<CrossoverControls, 2> crossoverControls{
    {{1438, 1165, 1167, {1063, 1064}}, {1437, 1166, 1168, {1069, 1070}}}};

/// By page position.
inline constexpr std::array<int, 8> channelRadios{1097, 1083, 1084, 1085, 1086, 1087, 1078, 1079};
inline constexpr std::array<int, 8> channelChecks{1053, 1054, 1055, 1056, 1057, 1058, 1072, 1073};
inline constexpr int assignBox = 1077;
inline constexpr int allFiltersButton = 1122;
inline constexpr int resetButton = 1258;
inline constexpr SliderWithEdit volumeControls{1076, 1081};
inline constexpr int invertPhaseBox = 1088;
inline constexpr int limiterDisabledBox = 1357;

/// The page of the output equalizer, and how its edits read as operations on the other state.
class OutputEqTest : public PageTest {
 protected:
    OutputEqTest() { showPage(std::make_unique<COutputEQ>(actual.state, boxes)); }

    enum class Column { frequency, gain, q };
    static constexpr std::array<Column, 3> columns{Column::frequency, Column::gain, Column::q};
    static SliderWithEdit controlsOf(std::size_t band, Column column) {
        const BandControls& controls = bandControls[band];
        return column == Column::frequency ? controls.frequency
               : column == Column::gain    ? controls.gain
                                           : controls.q;
    }

    /// The operation behind a band's slider at a position.
    void twinBand(std::size_t band, Column column, int position, bool final) {
        if (column == Column::frequency) {
            twin.state.setBandFrequency(band, static_cast<std::uint16_t>(-position), final);
        } else {
            const BandValue which = column == Column::gain ? BandValue::gain : BandValue::q;
            twin.state.setBandGainOrQ(band, which, static_cast<float>(-position) / 10.0F, final);
        }
    }
    /// Chooses a channel by its radio button; the other state does what belongs to it.
    void selectChannel(std::size_t position) {
        click(control<SkinRadioButton>(channelRadios[position]));
        twin.state.setSelectionMask(static_cast<std::uint8_t>(0x80U >> position));
        const std::size_t channel = pageChannels[position];
        const Bytes store = twin.store();
        const std::size_t base = setSize * twin.state.currentSet();
        twin.state.setBandType(7, store[base + recordChannelOffset(channel) + 16 * 7]);
    }
    /// Switches to several channels and ticks these.
    void selectSeveral(const std::vector<std::size_t>& positions) {
        boxes.answers = {BoxAnswer::ok};
        click(check(assignBox));
        for (const std::size_t position : positions) {
            click(check(channelChecks[position]));
            tick(position);
        }
    }
    /// What ticking a channel does to the other state.
    void tick(std::size_t position) {
        static constexpr std::array<std::uint8_t, 3> types{1, 2, 0};
        severalMask_ ^= 0x80U >> position;
        twin.state.setSelectionMask(static_cast<std::uint8_t>(severalMask_));
        twin.state.setBandType(7,
                               types.at(static_cast<std::size_t>(list(bandControls[7].type).currentIndex())));
    }

    /// Every control shows what the current set holds for a record channel.
    void expectShown(std::size_t channel) {
        const Bytes store = actual.store();
        const std::size_t base = setSize * actual.state.currentSet();
        for (std::size_t band = 0; band < 8; ++band) {
            const std::size_t offset = base + recordChannelOffset(channel) + 16 * band;
            const BandControls& controls = bandControls[band];
            EXPECT_EQ(textOf(controls.frequency.edit),
                      std::to_string(readAt<std::uint16_t>(store, offset + 2)));
            EXPECT_EQ(edit(controls.gain.edit).text(),
                      QString::number(double{readAt<float>(store, offset + 4)}, 'f', 1));
            EXPECT_EQ(edit(controls.q.edit).text(),
                      QString::number(double{readAt<float>(store, offset + 8)}, 'f', 1));
            EXPECT_EQ(check(controls.enabled).isChecked(), store[offset + 12] == 0);
            constexpr std::array<const char*, 3> types{"High Shelf", "Low Shelf", "Peak"};
            EXPECT_EQ(list(controls.type).currentText().toStdString(), types.at(store[offset]));
        }
        for (std::size_t k = 0; k < 2; ++k) {
            const std::size_t offset = base + recordChannelOffset(channel) + 128 + 6 * k;
            const CrossoverControls& controls = crossoverControls[k];
            EXPECT_EQ(check(controls.enabled).isChecked(), store[offset] != 0);
            EXPECT_EQ(list(controls.kind).currentIndex(), store[offset + 1]);
            EXPECT_EQ(textOf(controls.frequency.edit),
                      std::to_string(readAt<std::uint16_t>(store, offset + 2)));
        }
        EXPECT_EQ(
            edit(volumeControls.edit).text(),
            QString::number(double{readAt<float>(store, base + recordChannelOffset(channel) + 140)}, 'f', 1));
        EXPECT_EQ(check(invertPhaseBox).isChecked(), store[base + recordChannelOffset(channel) + 153] != 0);
        EXPECT_EQ(check(limiterDisabledBox).isChecked(),
                  store[base + recordLimiterOffset(channel) + 20] == 0);
    }

    unsigned severalMask_ = 0;
};

}  // namespace tessavo::test
