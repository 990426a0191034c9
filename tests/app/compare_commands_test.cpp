#include "app/compare_commands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenuBar>
#include <QMimeData>
#include <gmock/gmock.h>

#include "app/compare_fixture.h"
#include "app/copy_set_dialog.h"
#include "compare/channel_clip.h"
#include "compare/channel_mirror.h"
#include "compare/copy_elements.h"
#include "history/element_words.h"
#include "pages/rows/output_eq_rows.h"
#include "params/set_text.h"

// Copying of channels and sets by the menu "Edit".

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* form = "application/x-tessavo-channel";

class Copying : public CompareTest {
 protected:
    [[nodiscard]] const ParameterSet& set(std::size_t index) const { return tuning.store().sets.at(index); }
    void chooseItem(const char* item) { clickMenu(QStringLiteral("Edit"), QLatin1String(item)); }
    [[nodiscard]] std::string stepText() const { return std::string(history->undoText()); }
    std::string noticeText() {
        const Notice* const notice = frame->statusLine().noticeLine().standing();
        return notice == nullptr ? std::string() : notice->text.toStdString();
    }
    static QClipboard& clipboard() { return *QGuiApplication::clipboard(); }
    static std::uint8_t maskOf(std::initializer_list<std::uint8_t> positions) {
        std::uint8_t mask = 0;
        for (const std::uint8_t position : positions) {
            mask |= selectionBit({position});
        }
        return mask;
    }
    /// Two sets whose eight channels all differ from each other.
    void fillChannels() {
        view().showSet(1);
        ParameterSet filled = set(1);
        filled.routerSource = {0, 1, 2, 3, 4, 5, 6, 7};
        tuning.replaceSet(1, filled);
        history->commit("filled");
    }
};

TEST_F(Copying, TheMenusHaveTheEntriesInTheirPlaces) {
    const QStringList edit = itemsOf(QStringLiteral("Edit"));
    ASSERT_EQ(edit.size(), 10);
    EXPECT_EQ(edit.mid(4),
              (QStringList{QStringLiteral("-"), QStringLiteral("Copy Channel"),
                           QStringLiteral("Paste Channel"), QStringLiteral("Mirror Left to Right"),
                           QStringLiteral("-"), QStringLiteral("Copy Set To...")}));
    EXPECT_TRUE(itemsOf(QStringLiteral("Tools")).contains(QStringLiteral("Compare...")));
    QStringList titles;
    for (const QAction* each : frame->findChild<QMenuBar*>()->actions()) {
        titles << each->text().remove(QLatin1Char('&'));
    }
    EXPECT_EQ(titles, (QStringList{QStringLiteral("File"), QStringLiteral("Edit"), QStringLiteral("Tools"),
                                   QStringLiteral("Help")}));
    for (const char* item : {"Copy Channel", "Paste Channel", "Mirror Left to Right", "Copy Set To..."}) {
        EXPECT_TRUE(frame->action(QLatin1String(item))->shortcut().isEmpty())
            << "a text box keeps its own keys";
    }
}

TEST_F(Copying, AChannelComesToEveryChosenOneAndToNoOther) {
    fillChannels();
    for (std::uint8_t from = 0; from < channelCount; ++from) {
        tuning.setSelectionMask(selectionBit({from}));
        chooseItem("Copy Channel");
        const QMimeData* const data = clipboard().mimeData();
        const ChannelClip clip = clipOf(set(1), recordChannelAt({from}));
        EXPECT_TRUE(data->hasFormat(QLatin1String(form)));
        EXPECT_EQ(data->text().toStdString(), channelClipText(clip));
        EXPECT_THAT(noticeText(), HasSubstr("Channel " + std::to_string(from + 1) + " is on the clipboard"));
        const std::uint8_t mask = maskOf({1, 4, 6});
        tuning.setSelectionMask(mask);
        const ParameterSet before = set(1);
        const ParameterSet expected = pasteChannel(before, clip, mask);
        const std::size_t count = history->position();
        chooseItem("Paste Channel");
        EXPECT_EQ(std::memcmp(&set(1), &expected, sizeof expected), 0) << int{from};
        EXPECT_EQ(history->position(), count + 1);
        EXPECT_EQ(stepText(), "Pasted Channel " + std::to_string(from + 1) + " into Channels 2, 5 and 7");
        undoKey();
        EXPECT_EQ(std::memcmp(&set(1), &before, sizeof before), 0);
    }
    EXPECT_TRUE(pagesShowTheSet());
}

TEST_F(Copying, AForeignOrDamagedClipboardIsToldAndChangesNothing) {
    const auto before = state();
    const std::size_t count = history->position();
    clipboard().setText(QStringLiteral("Filter 1: ON Peak"));
    chooseItem("Paste Channel");
    EXPECT_EQ(noticeText(), "Paste Channel: the clipboard holds no channel");
    const std::vector<std::uint8_t> whole = channelClipBytes(clipOf(set(1), recordChannelAt({2})));
    ASSERT_FALSE(whole.empty());
    for (std::size_t cut = 0; cut < whole.size(); cut += 7) {
        auto data = std::make_unique<QMimeData>();
        data->setData(QLatin1String(form),
                      QByteArray(reinterpret_cast<const char*>(whole.data()), static_cast<qsizetype>(cut)));
        clipboard().setMimeData(data.release());
        frame->compareCommands().pasteChannel();
        EXPECT_THAT(noticeText(), HasSubstr("Paste Channel: "));
    }
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_EQ(history->position(), count);
    tuning.setSelectionMask(0);
    chooseItem("Copy Channel");
    EXPECT_EQ(noticeText(), "Copy Channel: no channel is chosen");
}

