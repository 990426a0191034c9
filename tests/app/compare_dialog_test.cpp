#include "app/compare_dialog.h"

#include <QAccessible>
#include <QListView>
#include <gmock/gmock.h>

#include "app/choice_dialog.h"
#include "app/compare_fixture.h"
#include "app/copy_sources.h"
#include "params/set_text.h"
#include "params/settings_file.h"

// Two sets side by side, as a person uses them.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;

class Comparing : public CompareTest {
 protected:
    [[nodiscard]] const ParameterSet& set(std::size_t index) const { return tuning.store().sets.at(index); }
    std::string stepText() const { return std::string(history->undoText()); }
};

TEST_F(Comparing, ShowsEveryGroupAndEveryDifferenceOfIt) {
    open();
    const SetComparison expected = compareSets(set(0), set(1));
    ASSERT_EQ(model().rowCount(), static_cast<int>(expected.groups.size()));
    ASSERT_EQ(model().rowCount(), 11) << "set, input, eight channels, router";
    for (int row = 0; row < model().rowCount(); ++row) {
        const CompareGroup& group = expected.groups[static_cast<std::size_t>(row)];
        const QModelIndex index = model().index(row, 0);
        EXPECT_EQ(index.data().toString().toStdString(), group.heading);
        EXPECT_TRUE(tree().isExpanded(index)) << group.heading;
        ASSERT_EQ(model().rowCount(index), static_cast<int>(group.lines.size())) << group.heading;
        const std::string aloud = index.data(Qt::AccessibleTextRole).toString().toStdString();
        EXPECT_THAT(aloud, HasSubstr(group.otherNumber));
        EXPECT_THAT(aloud, HasSubstr(group.leftSource));
        EXPECT_THAT(aloud, HasSubstr(group.rightSource));
        for (int i = 0; i < model().rowCount(index); ++i) {
            const ComparedLine& told = group.lines[static_cast<std::size_t>(i)];
            const QModelIndex at = model().index(i, 0, index);
            EXPECT_EQ(at.data().toString().toStdString(), told.name);
            EXPECT_EQ(at.data(CompareModel::leftRole).toString().toStdString(), told.left);
            EXPECT_EQ(at.data(CompareModel::rightRole).toString().toStdString(), told.right);
            EXPECT_EQ(stateOf(at), Qt::Unchecked);
        }
    }
}

TEST_F(Comparing, CopyingAllLeavesNoDifferenceAndIsOneStep) {
    open();
    const auto before = state();
    const ParameterSet other = set(1);
    const std::size_t stepsBefore = steps();
    tree().setFocus();
    QTest::keyClick(&tree(), Qt::Key_A, Qt::ControlModifier);
    const std::size_t count = compareSets(set(0), set(1)).differenceCount();
    EXPECT_EQ(model().chosen().size(), count);
    click(copyButton());
    EXPECT_EQ(compareSets(set(0), other).differenceCount(), 0U);
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_EQ(steps(), stepsBefore + 1);
    EXPECT_EQ(stepText(), "Copied " + std::to_string(count) + " fields from Other");
    EXPECT_EQ(std::memcmp(&set(1), &other, sizeof other), 0) << "the other side stays";
    EXPECT_TRUE(pagesShowTheSet());
    EXPECT_FALSE(copyButton().isEnabled());
    const auto after = state();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_TRUE(waitFor([&] { return model().chosen().size() == count; })) << "the choice comes back";
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(same(*after, *state()));
}

TEST_F(Comparing, AGroupsMarkChoosesItsFieldsAndOnlyTheseAreCopied) {
    open();
    for (const QString& heading :
         {QStringLiteral("Input"), QStringLiteral("Channel 1"), QStringLiteral("Channel 2"),
          QStringLiteral("Channel 3"), QStringLiteral("Channel 4"), QStringLiteral("Channel 5"),
          QStringLiteral("Channel 6"), QStringLiteral("Channel 7"), QStringLiteral("Channel 8"),
          QStringLiteral("Router")}) {
        const QModelIndex index = group(heading);
        ASSERT_TRUE(index.isValid()) << heading.toStdString();
        const int fields = model().rowCount(index);
        clickMark(index);
        EXPECT_EQ(stateOf(index), Qt::Checked);
        EXPECT_EQ(model().chosen().size(), static_cast<std::size_t>(fields));
        clickMark(model().index(0, 0, index));
        EXPECT_EQ(stateOf(group(heading)), Qt::PartiallyChecked);
        EXPECT_EQ(group(heading).data(CompareModel::countsRole).toString(),
                  QStringLiteral("%1 fields, %2 selected").arg(fields).arg(fields - 1));
        const std::vector<SetElement> chosen = model().chosen();
        const ParameterSet before = set(0);
        click(copyButton());
        EXPECT_EQ(compareSets(before, set(0)).differing(), chosen) << heading.toStdString();
        EXPECT_EQ(model().rowCount(group(heading)), 1) << heading.toStdString();
        clickMark(group(heading));
        clickMark(group(heading));
        EXPECT_EQ(stateOf(group(heading)), Qt::Unchecked);
    }
}

