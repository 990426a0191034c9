#include "app/demo_run.h"

#include <QAbstractButton>
#include <QEventLoop>
#include <QTimer>
#include <chrono>

#include "app/comm_link.h"
#include "app/tessavo_view.h"

namespace tessavo {

namespace {

using State = LiveWorker::State;

constexpr std::chrono::seconds patience{30};

}  // namespace

DemoRun sendCurrentSet(CTessavoView& view, CommLink& link) {
    QEventLoop loop;
    qulonglong sent = 0;
    qulonglong blocks = 0;
    State state = State::idle;
    QObject::connect(&link, &CommLink::blockSent, &loop, [&](LineUser, qulonglong done, qulonglong all) {
        sent = done;
        blocks = all;
    });
    QObject::connect(&link, &CommLink::workerState, &loop, [&](State now) {
        state = now;
        if (now != State::idle && now != State::sending) {
            loop.quit();
        }
    });
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    view.findChild<QAbstractButton*>(QStringLiteral("id%1").arg(view_id::eqMode))->click();
    const QString port = QString::fromStdString(link.portName());
    loop.exec();
    if (state != State::confirmed) {
        return {QStringLiteral("%1 did not confirm what Live Mode sent").arg(port), {}};
    }
    return {{},
            QStringLiteral("Live Mode sent the image of the current set to %1 (%2 of %3 blocks); the target "
                           "has confirmed it.")
                .arg(port)
                .arg(sent)
                .arg(blocks)};
}

}  // namespace tessavo
