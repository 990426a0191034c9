#include <QAbstractButton>
#include <QCoreApplication>
#include <QTest>
#include <cstring>

#include "controls/note_mark.h"
#include "plot/chart/plot_dlg.h"
#include "support/frame_fixture.h"

// What stands below the curve and at "Switch Mode".

namespace tessavo::test {
namespace {

const auto defaultNote = QStringLiteral("Crossovers 1, 2 are off but drawn");

class Notes : public FrameTest {
 protected:
    Notes() {
        makeFrame(realPages());
        clickTab(2);
        QTest::mouseClick(&showPlot(), Qt::LeftButton);
    }
    NoteMark& mark() { return *view().plot().findChild<NoteMark*>(); }
    QString note() {
        QCoreApplication::processEvents();
        EXPECT_EQ(mark().isVisible(), !mark().line().isEmpty());
        EXPECT_EQ(mark().toolTip(), QString(mark().line()).replace(QLatin1String("; "), QLatin1String("\n")));
        EXPECT_EQ(mark().accessibleName(), mark().line());
        return mark().line();
    }
    QString modeNote() {
        QCoreApplication::processEvents();
        EXPECT_EQ(filterModes().toolTip(), filterModes().markNote());
        return filterModes().markNote();
    }
    /// Both crossovers in circuit and of second order, so that the curve leaves nothing out.
    void useCrossovers() {
        tuning.setCrossover(0, 0, 2, 1);
        tuning.setCrossover(1, 1, 2, 1);
    }
    void receive(const std::function<void(ParameterImage&)>& change) {
        ParameterImage image = tuning.image();
        change(image);
        tuning.replaceImage(image);
        tuning.imageToSet();
        view().refreshPages();
    }
};

TEST_F(Notes, TheCurveTellsOfCrossoversThatAreOffAndOfFourthOrder) {
    EXPECT_EQ(note(), defaultNote);
    tuning.setCrossover(0, 0, 2, 1);
    EXPECT_EQ(note(), QStringLiteral("Crossover 2 is off but drawn"));
    tuning.setCrossover(1, 1, 4, 1);
    EXPECT_EQ(note(), QStringLiteral("Crossover 2 is 4th order: drawn once"));
    tuning.setCrossover(0, 0, 4, 1);
    EXPECT_EQ(note(), QStringLiteral("Crossovers 1, 2 are 4th order: drawn once"));
    useCrossovers();
    EXPECT_EQ(note(), QString());
}

TEST_F(Notes, TheCurveTellsOfEveryFilterThatIsOffButDrawn) {
    useCrossovers();
    for (std::size_t band = 0; band < bandCount; ++band) {
        tuning.setBandGainOrQ(band, BandValue::gain, 5, true);
        EXPECT_EQ(note(), QStringLiteral("Filter %1 is off but drawn").arg(band + 1));
        tuning.setBandOff(band, 0);
        EXPECT_EQ(note(), QString());
        tuning.setBandOff(band, 1);
        tuning.setBandGainOrQ(band, BandValue::gain, 0, true);
        EXPECT_EQ(note(), QString()) << "a flat filter makes no difference";
    }
    tuning.setBandGainOrQ(2, BandValue::gain, -0.1F, true);
    tuning.setBandGainOrQ(6, BandValue::gain, 0.1F, true);
    EXPECT_EQ(note(), QStringLiteral("Filters 3, 7 are off but drawn"));
}

TEST_F(Notes, TheCurveTellsOfVolumeAndPhaseOfTheChannelThatIsDrawn) {
    useCrossovers();
    tuning.setVolume(3, true);
    EXPECT_EQ(note(), QStringLiteral("Volume is left out: 3.0 dB"));
    tuning.setGroupGain(recordChannelAt({0}), -3);
    EXPECT_EQ(note(), QString()) << "together 0 dB";
    tuning.setInvertPhase(true, 1);
    EXPECT_EQ(note(), QStringLiteral("Inverted phase is left out"));
    receive([](ParameterImage& image) {
        for (ChannelImageBlock& block : image.channels) {
            block.invertPhase = 0;
        }
    });
    EXPECT_EQ(note(), QString()) << "what plays counts, not the record";
    tuning.setInvertPhase(true, 1);
    QTest::mouseClick(&control<QAbstractButton>(1083), Qt::LeftButton);
    EXPECT_EQ(note(), defaultNote) << "of the channel that is drawn now";
}

TEST_F(Notes, WordsOfAnotherMethodAreToldUntilTheyAreComputedAnew) {
    useCrossovers();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        tuning.setSelectionMask(selectionBit({position}));
        tuning.setBandGainOrQ(3, BandValue::gain, 6, true);
        tuning.setBandOff(3, 0);
    }
    tuning.setSelectionMask(selectionBit({0}));
    clickTab(2);
    EXPECT_EQ(modeNote(), QString());
    choose(filterModes(), 1);
    const QString marked = modeNote();
    EXPECT_TRUE(marked.startsWith(QLatin1String("Not computed by MZT until edited:")));
    for (int channel = 1; channel <= 8; ++channel) {
        EXPECT_TRUE(
            marked.contains(QStringLiteral("\nChannel %1: Filters 1-8, Crossovers 1, 2").arg(channel)))
            << marked.toStdString();
    }
    EXPECT_EQ(note(), QStringLiteral("Not drawn with MZT: Filter 4, Crossovers 1, 2"));
    tuning.setBandGainOrQ(3, BandValue::gain, 6, true);
    EXPECT_EQ(note(), QStringLiteral("Not drawn with MZT: Crossovers 1, 2"));
    EXPECT_TRUE(modeNote().contains(QLatin1String("\nChannel 1: Filters 1-3, 5-8, Crossovers 1, 2\n")));
    useCrossovers();
    EXPECT_EQ(note(), QString());
    EXPECT_TRUE(modeNote().contains(QLatin1String("\nChannel 1: Filters 1-3, 5-8\n")));
    EXPECT_TRUE(modeNote().contains(QLatin1String("Channel 8:")));
    choose(filterModes(), 0);
    EXPECT_TRUE(modeNote().contains(QLatin1String("Channel 1: Filter 4, Crossovers 1, 2")));
    EXPECT_FALSE(modeNote().contains(QLatin1String("Channel 8:")));
    choose(setSelector(), 1);
    choose(setSelector(), 0);
    EXPECT_EQ(modeNote(), QString()) << "a set that is chosen is computed anew";
}

TEST_F(Notes, EveryWordOfAReadThatTheMethodDoesNotGiveIsTold) {
    useCrossovers();
    for (std::size_t band = 0; band < bandCount; ++band) {
        receive([&](ParameterImage& image) { image.channels[7].bandWords[band].b1 += 1000; });
        const QString filter = QStringLiteral("Filter %1").arg(band + 1);
        EXPECT_EQ(note(), QStringLiteral("Other words play than drawn: ") + filter);
        EXPECT_TRUE(modeNote().endsWith(QStringLiteral("Channel 1: ") + filter));
        receive([&](ParameterImage& image) { image.channels[7].bandWords[band].b1 -= 1000; });
        EXPECT_EQ(modeNote(), QString());
    }
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        receive([&](ParameterImage& image) { image.channels[7].crossoverWords[k].a2 ^= 1; });
        const QString crossover = QStringLiteral("Crossover %1").arg(k + 1);
        EXPECT_EQ(note(), QStringLiteral("Other words play than drawn: ") + crossover);
        EXPECT_TRUE(modeNote().endsWith(QStringLiteral("Channel 1: ") + crossover));
        receive([&](ParameterImage& image) { image.channels[7].crossoverWords[k].a2 ^= 1; });
        EXPECT_EQ(note(), QString());
    }
}

