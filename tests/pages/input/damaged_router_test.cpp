#include <QTest>

#include "pages/input/audio_router_fixture.h"

namespace tessavo::test {
namespace {

/// Sets that hold what the boxes cannot show.
class DamagedRouter : public AudioRouter {};

TEST_F(DamagedRouter, AModeTypedAgainReplacesOneThatTheBoxCannotShow) {
    store[1578] = 77;
    actual.load(store);
    image = actual.image();
    page->refresh();
    EXPECT_EQ(mode().mark(), QStringLiteral("In force: 77"));
    mode().setFocus(Qt::TabFocusReason);
    key(mode(), Qt::Key_Tab);
    expectBytes();
    mode().setFocus(Qt::TabFocusReason);
    mode().selectAll();
    QTest::keyClicks(&mode(), QStringLiteral("2"));
    key(mode(), Qt::Key_Tab);
    EXPECT_EQ(actual.store()[1578], 2);
    EXPECT_EQ(mode().mark(), QString());
}

TEST_F(DamagedRouter, ADelayOutOfRangeIsNotCarriedBackByTheRoom) {
    writeAt(store, 1848, std::uint16_t{60000});
    actual.load(store);
    image = actual.image();
    page->refresh();
    EXPECT_EQ(textOf(5036), "100");
    EXPECT_EQ(edit(5036).mark(), QStringLiteral("In force: 60000 ms"));
    expectBytes();
    // Taken back, it stays; carried away and back, it is gone.
    typeOnly(5036, QStringLiteral("7"));
    key(edit(5036), Qt::Key_Escape);
    EXPECT_EQ(readAt<std::uint16_t>(actual.store(), 1848), 60000);
    EXPECT_EQ(readAt<std::uint16_t>(actual.image(), 2970), 60000);
    EXPECT_EQ(textOf(5036), "100");
    key(room(), Qt::Key_Up);
    expectRoom(1, startingDelay(0, 1));
    EXPECT_EQ(edit(5036).mark(), QString());
    key(room(), Qt::Key_Down);
    expectRoom(0, 100);
    EXPECT_EQ(edit(5036).mark(), QString());
}

TEST_F(DamagedRouter, EscapeLeavesATurnOffDelayThatTheSliderCannotShow) {
    writeAt(store, 1846, std::uint16_t{65000});
    actual.load(store);
    image = actual.image();
    page->refresh();
    EXPECT_EQ(textOf(5023), "30000");
    EXPECT_EQ(edit(5023).mark(), QStringLiteral("In force: 65000 ms"));
    for (const char* typed : {"7", "30000", "word", ""}) {
        typeOnly(5023, QLatin1String(typed));
        key(edit(5023), Qt::Key_Escape);
        expectBytes();
        EXPECT_EQ(textOf(5023), "30000");
        EXPECT_EQ(slider(5022).position(), 30000);
        key(edit(5023), Qt::Key_Tab);
        expectBytes();
    }
    typeAndLeave(5023, QStringLiteral("30000"));
    EXPECT_EQ(readAt<std::uint16_t>(actual.store(), 1846), 30000);
    EXPECT_EQ(edit(5023).mark(), QString());
}

}  // namespace
}  // namespace tessavo::test
