#include "controls/note_mark.h"
#include "pages/input/audio_router_fixture.h"
#include "pages/input/input_eq.h"

namespace tessavo::test {
namespace {

/// Line of a mark that is whole: seen with tooltip and words for screen readers, and without being cut; or
/// empty for one that is not to be seen.
QString lineOf(const NoteMark& mark) {
    EXPECT_EQ(mark.isHidden(), mark.line().isEmpty());
    EXPECT_EQ(mark.toolTip().isEmpty(), mark.line().isEmpty());
    EXPECT_EQ(mark.accessibleName().isEmpty(), mark.line().isEmpty());
    EXPECT_EQ(mark.shownLine(), mark.line());
    return mark.line();
}

class InputMarks : public PageTest {
 protected:
    void openEqualizer() { showPage(std::make_unique<CInputEQ>(actual.state, boxes)); }
    QString fileNote() {
        auto& mark = control<NoteMark>(input_eq_id::eqNote);
        auto& button = control<CxSkinButton>(input_eq_id::eqOn);
        EXPECT_EQ(button.markNote(), mark.toolTip());
        EXPECT_EQ(button.toolTip(), mark.toolTip());
        return lineOf(mark);
    }
    void receive(const Bytes& image) {
        actual.state.replaceImage(recordOf<ParameterImage>(image));
        actual.state.imageToSet();
        page->refresh();
    }
};

TEST_F(InputMarks, TheEqualizersButtonTellsWhatTheSetsFileSaysInstead) {
    const auto off = QStringLiteral("the set's file says off");
    const auto on = QStringLiteral("the set's file says on");
    openEqualizer();
    auto& button = control<CxSkinButton>(input_eq_id::eqOn);
    EXPECT_EQ(button.text(), QStringLiteral("EQ On"));
    EXPECT_EQ(fileNote(), off) << "a fresh record says off, the image plays";
    click(button);
    EXPECT_EQ(fileNote(), QString());
    click(button);
    EXPECT_EQ(fileNote(), QString());
    Bytes store = actual.store();
    store[4] = 0;
    actual.load(store);
    page->refresh();
    EXPECT_EQ(button.text(), QStringLiteral("EQ On"));
    EXPECT_EQ(fileNote(), off);
    click(button);
    store = actual.store();
    store[4] = 1;
    actual.load(store);
    page->refresh();
    EXPECT_EQ(button.text(), QStringLiteral("EQ Off"));
    EXPECT_EQ(fileNote(), on);
    actual.state.selectSet(3);
    page->changeSet(3);
    EXPECT_EQ(fileNote(), QString()) << "a fresh record says off too";
}

TEST_F(InputMarks, OddBypassBytesOfAReadAreTold) {
    openEqualizer();
    for (const auto& [first, second] : {std::pair{1, 0}, {0, 1}, {5, 5}}) {
        Bytes image = actual.image();
        image[6] = static_cast<std::uint8_t>(first);
        image[22] = static_cast<std::uint8_t>(second);
        receive(image);
        EXPECT_TRUE(fileNote().contains(QLatin1String("odd bypass bytes"))) << first << second;
        EXPECT_TRUE(control<NoteMark>(input_eq_id::eqNote)
                        .toolTip()
                        .contains(QStringLiteral("bytes %1 and %2").arg(first).arg(second)));
    }
    Bytes image = actual.image();
    image[6] = image[22] = 0;
    receive(image);
    EXPECT_EQ(fileNote(), QString());
}

TEST_F(InputMarks, TheCompressorsSwitchTellsACodeThatItCannotShow) {
    openEqualizer();
    EXPECT_EQ(check(input_eq_id::compressorDisabled).markNote(), QString());
    Bytes image = actual.image();
    image[3040] = 7;
    receive(image);
    EXPECT_EQ(check(input_eq_id::compressorDisabled).markNote(), QStringLiteral("In force: code 7"));
    click(check(input_eq_id::compressorDisabled));
    EXPECT_EQ(check(input_eq_id::compressorDisabled).markNote(), QString());
}

class RouterMarks : public AudioRouter {
 protected:
    QString surroundNote() { return lineOf(control<NoteMark>(audio_router_id::surroundNote)); }
    QString codeNote(int id) {
        auto* box = page->findChild<SkinCheckBox*>(QStringLiteral("id%1").arg(id));
        return box != nullptr ? box->markNote() : list(id).markNote();
    }
    void receive(const Bytes& received) {
        actual.state.replaceImage(recordOf<ParameterImage>(received));
        actual.state.imageToSet();
        page->refresh();
    }
};

TEST_F(RouterMarks, TheStateAtStartTellsWhatTheSetSays) {
    expectSurround(false);
    EXPECT_EQ(surroundNote(), QStringLiteral("the set says on"));
    click(surround());
    expectSurround(false);
    EXPECT_EQ(surroundNote(), QString()) << "now it is off";
    click(surround());
    expectSurround(true);
    EXPECT_EQ(surroundNote(), QString());
    open();
    expectSurround(false);
    EXPECT_EQ(surroundNote(), QStringLiteral("the set says on"));
    page->refresh();
    expectSurround(true);
    EXPECT_EQ(surroundNote(), QString());
}

TEST_F(RouterMarks, ASetThatIsOffAtStartNeedsNoMark) {
    store[1576] = 1;
    actual.load(store);
    open();
    expectSurround(false);
    EXPECT_EQ(surroundNote(), QString());
}

TEST_F(RouterMarks, EverySourceListTellsACodeWithoutAName) {
    for (int position = 0; position < 8; ++position) {
        const int id = audio_router_id::firstSource + position;
        const std::size_t channel = pageChannels.at(static_cast<std::size_t>(position));
        EXPECT_EQ(codeNote(id), QString());
        store = actual.store();
        store[1568 + channel] = 20;
        actual.load(store);
        page->refresh();
        EXPECT_EQ(codeNote(id), QStringLiteral("In force: code 20"));
        Bytes received = actual.image();
        writeAt(received, 2916 + 4 * channel, std::uint32_t{257});
        receive(received);
        EXPECT_EQ(list(id).currentIndex(), 1);
        EXPECT_EQ(codeNote(id), QStringLiteral("Plays code 257"));
        choose(id, 2);
        EXPECT_EQ(codeNote(id), QString());
        EXPECT_EQ(list(id).toolTip(), QString());
    }
}

TEST_F(RouterMarks, EveryOtherSwitchAndListTellsACodeThatItCannotShow) {
    for (const auto& [id, place] : {std::pair{audio_router_id::lineOutUse, 2116},
                                    {audio_router_id::rearForSurround, 1904},
                                    {audio_router_id::turnOffDelayOn, 1844}}) {
        EXPECT_EQ(codeNote(id), QString());
        store = actual.store();
        store[static_cast<std::size_t>(place)] = 3;
        actual.load(store);
        page->refresh();
        EXPECT_EQ(codeNote(id), QStringLiteral("In force: code 3")) << id;
    }
}

}  // namespace
}  // namespace tessavo::test