TEST_F(Copying, ABoxThatIsEditedKeepsItsKeys) {
    auto& box = on<NumberEdit>(Page::outputEqualizer, output_eq_id::volume.edit);
    typeInto(box, QStringLiteral("-4.5"));
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard().text(), QStringLiteral("-4.5"));
    EXPECT_FALSE(clipboard().mimeData()->hasFormat(QLatin1String(form)));
    typeInto(box, QStringLiteral("1"));
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(box.text(), QStringLiteral("1-4.5"));
}

TEST_F(Copying, MirroringTellsThePairsBeforeAndWritesThemAsOneStep) {
    fillChannels();
    const MirrorPlan plan = planMirror(set(1));
    ASSERT_FALSE(plan.pairs.empty());
    const ParameterSet expected = mirrorChannels(set(1), plan.pairs);
    const auto before = state();
    answers = {BoxAnswer::no};
    chooseItem("Mirror Left to Right");
    ASSERT_THAT(shown, SizeIs(1));
    EXPECT_EQ(shown[0].buttons, BoxButtons::yesNo);
    for (const MirrorPair& pair : plan.pairs) {
        EXPECT_THAT(shown[0].text, HasSubstr(pair.text));
    }
    for (const std::string& each : plan.unpaired) {
        EXPECT_THAT(shown[0].text, HasSubstr(each));
    }
    EXPECT_TRUE(same(*before, *state()));
    answers = {BoxAnswer::yes};
    const std::size_t count = history->position();
    chooseItem("Mirror Left to Right");
    EXPECT_EQ(std::memcmp(&set(1), &expected, sizeof expected), 0);
    EXPECT_EQ(history->position(), count + 1);
    EXPECT_EQ(stepText(), "Mirrored left to right");
    EXPECT_TRUE(pagesShowTheSet());
    answers = {BoxAnswer::yes};
    chooseItem("Mirror Left to Right");
    EXPECT_THAT(noticeText(), HasSubstr("the same already"));
    EXPECT_EQ(history->position(), count + 1);
    // Without a pair nobody is asked.
    ParameterSet lonely = set(1);
    lonely.routerSource.fill(0);
    tuning.replaceSet(1, lonely);
    history->commit();
    shown.clear();
    chooseItem("Mirror Left to Right");
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_THAT(noticeText(), HasSubstr("no channel of the left has a partner"));
}

TEST_F(Copying, ASetGoesToTheChosenOnesWithItsNameOrWithout) {
    ParameterSet filled = set(1);
    writeSetText(filled.setName, u"First");
    tuning.replaceSet(0, filled);
    history->commit("filled");
    for (const bool withName : {false, true}) {
        const ParameterStore before = tuning.store();
        whenAsked([withName](QDialog& dialog) {
            const auto marks = dialog.findChildren<SkinCheckBox*>();
            ASSERT_EQ(marks.size(), 5) << "four sets and the name";
            EXPECT_EQ(dialog.findChildren<CxSkinButton*>().size(), 2);
            QTest::mouseClick(marks[1], Qt::LeftButton);
            QTest::mouseClick(marks[3], Qt::LeftButton);
            if (withName) {
                QTest::mouseClick(marks[4], Qt::LeftButton);
            }
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        const std::size_t count = history->position();
        chooseItem("Copy Set To...");
        settleEvents();
        ASSERT_EQ(history->position(), count + 1) << noticeText();
        EXPECT_THAT(stepText(), HasSubstr("Copied "));
        for (std::size_t i = 0; i < setCount; ++i) {
            const bool isTarget = i == 2 || i == 4;
            const ParameterSet expected =
                isTarget ? copyWholeSet(before.sets[i], before.sets[0], withName) : before.sets[i];
            EXPECT_EQ(std::memcmp(&set(i), &expected, sizeof expected), 0) << i;
        }
        // The dialog was the active window.
        frame->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
        undoKey();
        EXPECT_EQ(std::memcmp(&tuning.store(), &before, sizeof before), 0);
    }
    whenAsked([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    const std::size_t count = history->position();
    chooseItem("Copy Set To...");
    EXPECT_EQ(history->position(), count);
}

TEST_F(Copying, IsSentInLiveModeAndRefusedWhileABoxIsOpen) {
    fillChannels();
    tuning.setSelectionMask(selectionBit({0}));
    chooseItem("Copy Channel");
    tuning.setSelectionMask(selectionBit({1}));
    const auto before = state();
    {
        QDialog box(frame.get());
        box.setModal(true);
        box.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
        frame->compareCommands().pasteChannel();
        EXPECT_THAT(noticeText(), HasSubstr("Paste Channel: not now"));
        frame->compareCommands().mirror();
        EXPECT_THAT(noticeText(), HasSubstr("Mirror Left to Right: not now"));
        frame->compareCommands().copySetTo();
        EXPECT_THAT(noticeText(), HasSubstr("Copy Set To: not now"));
        EXPECT_THAT(shown, IsEmpty());
    }
    EXPECT_TRUE(same(*before, *state()));
    tuning.setLiveMode(true);
    tuning.takeUpdate();
    chooseItem("Paste Channel");
    EXPECT_TRUE(tuning.takeUpdate());
    EXPECT_FALSE(tuning.takeUpdate());
    tuning.setLiveMode(false);
}

}  // namespace
}  // namespace tessavo::test
