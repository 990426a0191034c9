#include "input_pages/slider_rows.h"

#include <QAccessible>

#include "output_pages/page_fixture.h"
#include "pages/input/audio_router.h"
#include "pages/input/input_eq.h"

namespace tessavo::testing {
namespace {

/// Every slider of both pages, one case each.
class SliderRow : public PageTest, public ::testing::WithParamInterface<InputRow> {
 protected:
    SliderRow() {
        if (GetParam().slider < 5000) {
            showPage(std::make_unique<CInputEQ>(actual.state, boxes));
        } else {
            showPage(std::make_unique<CAudioRouter>(actual.state));
        }
        takePending();
        store_ = actual.store();
        image_ = actual.image();
    }

    /// Slider, text, record and image are at this step; nothing else in record and image has changed.
    void expectAt(int steps) {
        const InputRow& row = GetParam();
        EXPECT_EQ(slider(row.slider).position(), row.position(steps));
        EXPECT_EQ(textOf(row.edit), row.text(steps));
        expectStored(steps);
    }
    void expectStored(int steps) {
        const InputRow& row = GetParam();
        applyPatches(store_, row.record(steps));
        applyPatches(image_, row.image(steps));
        EXPECT_SAME_BYTES(actual.store(), store_);
        EXPECT_SAME_BYTES(actual.image(), image_);
    }

 private:
    Bytes store_;
    Bytes image_;
};

TEST_P(SliderRow, ReachesBothEndsOfItsRange) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, row.vertical);
    expectAt(row.high);
    dragToEnd(row.slider, !row.vertical);
    expectAt(row.low);
    EXPECT_EQ(slider(row.slider).minimum(), std::min(row.position(row.low), row.position(row.high)));
    EXPECT_EQ(slider(row.slider).maximum(), std::max(row.position(row.low), row.position(row.high)));
}

TEST_P(SliderRow, WritesWhileItIsDraggedAndIsFinalWhenLetGo) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, false);
    takePending();
    for (const int pixels : {-30, -17, -9}) {
        const int before = slider(row.slider).position();
        drag(row.slider, pixels);
        ASSERT_LT(slider(row.slider).position(), before);
        expectAt(row.steps(slider(row.slider).position()));
        EXPECT_FALSE(takePending());
    }
    release(row.slider);
    expectAt(row.steps(slider(row.slider).position()));
    EXPECT_TRUE(takePending());
}

TEST_P(SliderRow, StepsByKeysFromTheSliderAndFromTheBox) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, !row.vertical);
    takePending();
    key(slider(row.slider), Qt::Key_Up);
    expectAt(row.low + 1);
    EXPECT_TRUE(takePending());
    key(slider(row.slider), Qt::Key_PageUp);
    expectAt(row.low + 11);
    key(edit(row.edit), Qt::Key_Up);
    expectAt(row.low + 12);
    EXPECT_TRUE(takePending());
    key(edit(row.edit), Qt::Key_Down);
    key(edit(row.edit), Qt::Key_Down);
    expectAt(row.low + 10);
    dragToEnd(row.slider, !row.vertical);
    key(edit(row.edit), Qt::Key_Down);
    expectAt(row.low);
}

TEST_P(SliderRow, TakesANumberOnEnterAndOnLeaving) {
    const InputRow& row = GetParam();
    const int middle = (row.low + row.high) / 2 + 3;
    typeAndEnter(row.edit, QString::fromStdString(row.text(middle)));
    EXPECT_TRUE(edit(row.edit).hasFocus());
    EXPECT_TRUE(takePending());
    expectAt(middle);
    typeAndLeave(row.edit, QString::fromStdString(row.text(middle - 2)));
    EXPECT_TRUE(takePending());
    expectAt(middle - 2);
}

TEST_P(SliderRow, ClampsWhatIsTypedWithoutAMessage) {
    const InputRow& row = GetParam();
    for (const auto& [text, steps] : {std::pair<const char*, int>{"99999", row.high}, {"-99999", row.low}}) {
        typeAndLeave(row.edit, QString::fromLatin1(text));
        EXPECT_EQ(slider(row.slider).position(), row.position(steps)) << text;
        expectStored(steps);
        EXPECT_TRUE(takePending());
        page->refresh();
        expectAt(steps);
    }
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_P(SliderRow, TakesATextThatIsNoNumberAsZero) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, false);
    typeAndLeave(row.edit, QStringLiteral("loud"));
    EXPECT_EQ(slider(row.slider).position(), row.position(row.typed(0)));
    expectStored(row.typed(0));
}

TEST_P(SliderRow, CutsOffWhatIsFinerThanAStep) {
    const InputRow& row = GetParam();
    const bool negative = row.high <= 0 || row.isDecoderGain();
    typeAndLeave(row.edit, negative ? QStringLiteral("-12.39") : QStringLiteral("12.39"));
    const int steps = row.typed(negative ? -123 : 123);
    EXPECT_EQ(slider(row.slider).position(), row.position(steps));
    expectStored(steps);
}

TEST_P(SliderRow, EscapeBringsTheOldTextBack) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, false);
    const int steps = row.steps(slider(row.slider).position());
    typeOnly(row.edit, QStringLiteral("7"));
    key(edit(row.edit), Qt::Key_Escape);
    expectAt(steps);
    key(edit(row.edit), Qt::Key_Tab);
    expectAt(steps);
}

TEST_P(SliderRow, LeavingABoxUntouchedChangesNothing) {
    const InputRow& row = GetParam();
    loadRandom(41);
    page->refresh();
    const Bytes store = actual.store();
    const Bytes image = actual.image();
    edit(row.edit).setFocus(Qt::TabFocusReason);
    key(edit(row.edit), Qt::Key_Tab);
    EXPECT_FALSE(edit(row.edit).hasFocus());
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_SAME_BYTES(actual.image(), image);
    EXPECT_FALSE(takePending());
}

TEST_P(SliderRow, ShowsALoadedSetWithoutWritingIt) {
    const InputRow& row = GetParam();
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        loadRandom(seed);
        page->refresh();
        deliver();
        const int steps = row.shown(twin.store());
        EXPECT_EQ(slider(row.slider).position(), row.position(steps));
        EXPECT_EQ(textOf(row.edit), row.text(steps));
        EXPECT_TRUE(inStep());
        EXPECT_FALSE(takePending());
    }
}

TEST_P(SliderRow, TellsScreenReadersItsValueInItsUnit) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, row.vertical);
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&slider(row.slider));
    ASSERT_NE(seen, nullptr);
    ASSERT_NE(seen->valueInterface(), nullptr);
    const int top = row.isDecoderGain() ? row.high - 300 : row.high;
    EXPECT_DOUBLE_EQ(seen->valueInterface()->currentValue().toDouble(),
                     top / static_cast<double>(row.perUnit));
    EXPECT_EQ(seen->text(QAccessible::Value).toStdString().rfind(row.text(row.high), 0), 0U);
    EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty());
}

std::string nameOf(const ::testing::TestParamInfo<InputRow>& info) {
    std::string name = info.param.name;
    std::erase_if(name, [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) == 0; });
    return name;
}

INSTANTIATE_TEST_SUITE_P(InputEqualizer, SliderRow, ::testing::ValuesIn(equalizerRows()), nameOf);
INSTANTIATE_TEST_SUITE_P(ChannelConfig, SliderRow, ::testing::ValuesIn(routerRows()), nameOf);

}  // namespace
}  // namespace tessavo::testing
