#include "pages/input/slider_rows.h"

#include <QAccessible>

#include "pages/input/audio_router.h"
#include "pages/input/input_eq.h"
#include "support/page_fixture.h"

namespace tessavo::test {
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
        EXPECT_TRUE(takePending());
        expectAt(steps);
    }
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_P(SliderRow, WritesTheShownNumberThatIsTypedAgain) {
    const InputRow& row = GetParam();
    loadRandom(77);
    page->refresh();
    const int steps = row.shown(twin.store());
    typeAndLeave(row.edit, QString::fromStdString(row.text(steps)));
    row.edited(twin.state, steps, true);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
    EXPECT_EQ(edit(row.edit).warning(), QString());
}

TEST_P(SliderRow, WarnsWhileATextCountsAsSomethingElse) {
    const InputRow& row = GetParam();
    const auto counts = [&](const char* why, int steps) {
        const QString unit = edit(row.edit).unit();
        return QString::fromStdString(why + row.text(steps)) +
               (unit.isEmpty() ? QString() : QLatin1Char(' ') + unit);
    };
    dragToEnd(row.slider, row.vertical);
    const int top = row.steps(slider(row.slider).position());
    const auto expectWarning = [&](const QString& text, const QString& warning) {
        typeOnly(row.edit, text);
        EXPECT_EQ(edit(row.edit).text(), text) << "nothing is refused";
        EXPECT_EQ(edit(row.edit).warning(), warning) << text.toStdString();
        EXPECT_EQ(edit(row.edit).toolTip().startsWith(warning), true);
        EXPECT_TRUE(edit(row.edit).accessibleDescription().contains(warning));
    };
    expectWarning(QString::fromStdString(row.text(top)), {});
    expectWarning(QString::fromStdString(row.text(row.low)), {});
    expectWarning(QString::fromStdString(row.text(top)), {});
    expectWarning(QStringLiteral("1234567"), counts("Out of range: counts as ", row.high));
    expectWarning(QStringLiteral("-1234567.5"), counts("Out of range: counts as ", row.low));
    expectWarning(QString::fromStdString(row.text(top)) + QStringLiteral(" loud"),
                  counts("Not wholly a number: counts as ", top));
    if (row.isDecoderGain()) {
        expectWarning(QStringLiteral("-inf"), counts("Not a number: ", top) + QStringLiteral(" stays"));
        expectWarning(QStringLiteral("-Inf."), {});
    } else {
        expectWarning(QStringLiteral("-"), counts("Not a number: counts as ", row.typed(0)));
    }
    typeAndEnter(row.edit, QStringLiteral("word"));
    EXPECT_EQ(edit(row.edit).warning(), QString());
}

TEST_P(SliderRow, MarksAValueThatTheBoxCannotShow) {
    const InputRow& row = GetParam();
    EXPECT_EQ(edit(row.edit).mark(), QString());
    // Every bit set: out of range or, as a single, no number.
    Bytes store = actual.store();
    for (const auto& [place, bytes] : row.record(row.high)) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            store[place + i] = i + 1 == bytes.size() ? 0x4F : 0xEE;
        }
    }
    const Bytes damaged = store;
    actual.load(store);
    twin.load(store);
    page->refresh();
    if (row.held(store) <= row.high && row.held(store) >= row.low) {
        EXPECT_EQ(edit(row.edit).mark(), QString());
        return;
    }
    EXPECT_TRUE(edit(row.edit).mark().startsWith(QStringLiteral("In force: ")))
        << edit(row.edit).mark().toStdString();
    // Escape leaves it, whatever was typed and followed; the same number once more takes its place.
    const QString text = edit(row.edit).text();
    for (const QString& typed : {QStringLiteral("7"), text, QStringLiteral("word")}) {
        typeOnly(row.edit, typed);
        key(edit(row.edit), Qt::Key_Escape);
        EXPECT_EQ(edit(row.edit).text(), text);
        EXPECT_SAME_BYTES(actual.store(), damaged);
        EXPECT_TRUE(inStep());
        EXPECT_TRUE(edit(row.edit).mark().startsWith(QStringLiteral("In force: ")));
    }
    typeAndLeave(row.edit, text);
    row.edited(twin.state, row.shown(store), true);
    EXPECT_TRUE(inStep());
    EXPECT_EQ(edit(row.edit).mark(), QString());
}

TEST_P(SliderRow, TakesATextThatIsNoNumberAsZeroButKeepsALevel) {
    const InputRow& row = GetParam();
    dragToEnd(row.slider, row.vertical);
    for (const int pixels : {30, 9}) {
        drag(row.slider, row.vertical ? pixels : -pixels);
    }
    release(row.slider);
    const int before = row.steps(slider(row.slider).position());
    for (const char* text : {"loud", "-inf", "-INF.", "", "-", "x3"}) {
        const int steps = row.isDecoderGain() ? before : row.typed(0);
        typeAndLeave(row.edit, QLatin1String(text));
        expectAt(steps);
        typeAndEnter(row.edit, QLatin1String(text));
        expectAt(steps);
    }
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
}  // namespace tessavo::test
