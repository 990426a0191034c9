#include "app/wall_time_text.h"

#include <QDateTime>
#include <chrono>

namespace tessavo {

namespace {

QDateTime local(WallTime time) {
    using std::chrono::milliseconds;
    const auto sinceEpoch = std::chrono::duration_cast<milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}

bool areOnOneDay(WallTime one, WallTime other) {
    return local(one).date() == local(other).date();
}

}  // namespace

QString dayAndTimeText(WallTime time) {
    return local(time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString secondText(WallTime time, WallTime now) {
    return areOnOneDay(time, now) ? local(time).toString(QStringLiteral("HH:mm:ss")) : dayAndTimeText(time);
}

QString minuteText(WallTime time, WallTime now) {
    return local(time).toString(areOnOneDay(time, now) ? QStringLiteral("HH:mm")
                                                       : QStringLiteral("HH:mm 'on' yyyy-MM-dd"));
}

}  // namespace tessavo