TEST_F(Comparing, FollowsEditsWithoutLosingTheChoiceTheRowOrWhatIsFolded) {
    open();
    clickMark(group(QStringLiteral("Channel 2")));
    tree().scrollTo(group(QStringLiteral("Input")));
    clickAt(tree().rows().foldRect(group(QStringLiteral("Input"))).center());
    ASSERT_FALSE(tree().isExpanded(group(QStringLiteral("Input"))));
    tree().setCurrentIndex(fieldRow(QStringLiteral("Channel 7"), QStringLiteral("Volume")));
    ASSERT_TRUE(tree().currentIndex().isValid());
    const std::vector<SetElement> chosen = model().chosen();
    // The edit makes a row go: both volumes of channel 1 are the same.
    tuning.edit(FieldId::volume, {channelMap[0], 0}, set(1).channels[channelMap[0]].volumeDb, true);
    ASSERT_TRUE(
        waitFor([&] { return !fieldRow(QStringLiteral("Channel 1"), QStringLiteral("Volume")).isValid(); }));
    EXPECT_EQ(model().chosen(), chosen);
    EXPECT_FALSE(tree().isExpanded(group(QStringLiteral("Input"))));
    EXPECT_TRUE(tree().isExpanded(group(QStringLiteral("Channel 1"))));
    EXPECT_EQ(tree().currentIndex(), fieldRow(QStringLiteral("Channel 7"), QStringLiteral("Volume")));
    // Another value in a row that stays.
    const QModelIndex delay = fieldRow(QStringLiteral("Channel 1"), QStringLiteral("Delay"));
    const QString was = delay.data(CompareModel::leftRole).toString();
    tuning.edit(FieldId::delay, {channelMap[0], 0}, set(0).channels[channelMap[0]].delayMs + 1, true);
    ASSERT_TRUE(waitFor([&] {
        return fieldRow(QStringLiteral("Channel 1"), QStringLiteral("Delay")).data(CompareModel::leftRole) !=
               was;
    }));
    // The left side is whichever set is current.
    view().showSet(1);
    EXPECT_TRUE(waitFor([&] { return model().rowCount() == 0; })) << "the same set on both sides";
    EXPECT_EQ(dialog().left().currentText(), QStringLiteral("Current set: Other"));
    EXPECT_EQ(dialog().message(), QStringLiteral("No differences."));
}

TEST_F(Comparing, GoesIntoTheRightSideWhereTheLeftCannotBeWritten) {
    tuning.setVolume(-3, true);
    history->commit("made it quieter");
    open();
    dialog().left().showPopup();
    QString before;
    for (int i = 0; i < dialog().left().count(); ++i) {
        if (dialog().left().itemText(i).startsWith(QStringLiteral("History: before made it quieter"))) {
            before = dialog().left().itemText(i);
        }
    }
    QTest::keyClick(dialog().left().view(), Qt::Key_Escape);
    ASSERT_FALSE(before.isEmpty());
    chooseSide(dialog().right(), QStringLiteral("Current set: ") + nameOfSet(set(0), 0));
    chooseSide(dialog().left(), before);
    ASSERT_EQ(model().differenceCount(), 1U);
    clickMark(group(QStringLiteral("Channel 1")));
    EXPECT_THAT(dialog().message().toStdString(),
                HasSubstr("It goes from left to right, into the current set"));
    click(copyButton());
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_THAT(stepText(), HasSubstr("Copied 1 field from History: before made it quieter"));
    // Two sides that were read take nothing.
    chooseSide(dialog().right(), before);
    EXPECT_FALSE(copyButton().isEnabled());
}