TEST_F(Notes, TheInputCurveTellsWhatItDrawsOtherwise) {
    clickTab(0);
    EXPECT_EQ(note(), QString());
    tuning.setInputBandGain(4, 3.5F, true);
    EXPECT_EQ(note(), QStringLiteral("Plays whole dB, drawn in tenths: 1K"));
    tuning.setInputBandGain(4, 3, true);
    EXPECT_EQ(note(), QString());
    tuning.setInputEqOn(false);
    EXPECT_EQ(note(), QStringLiteral("Equalizer is off but drawn"));
    tuning.setInputBandGain(4, 0, true);
    EXPECT_EQ(note(), QString()) << "off or on, it is flat";
    tuning.setInputEqOn(true);
    tuning.setInputBandGain(10, 6, true);
    choose(filterModes(), 2);
    EXPECT_EQ(note(), QStringLiteral("Not drawn with BZT/MZT: Bass"));
    EXPECT_TRUE(modeNote().endsWith(QLatin1String("Input: all bands")));
    tuning.setInputBandGain(10, 6, true);
    tuning.edit(FieldId::inputGain, {}, -6, true);
    tuning.edit(FieldId::lineInGain, {}, 2, true);
    EXPECT_EQ(note(), QStringLiteral("Left out: Gain, Line-In Gain"));
    for (const int tab : {1, 3, 4, 5}) {
        clickTab(tab);
        EXPECT_EQ(note(), QString()) << "no curve, no note";
    }
}

