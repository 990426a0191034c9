#include "app/compare_curves.h"

#include <cmath>
#include <gmock/gmock.h>

#include "app/channel_names.h"
#include "app/compare_fixture.h"
#include "params/file_notes.h"
#include "plot/response_curve.h"

// How a comparison looks: its curves, the names of the channels, and its lists.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;

class CompareLook : public CompareTest {
 protected:
    [[nodiscard]] const ParameterSet& set(std::size_t index) const { return tuning.store().sets.at(index); }
    void name(RecordChannel channel, const std::u16string& text) {
        FileNotes notes = tuning.notes();
        setChannelName(notes, channel, text);
        tuning.setNotes(notes);
        history->commit("named");
    }
    [[nodiscard]] QImage rowPicture(const QModelIndex& index) {
        tree().setCurrentIndex(group(QStringLiteral("Router")));
        tree().scrollTo(index, QAbstractItemView::PositionAtTop);
        settleEvents();
        return tree().viewport()->grab(tree().visualRect(index)).toImage();
    }
};

TEST_F(CompareLook, CurvesAreThoseOfThePlotWithTheirDecimals) {
    tuning.selectSet(0);
    CurveMaker maker;
    std::size_t fractions = 0;
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        std::vector<BiquadWords> cascade;
        for (std::size_t band = 0; band < bandCount; ++band) {
            cascade.push_back(tuning.bandWords({c}, band));
        }
        cascade.push_back(tuning.crossoverWords({c}, 0));
        cascade.push_back(tuning.crossoverWords({c}, 1));
        const ResponseCurve plot = computeResponse(cascade);
        const FineCurve fine = maker.curveOf(set(0), RecordChannel{c}, 0);
        EXPECT_EQ(static_cast<int>(fine.levelDb.front()), plot.magnitudeDb.front()) << int{c};
        EXPECT_EQ(static_cast<int>(fine.levelDb.back()), plot.magnitudeDb.back()) << int{c};
        for (std::size_t i = 1; i < FineCurve::pointCount; ++i) {
            EXPECT_TRUE(std::isfinite(fine.levelDb[i]));
            EXPECT_LT(std::abs(fine.levelDb[i] - fine.levelDb[i - 1]), 1.0) << int{c} << " at point " << i;
            fractions += fine.levelDb[i] != std::round(fine.levelDb[i]) ? 1U : 0U;
        }
    }
    EXPECT_GT(fractions, FineCurve::pointCount) << "no steps";
    EXPECT_DOUBLE_EQ(FineCurve::frequencyOf(0), 20.0);
    EXPECT_NEAR(FineCurve::frequencyOf(FineCurve::pointCount - 1), 20000.0, 1e-6);
}

TEST_F(CompareLook, TheLegendTellsTwoSidesOfOneNameApart) {
    ParameterSet twin = set(1);
    writeSetText(twin.setName, readSetText(set(0).setName));
    tuning.replaceSet(1, twin);
    history->commit("named alike");
    open();
    tree().setCurrentIndex(group(QStringLiteral("Channel 2")));
    ASSERT_EQ(dialog().left().title(), dialog().right().title());
    EXPECT_EQ(dialog().chart().leftKey(), QStringLiteral("Left: ") + dialog().left().title());
    EXPECT_EQ(dialog().chart().rightKey(), QStringLiteral("Right: ") + dialog().left().title());
    EXPECT_THAT(dialog().chart().accessibleName().toStdString(), HasSubstr("Left: "));
    EXPECT_THAT(dialog().chart().accessibleName().toStdString(), HasSubstr("Right: "));
}