TEST_F(Comparing, ExchangesTheSidesAndKeepsTheChoice) {
    open();
    clickMark(group(QStringLiteral("Router")));
    const auto chosen = model().chosen();
    const QModelIndex row = model().index(0, 0, group(QStringLiteral("Router")));
    const QString left = row.data(CompareModel::leftRole).toString();
    click(named<CxSkinButton>(QStringLiteral("Exchange left and right")));
    EXPECT_EQ(model().chosen(), chosen);
    EXPECT_EQ(model().index(0, 0, group(QStringLiteral("Router"))).data(CompareModel::rightRole).toString(),
              left);
    EXPECT_EQ(dialog().left().writable(), 1U);
    const ParameterSet first = set(0);
    click(copyButton());
    EXPECT_EQ(std::memcmp(&first, &set(0), sizeof first), 0);
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        EXPECT_EQ(set(1).routerSource.at(channel), set(0).routerSource.at(channel)) << channel;
    }
}

TEST_F(Comparing, ListsAllFieldsOrOnlyRealDifferences) {
    ParameterSet rounded = set(0);
    rounded.channels[0].volumeDb = -2.3F;
    tuning.replaceSet(0, rounded);
    rounded.channels[0].volumeDb = -2.5F;
    rounded.channels[0].invertPhase ^= 1U;
    writeSetText(rounded.setName, readSetText(set(0).setName));
    tuning.replaceSet(1, rounded);
    history->commit();
    open();
    const SetComparison expected = compareSets(set(0), set(1));
    ASSERT_EQ(model().differenceCount(), expected.differenceCount());
    auto& real = named<SkinCheckBox>(QStringLiteral("Real differences only"));
    auto& differences = named<SkinCheckBox>(QStringLiteral("Differences only"));
    click(real);
    EXPECT_EQ(model().differenceCount(), expected.realDifferenceCount());
    EXPECT_LT(expected.realDifferenceCount(), expected.differenceCount());
    click(differences);
    EXPECT_FALSE(real.isEnabled());
    std::size_t rows = 0;
    std::size_t marks = 0;
    for (int row = 0; row < model().rowCount(); ++row) {
        const QModelIndex parent = model().index(row, 0);
        rows += static_cast<std::size_t>(model().rowCount(parent));
        for (int i = 0; i < model().rowCount(parent); ++i) {
            marks += model().index(i, 0, parent).data(Qt::CheckStateRole).isValid() ? 1U : 0U;
        }
    }
    EXPECT_EQ(rows, linesOf(compareSets(set(0), set(1), ListedElements::all)).size());
    EXPECT_EQ(marks, expected.differenceCount()) << "what is the same has no mark";
}

TEST_F(Comparing, DrawsBothCurvesOfTheRowsChannel) {
    open();
    CurveMaker maker;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        const QModelIndex index = group(QStringLiteral("Channel %1").arg(position + 1));
        tree().setCurrentIndex(model().index(0, 0, index));
        EXPECT_EQ(dialog().chart().title(), index.data().toString());
        ASSERT_TRUE(dialog().chart().left() && dialog().chart().right());
        EXPECT_EQ(*dialog().chart().left(), maker.curveOf(set(0), channel, 0));
        EXPECT_EQ(*dialog().chart().right(), maker.curveOf(set(1), channel, 0));
        EXPECT_NE(*dialog().chart().left(), *dialog().chart().right()) << int{position};
    }
    tree().setCurrentIndex(group(QStringLiteral("Input")));
    EXPECT_EQ(*dialog().chart().left(), maker.curveOf(set(0), {}, 0));
    tree().setCurrentIndex(group(QStringLiteral("Router")));
    EXPECT_FALSE(dialog().chart().left());
}

