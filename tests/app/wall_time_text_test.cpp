#include "app/wall_time_text.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

/// A time on the clock of this system, wherever it stands.
WallTime at(int day, int hour, int minute, int second) {
    const QDateTime local(QDate(2026, 3, day), QTime(hour, minute, second, 999));
    return WallTime(std::chrono::milliseconds(local.toMSecsSinceEpoch()));
}

TEST(WallTimeText, TellsTheDayWhereItIsAnotherOne) {
    const WallTime time = at(9, 8, 7, 6);
    EXPECT_EQ(dayAndTimeText(time), QStringLiteral("2026-03-09 08:07:06"));
    EXPECT_EQ(secondText(time, at(9, 23, 59, 59)), QStringLiteral("08:07:06"));
    EXPECT_EQ(minuteText(time, at(9, 0, 0, 0)), QStringLiteral("08:07"));
    for (const WallTime now : {at(8, 23, 59, 59), at(10, 0, 0, 0)}) {
        EXPECT_EQ(secondText(time, now), QStringLiteral("2026-03-09 08:07:06"));
        EXPECT_EQ(minuteText(time, now), QStringLiteral("08:07 on 2026-03-09"));
    }
}

}  // namespace
}  // namespace tessavo::test
