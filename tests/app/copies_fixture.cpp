#include "app/copies_fixture.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <cstring>

#include "app/page_factory.h"
#include "app/status_line.h"
#include "app/ui_file_dialogs.h"
#include "controls/skin_button.h"
#include "params/tuning_snapshot.h"

namespace tessavo::test {

namespace {

/// A port that is there in name only.
class NoLine final : public ILine {
 public:
    std::uint32_t open() override { return serial_result::fileNotFound; }
    std::uint32_t setUp(const LineSettings& /*settings*/) override { return serial_result::fileNotFound; }
    LineRead read(std::span<std::uint8_t> /*bytes*/, Milliseconds /*timeout*/) override {
        return {.result = serial_result::fileNotFound};
    }
    std::uint32_t write(std::span<const std::uint8_t> /*bytes*/, Milliseconds /*timeout*/) override {
        return serial_result::fileNotFound;
    }
    void close() override {}
    void cancel() override {}
};

TargetMemory sixSets() {
    TargetMemory memory = TargetMemory::holding(factoryImage());
    for (std::size_t set = 0; set < memory.sets.size(); ++set) {
        // A byte that no field owns, so that every conversion takes the image.
        memory.sets.at(set).at(parameterImageSize - 1) = static_cast<std::uint8_t>(0x40 + set);
    }
    return memory;
}

}  // namespace

CopiesTest::CopiesTest()
    : profile(std::make_unique<Profile>(textOf(folder / "profile.ini"))),
      boxes([this](const QString& text, BoxIcon icon, BoxButtons buttons) {
          shown.push_back({text.toStdString(), icon, buttons});
          if (answers.empty()) {
              return answerWhenClosed(buttons);
          }
          const BoxAnswer answer = answers.front();
          answers.pop_front();
          return answer;
      }),
      tuning(boxes),
      link(tuning, boxes, [this](const std::string& /*port*/) { return makeLine(); }),
      chartHost(boxes, dialogs) {
    target_ = std::make_unique<InProcessTarget>("inside", sixSets(), TargetDevice::Options{});
    tuning.start();
    tuning.setVolume(-7.5F, true);
    history = std::make_unique<History>(tuning);
    makeFrame();
}

CopiesTest::~CopiesTest() {
    boxes.stopAnswering();
    link.shutDown();
    frame.reset();
}

std::unique_ptr<ILine> CopiesTest::makeLine() {
    if (!plugged_) {
        return std::make_unique<NoLine>();
    }
    const std::lock_guard guard(mutex_);
    const auto fault = faults_.find(++exchanges_);
    const std::string wanted = fault != faults_.end() ? fault->second : std::string();
    // Only what remembers nothing is made anew: a target forgets which image it has confirmed.
    if (wanted != fault_ || hardware != told_) {
        TargetDevice::Options options;
        options.versions.hardware = hardware;
        EXPECT_EQ(wanted.empty() ? std::string() : addFault(options.faults, wanted), "");
        target_ = std::make_unique<InProcessTarget>("inside", target_->memory(), options);
        fault_ = wanted;
        told_ = hardware;
    }
    return std::make_unique<InProcessLine>(*target_);
}

TargetMemory CopiesTest::memory() {
    const std::lock_guard guard(mutex_);
    return target_->memory();
}

void CopiesTest::makeFrame() {
    frame.reset();
    CMainFrame::Dependencies dependencies{
        tuning,
        *history,
        boxes,
        dialogs,
        *profile,
        link,
        chartHost,
        pageFactory({tuning,
                     boxes,
                     dialogs,
                     *profile,
                     link,
                     [] {
                         return std::vector<std::string>{"inside", "another"};
                     },
                     {},
                     [this] { frame->view().refreshPages(); }}),
        {[](const std::string&) { return false; }, [](const std::string&) { return std::string(); }}};
    dependencies.dataFolder = data;
    frame = std::make_unique<CMainFrame>(std::move(dependencies));
    frame->show();
    frame->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    EXPECT_EQ(frame->view().pages().size(), pageCount);
    EXPECT_EQ(link.portName(), "inside");
}

ImageBytes CopiesTest::firstImage(std::size_t set) {
    return sixSets().sets.at(set);
}

ParameterImage CopiesTest::imageOf(const ImageBytes& bytes) {
    ParameterImage image;
    std::memcpy(&image, bytes.data(), sizeof image);
    return image;
}

std::unique_ptr<TuningSnapshot> CopiesTest::state() {
    auto snapshot = std::make_unique<TuningSnapshot>();
    tuning.takeSnapshot(*snapshot);
    return snapshot;
}

void CopiesTest::clickTool(const QString& item) {
    auto* bar = frame->findChild<QMenuBar*>();
    for (QMenu* menu : bar->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) {
        if (menu->title() != QStringLiteral("&Tools")) {
            continue;
        }
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
        ASSERT_TRUE(becomes([&] { return menu->isVisible(); }));
        for (QAction* action : menu->actions()) {
            if (action->text().remove(QLatin1Char('&')) == item) {
                QTest::mouseMove(menu, menu->actionGeometry(action).center());
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                return;
            }
        }
    }
    FAIL() << "no item " << item.toStdString();
}

CxSkinButton& CopiesTest::pageButton(int id) {
    auto* page = frame->view().pages()[static_cast<std::size_t>(Page::communication)];
    return *page->findChild<CxSkinButton*>(QStringLiteral("id%1").arg(id));
}

void CopiesTest::toggleLiveMode() {
    QTest::mouseClick(frame->findChild<CxSkinButton*>(QStringLiteral("id%1").arg(view_id::eqMode)),
                      Qt::LeftButton);
}

void CopiesTest::goLive() {
    ASSERT_TRUE(link.startWorker());
    toggleLiveMode();
    ASSERT_TRUE(becomes([this] { return light() == TargetStatus::Light::confirmed; }));
}

void CopiesTest::whenOpen(const QString& name, const std::function<bool(QDialog&)>& act) {
    auto* timer = new QTimer(frame.get());
    QObject::connect(timer, &QTimer::timeout, frame.get(), [this, timer, name, act] {
        QDialog* open = dialog(name);
        // What it does may open another loop, in which the timer would come again.
        timer->stop();
        if (open != nullptr && act(*open)) {
            timer->deleteLater();
        } else {
            timer->start(2);
        }
    });
    timer->start(2);
}

QDialog* CopiesTest::dialog(const QString& name) const {
    auto* found = frame->findChild<QDialog*>(name);
    return found != nullptr && found->isVisible() ? found : nullptr;
}

QPushButton& CopiesTest::buttonOf(QDialog& dialog, const QString& text) {
    for (QPushButton* each : dialog.findChildren<QPushButton*>()) {
        if (each->text() == text) {
            return *each;
        }
    }
    throw std::logic_error("no button " + text.toStdString());
}

void CopiesTest::click(QDialog& dialog, const QString& text) {
    QPushButton& button = buttonOf(dialog, text);
    EXPECT_TRUE(button.isVisible() && button.isEnabled()) << text.toStdString();
    QTest::mouseClick(&button, Qt::LeftButton);
}

QString CopiesTest::textsOf(const QDialog& dialog) {
    QStringList texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        texts << label->text();
    }
    return texts.join(QLatin1Char('\n'));
}

QString CopiesTest::notice() {
    const Notice* standing = frame->statusLine().noticeLine().standing();
    return standing != nullptr ? standing->text : QString();
}

std::vector<std::string> CopiesTest::shownTexts() const {
    std::vector<std::string> texts;
    for (const ShownBox& box : shown) {
        texts.push_back(box.text);
    }
    return texts;
}

bool CopiesTest::becomes(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 30000);
}

}  // namespace tessavo::test