TEST_F(Comparing, TakesASetOfAFileAndTellsWhatIsNone) {
    ParameterStore store = tuning.store();
    store.sets[3].channels[2].volumeDb = 1.5F;
    writeSetText(store.sets[3].setName, u"Fourth");
    store.sets[4].recordSize = 1;
    ASSERT_EQ(writeSettings(folder / "car.eqs", store), SaveVerdict::saved);
    ASSERT_EQ(writeSettings(folder / "none.eqs", ParameterStore{}), SaveVerdict::saved);
    open();
    dialogs.answer = folder / "car.eqs";
    whenAsked([](QDialog& choice) {
        auto* const list = choice.findChild<QListView*>();
        EXPECT_EQ(list->model()->rowCount(), 5);
        list->setCurrentIndex(list->model()->index(3, 0));
        QTest::keyClick(list, Qt::Key_Return);
    });
    chooseSide(dialog().right(), QStringLiteral("File..."));
    EXPECT_EQ(dialog().right().currentText(), QStringLiteral("car.eqs: Fourth"));
    EXPECT_FALSE(dialog().right().writable());
    EXPECT_EQ(std::memcmp(&dialog().right().record(), &store.sets[3], sizeof store.sets[3]), 0);
    EXPECT_EQ(dialogs.localeResets, 1);
    whenAsked([](QDialog& choice) {
        choice.findChild<QListView*>()->setCurrentIndex(choice.findChild<QListView*>()->model()->index(4, 0));
        QTest::keyClick(&choice, Qt::Key_Return);
    });
    chooseSide(dialog().right(), QStringLiteral("File..."));
    EXPECT_THAT(dialog().message().toStdString(), HasSubstr("is no valid record"));
    EXPECT_EQ(dialog().right().currentText(), QStringLiteral("car.eqs: Fourth")) << "what was shown stays";
    dialogs.answer = folder / "none.eqs";
    chooseSide(dialog().right(), QStringLiteral("File..."));
    EXPECT_EQ(dialog().message(), QStringLiteral("none.eqs is no settings file."));
    dialogs.answer = folder / "gone.eqs";
    chooseSide(dialog().right(), QStringLiteral("File..."));
    EXPECT_EQ(dialog().message(), QStringLiteral("gone.eqs cannot be opened."));
    dialogs.answer.reset();
    chooseSide(dialog().right(), QStringLiteral("File..."));
    EXPECT_EQ(dialog().right().currentText(), QStringLiteral("car.eqs: Fourth"));
}

TEST_F(Comparing, OffersWhatOthersAddAndTellsWhyOneCannotBeRead) {
    int asked = 0;
    frame->compareCommands().addSources([this, &asked] {
        ++asked;
        return std::vector<CompareSource>{
            {QStringLiteral("Backup A"), QStringLiteral("backups"),
             [this](const ParameterSet&) {
                 return CompareReading{set(1), {}, {}};
             }},
            {QStringLiteral("Set 1 of the target"), QStringLiteral("target"),
             [](const ParameterSet&) {
                 return CompareReading{{}, {}, QStringLiteral("Please turn off Live Mode")};
             }},
        };
    });
    open();
    chooseSide(dialog().right(), QStringLiteral("Backup A"));
    EXPECT_GT(asked, 0);
    EXPECT_EQ(dialog().right().title(), QStringLiteral("Backup A"));
    EXPECT_EQ(model().differenceCount(), compareSets(set(0), set(1)).differenceCount());
    chooseSide(dialog().right(), QStringLiteral("Set 1 of the target"));
    EXPECT_EQ(dialog().message(), QStringLiteral("Please turn off Live Mode"));
    EXPECT_EQ(dialog().right().title(), QStringLiteral("Backup A"));
}

TEST_F(Comparing, WhatTheTargetDoesNotHoldIsThatOfTheOtherSide) {
    frame->compareCommands().addSources([this] {
        return std::vector<CompareSource>{
            {QStringLiteral("Target"), {}, [this](const ParameterSet& base) {
                 return CompareReading{setOfImage(tuning.image(), base), {}, {}};
             }}};
    });
    open();
    for (std::uint32_t own = 0; own < setCount; ++own) {
        chooseSide(dialog().left(), nameOfSet(set(own), own));
        chooseSide(dialog().right(), QStringLiteral("Target"));
        EXPECT_EQ(nameOfSet(dialog().right().record(), own), nameOfSet(set(own), own));
        chooseSide(dialog().right(), nameOfSet(set(own), own));
        chooseSide(dialog().left(), QStringLiteral("Target"));
        EXPECT_EQ(nameOfSet(dialog().left().record(), own), nameOfSet(set(own), own));
    }
}

TEST_F(Comparing, AnyStepOfTheHistoryIsASide) {
    for (int i = 1; i <= 8; ++i) {
        tuning.setVolume(static_cast<float>(-i) / 2, true);
        history->commit("volume " + std::to_string(i));
    }
    const auto present = state();
    open();
    chooseSide(dialog().right(), nameOfSet(set(0), 0));
    whenAsked([](QDialog& choice) {
        auto* const list = choice.findChild<QListView*>();
        EXPECT_EQ(list->model()->rowCount(), 10) << "the start and nine steps";
        list->setCurrentIndex(list->model()->index(4, 0));
        EXPECT_TRUE(list->currentIndex().data().toString().startsWith(QStringLiteral("after volume 3,")));
        QTest::keyClick(list, Qt::Key_Return);
    });
    chooseSide(dialog().left(), QStringLiteral("Other step..."));
    EXPECT_EQ(dialog().left().record().channels[channelMap[0]].volumeDb, -1.5F);
    EXPECT_TRUE(same(*present, *state())) << "nothing moves";
    // The set of the history is the one that the other side shows.
    chooseSide(dialog().right(), nameOfSet(set(1), 1));
    chooseSide(dialog().left(), QStringLiteral("History: at start"));
    EXPECT_NE(std::memcmp(&dialog().left().record(), &set(0), sizeof set(0)), 0);
    EXPECT_EQ(std::memcmp(&dialog().left().record(), &history->setsAt(0)->sets[1], sizeof set(0)), 0);
}

