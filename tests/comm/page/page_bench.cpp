#include "comm/page/page_bench.h"

#include <QTest>
#include <cstring>

namespace tessavo::test {

bool passEventsUntil(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 60000);
}

PageBench::PageBench()
    : boxes([this](const QString& text, BoxIcon, BoxButtons buttons) {
          shown.push_back(text.toStdString());
          return answerWhenClosed(buttons);
      }) {
    window.resize(984, 596);
    engine = std::make_unique<TransferEngine>(TransferEngine::Dependencies{
        .makeLine =
            [this](const std::string& /*portName*/) {
                return std::make_unique<DeviceLine>(*device, clock, portOpens);
            },
        .clock = clock,
        .log = *this,
        .boxes = boxes,
        .lock = lock,
        .portName = [this] { return page->portName(); },
        .progress = [this](std::size_t done, std::size_t all) { page->blockSent(done, all, clock.now()); }});
    transfers = std::make_unique<ForegroundTransfers>(*engine);
    plugIn({});
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

PageBench::~PageBench() {
    delete page;
}

void PageBench::plugIn(const std::vector<std::string>& faults) {
    exchangeTarget(faults);
    makePage();
}

void PageBench::exchangeTarget(const std::vector<std::string>& faults) {
    FaultPlan plan;
    for (const std::string& fault : faults) {
        EXPECT_EQ(addFault(plan, fault), "");
    }
    const TargetMemory kept = device ? device->memory() : TargetMemory::holding(factoryImage());
    device = std::make_unique<TargetDevice>(kept, TargetDevice::Options{.faults = std::move(plan)});
}

void PageBench::makePage() {
    delete page;
    page =
        new CCommunication({.tuning = tuning.state,
                            .transfers = *transfers,
                            .boxes = boxes,
                            .dialogs = dialogs,
                            .listPorts = [this] { return portsThere; },
                            .usePort = [this](const std::string& name) { used.push_back(name); },
                            .rememberPort = [this](const std::string& name) { remembered.push_back(name); },
                            .refreshPages = [this] { ++refreshes; },
                            .lastPort = lastPort,
                            .describePort = [this](const std::string& name) { return descriptions[name]; }},
                           &window);
    page->resize(984, 596);
    page->show();
}

void PageBench::log(LogKind kind, std::string_view text) {
    page->Log(kind, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void PageBench::click(QWidget& target) {
    QTest::mouseClick(&target, Qt::LeftButton);
}

void PageBench::choosePort(int index) {
    ports().setFocus();
    QTest::keyClick(&ports(), Qt::Key_Home);
    for (int i = 0; i < index; ++i) {
        QTest::keyClick(&ports(), Qt::Key_Down);
    }
    ASSERT_EQ(ports().currentIndex(), index);
}

void PageBench::goLive() {
    tuning.state.setLiveMode(true);
    LiveWorker worker(tuning.state, *engine, clock, boxes);
    worker.step();
}

LogLines PageBench::logLines() {
    LogLines lines;
    for (int row = 0; row < log().lineCount(); ++row) {
        lines.push_back(log().line(row).toStdString());
    }
    return lines;
}

ImageBytes PageBench::imageBytes() const {
    ImageBytes bytes;
    std::memcpy(bytes.data(), &tuning.state.image(), bytes.size());
    return bytes;
}

std::filesystem::path PageBench::imageFile(const std::string& name, std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>((i * 7 + i / 1024) & 0xFF);
    }
    writeFile(folder / name, bytes);
    return folder / name;
}

}  // namespace tessavo::test