TEST_F(CompareLook, EveryChannelTellsItsNameAndFollowsIt) {
    open();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        const QString heading = QStringLiteral("Channel %1").arg(position + 1);
        const QImage before = rowPicture(group(heading));
        EXPECT_EQ(before, rowPicture(group(heading)));
        const QString text = QStringLiteral("<b>Door %1</b>").arg(position + 1);
        name(channel, text.toStdU16String());
        ASSERT_TRUE(waitFor([&] { return group(heading).data(CompareModel::nameRole).toString() == text; }));
        EXPECT_NE(before, rowPicture(group(heading))) << "the name is drawn";
        EXPECT_THAT(group(heading).data(Qt::AccessibleTextRole).toString().toStdString(),
                    HasSubstr(text.toStdString()));
        const QString tip = group(heading).data(Qt::ToolTipRole).toString();
        EXPECT_THAT(tip.toStdString(), HasSubstr("&lt;b&gt;Door")) << "whatever the name looks like";
        tree().setCurrentIndex(group(heading));
        EXPECT_EQ(dialog().chart().title(), heading + QStringLiteral(" · ") + text);
    }
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([&] {
        return group(QStringLiteral("Channel 8")).data(CompareModel::nameRole).toString().isEmpty();
    }));
    EXPECT_TRUE(group(QStringLiteral("Router")).data(CompareModel::nameRole).toString().isEmpty());
}

TEST_F(CompareLook, SourcesAreAskedForWhenAListDropsDownAndOnlyThen) {
    int asked = 0;
    frame->compareCommands().addSources([&asked] {
        ++asked;
        return std::vector<CompareSource>{
            {QStringLiteral("Backup of a very long name, made on a day of the year 2026..."),
             QStringLiteral("copies"), [](const ParameterSet&) { return CompareReading(); }},
            {QStringLiteral("Beside the files..."), {}, [](const ParameterSet&) {
                 return CompareReading();
             }}};
    });
    open();
    EXPECT_EQ(asked, 0);
    tuning.setVolume(-4, true);
    history->commit("edited");
    settleEvents();
    click(named<CxSkinButton>(QStringLiteral("Exchange left and right")));
    EXPECT_EQ(asked, 0);
    for (int times = 1; times <= 2; ++times) {
        CompareSide& side = times == 1 ? dialog().left() : dialog().right();
        QTest::keyClick(&side, Qt::Key_Down);
        EXPECT_EQ(asked, times);
        ASSERT_TRUE(side.view()->isVisible());
        const int longest = side.findText(QStringLiteral("Backup of a very long"), Qt::MatchStartsWith);
        ASSERT_GE(longest, 0);
        EXPECT_GE(side.view()->viewport()->width(),
                  side.view()->fontMetrics().horizontalAdvance(side.itemText(longest)) + 12)
            << "the list is wider than the side";
        EXPECT_EQ(side.itemData(longest, Qt::ToolTipRole).toString(), side.itemText(longest));
        EXPECT_EQ(side.findText(QStringLiteral("Beside the files...")) + 1,
                  side.findText(QStringLiteral("File...")));
        QTest::keyClick(side.view(), Qt::Key_Escape);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !side.view()->isVisible(); }));
    }
    EXPECT_EQ(asked, 2);
}

TEST_F(CompareLook, EnterPressesTheButtonThatHasTheFocusAndNoOther) {
    open();
    tree().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&tree(), Qt::Key_A, Qt::ControlModifier);
    const auto before = state();
    QTest::keyClick(&tree(), Qt::Key_Return);
    named<SkinCheckBox>(QStringLiteral("Differences only")).setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    EXPECT_TRUE(dialog().isVisible());
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_EQ(dialog().left().shown().kind, ComparedSet::Kind::current) << "not exchanged";
    copyButton().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&copyButton(), Qt::Key_Return);
    EXPECT_FALSE(same(*before, *state()));
    auto& closes = named<CxSkinButton>(QStringLiteral("Close"));
    closes.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&closes, Qt::Key_Return);
    EXPECT_FALSE(dialog().isVisible());
}

TEST_F(CompareLook, TheFootTellsWhatToDoAndWhereItGoes) {
    open();
    EXPECT_THAT(dialog().message().toStdString(),
                HasSubstr("Tick what is to go from right to left, into the current set."));
    click(named<CxSkinButton>(QStringLiteral("Exchange left and right")));
    EXPECT_THAT(dialog().message().toStdString(), HasSubstr("from right to left, into Other."));
}

}  // namespace
}  // namespace tessavo::test