TEST_F(Notes, EveryChannelFlagTellsACodeThatABoxCannotShow) {
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        receive([&](ParameterImage& image) { image.channels[channel].channelFlag = 5; });
        const int number = channelCheckBoxMap[channel];
        for (int other = 1; other <= 8; ++other) {
            EXPECT_EQ(flag(other).markNote(), other == number ? QStringLiteral("Plays code 5") : QString());
        }
        EXPECT_TRUE(flag(number).isChecked());
        EXPECT_EQ(flag(number).toolTip(), QStringLiteral("Channel flag %1\nPlays code 5").arg(number));
        QTest::mouseClick(&flag(number), Qt::LeftButton);
        QCoreApplication::processEvents();
        EXPECT_EQ(flag(number).markNote(), QString());
        EXPECT_EQ(flag(number).toolTip(), QStringLiteral("Channel flag %1").arg(number));
    }
}

TEST_F(Notes, SearchingThemWarnsNobody) {
    ParameterStore store = tuning.store();
    for (OutputChannelParams& channel : store.sets[0].channels) {
        channel.bands[0].gainDb = 3000;
    }
    tuning.replaceStore(store);
    ASSERT_FALSE(tuning.generator().warnUnstable()) << "the filter cannot be computed";
    const auto warned = shown.size();
    for (const int mode : {1, 2}) {
        choose(filterModes(), mode);
        // The matched method has words for it.
        EXPECT_TRUE(modeNote().contains(mode == 1 ? QLatin1String("Channel 1: Filters 1-8,")
                                                  : QLatin1String("Channel 1: Filters 2-8,")))
            << modeNote().toStdString();
        EXPECT_TRUE(tuning.generator().warnUnstable()) << "its warning is still to come";
    }
    EXPECT_EQ(shown.size(), warned);
}

TEST_F(Notes, TheLineFitsBesideTheAxisTitleAndMovesNothing) {
    useCrossovers();
    EXPECT_EQ(note(), QString());
    const QSize before = view().plot().size();
    const QRect chart = view().plot().findChild<CChartView*>()->geometry();
    tuning.setCrossover(1, 1, 4, 1);
    tuning.setBandGainOrQ(0, BandValue::gain, 5, true);
    EXPECT_EQ(note(), QStringLiteral("Filter 1 is off but drawn; Crossover 2 is 4th order: drawn once"));
    EXPECT_EQ(mark().shownLine(), mark().line());
    mark().setNote(QString(300, QLatin1Char('m')));
    EXPECT_TRUE(mark().shownLine().startsWith(QLatin1String("mm")) && mark().shownLine().size() < 300);
    EXPECT_EQ(mark().toolTip().size(), 300);
    EXPECT_TRUE(chart.contains(mark().geometry()));
    EXPECT_EQ(view().plot().size(), before);
    EXPECT_EQ(view().plot().findChild<CChartView*>()->geometry(), chart);
}

}  // namespace
}  // namespace tessavo::test
