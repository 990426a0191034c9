#include "app/comm_link.h"

#include <QMetaType>

namespace tessavo {

CommLink::CommLink(TuningState& tuning, IMessageBox& boxes)
    : engine_({port_, clock_, *this, boxes, transferLock_, [this] { return portName(); },
               [this](std::size_t done, std::size_t all) { emit blockSent(done, all); }}),
      commands_(tuning, engine_, boxes),
      worker_(tuning, engine_, clock_, boxes, [this](LiveWorker::State state) { emit workerState(state); }) {
    qRegisterMetaType<LogKind>();
    qRegisterMetaType<LiveWorker::State>();
}

CommLink::~CommLink() {
    shutDown();
}

bool CommLink::startWorker() {
    return worker_.start();
}

void CommLink::shutDown() {
    clock_.interrupt();
    port_.Cancel();
    worker_.stop();
}

std::string CommLink::portName() const {
    const std::lock_guard guard(portGuard_);
    return portName_;
}

void CommLink::setPortName(const std::string& name) {
    {
        const std::lock_guard guard(portGuard_);
        if (portName_ == name) {
            return;
        }
        portName_ = name;
    }
    emit portNameChanged(QString::fromStdString(name));
}

void CommLink::log(LogKind kind, std::string_view text) {
    emit lineLogged(kind, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace tessavo