TEST_F(Comparing, WorksWithTheKeyboardAlone) {
    open();
    tree().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&tree(), Qt::Key_Home);
    QTest::keyClick(&tree(), Qt::Key_Down);
    QTest::keyClick(&tree(), Qt::Key_Space);
    EXPECT_EQ(model().chosen().size(), 1U);
    QTest::keyClick(&tree(), Qt::Key_Space);
    EXPECT_TRUE(model().chosen().empty());
    QTest::keyClick(&tree(), Qt::Key_Space);
    QTest::keyClick(&tree(), Qt::Key_Left);
    QTest::keyClick(&tree(), Qt::Key_Left);
    EXPECT_FALSE(tree().isExpanded(model().index(0, 0)));
    QTest::keyClick(&tree(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &copyButton());
    const std::size_t before = steps();
    QTest::keyClick(&copyButton(), Qt::Key_Space);
    EXPECT_EQ(steps(), before + 1);
    dialog().left().setFocus(Qt::TabFocusReason);
    const QString shownBefore = dialog().left().currentText();
    QTest::keyClick(&dialog().left(), Qt::Key_Down);
    EXPECT_TRUE(dialog().left().view()->isVisible()) << "the list opens, and nothing is chosen yet";
    QTest::keyClick(dialog().left().view(), Qt::Key_Escape);
    EXPECT_EQ(dialog().left().currentText(), shownBefore);
    for (QWidget* each : dialog().findChildren<QWidget*>()) {
        if (each->focusPolicy() != Qt::NoFocus && each->isVisible() && each->parentWidget() == &dialog()) {
            QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(each);
            ASSERT_NE(face, nullptr);
            EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << each->metaObject()->className();
        }
    }
    QTest::keyClick(&dialog(), Qt::Key_Escape);
    EXPECT_FALSE(dialog().isVisible());
}

TEST_F(Comparing, IsRefusedWhileABoxIsOpen) {
    open();
    clickMark(group(QStringLiteral("Router")));
    const auto before = state();
    QDialog box(frame.get());
    box.setModal(true);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    copyButton().click();
    box.close();
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_THAT(frame->statusLine().noticeLine().standing()->text.toStdString(),
                HasSubstr("Copy Selected: not now"));
    EXPECT_EQ(model().chosen().empty(), false);
}

TEST_F(Comparing, SendsInLiveModeOnce) {
    tuning.setLiveMode(true);
    tuning.takeUpdate();
    open();
    clickMark(group(QStringLiteral("Channel 4")));
    EXPECT_FALSE(tuning.updatePending());
    click(copyButton());
    EXPECT_TRUE(tuning.takeUpdate());
    EXPECT_FALSE(tuning.takeUpdate());
    tuning.setLiveMode(false);
}

TEST_F(Comparing, CutsNothingOffOnTheSmallestScreen) {
    open();
    for (const QSize size : {QSize(675, 352), CompareDialog::usualSize, QSize(1300, 730)}) {
        dialog().resize(size);
        settleEvents();
        EXPECT_EQ(dialog().size(), size);
        for (QWidget* each : dialog().findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            EXPECT_TRUE(dialog().rect().contains(each->geometry())) << each->metaObject()->className();
            for (QWidget* other : dialog().findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
                EXPECT_TRUE(each == other || !each->isVisible() || !other->isVisible() ||
                            !each->geometry().intersects(other->geometry()))
                    << each->metaObject()->className() << " and " << other->metaObject()->className();
            }
        }
        for (CxSkinButton* each : dialog().findChildren<CxSkinButton*>()) {
            EXPECT_GE(each->width(), each->neededWidth()) << each->text().toStdString();
        }
        for (SkinCheckBox* each : dialog().findChildren<SkinCheckBox*>()) {
            EXPECT_GE(each->width(), each->sizeHint().width()) << each->text().toStdString();
        }
        EXPECT_GE(tree().viewport()->height(), 4 * CompareRows::lineHeight);
    }
}

}  // namespace
}  // namespace tessavo::test
