#include "app/tessavo_app.h"

#include <QFontMetrics>
#include <QIcon>
#include <QScreen>
#include <array>
#include <cstring>
#include <iostream>
#include <istream>
#include <ostream>

#include "app/page_factory.h"
#include "app/tessavo_view.h"
#include "comm/page/communication.h"
#include "comm/port_device.h"
#include "comm/port_list.h"
#include "controls/application_theme.h"
#include "controls/skin_message_box.h"
#include "controls/theme.h"

namespace tessavo {

CTessavoApp::CTessavoApp(int& argc, char** argv, std::unique_ptr<Profile> profile, Attendance attendance,
                         const std::function<bool(CommLink&)>& startWorker)
    : application_(argc, argv),
      profile_(profile ? std::move(profile) : std::make_unique<Profile>()),
      boxes_([this](const QString& text, BoxIcon icon, BoxButtons buttons) {
          return present(text, icon, buttons);
      }),
      tuning_(boxes_),
      attendance_(attendance),
      link_(tuning_, boxes_, demo_->lineMaker()),
      dialogs_(nullptr, *profile_),
      chartHost_(boxes_, dialogs_) {
    QApplication::setApplicationName(QStringLiteral("tessavo"));
    // No name to display: the toolkit would write it behind the title of every window.
    QApplication::setQuitOnLastWindowClosed(false);
    applyTheme();
    if (!startWorker(link_)) {
        boxes_.showError("Couldn't create progressThread!");
    }
}

CTessavoApp::~CTessavoApp() {
    // Threads first: they use what is destroyed after them.
    boxes_.stopAnswering();
    link_.shutDown();
}

QString CTessavoApp::unusableDisplay() {
    // Below that the toolkit paints nothing.
    constexpr int leastDepth = 15;
    if (const QScreen* screen = QGuiApplication::primaryScreen();
        screen != nullptr && screen->depth() < leastDepth) {
        return QStringLiteral("the display has too few colours (%1 bits for each point, %2 are needed).")
            .arg(screen->depth())
            .arg(leastDepth);
    }
    if (!QFontMetrics(theme::font(12)).inFont(QLatin1Char('A'))) {
        return QStringLiteral(
            "there is no font to write with. Install one; on Debian and Ubuntu: "
            "sudo apt install fonts-dejavu-core");
    }
    return {};
}

bool CTessavoApp::InitInstance(const StartOptions& options) {
    tuning_.start();
    // Those of a start before this one.
    frame_.reset();
    history_.reset();
    history_ = std::make_unique<History>(tuning_);
    if (options.demo) {
        startDemo();
    }
    const std::string firstPort = options.demo ? std::string() : profile_->lastPort().toStdString();
    CMainFrame::Dependencies dependencies{
        tuning_,
        *history_,
        boxes_,
        dialogs_,
        *profile_,
        link_,
        chartHost_,
        pageFactory({tuning_, boxes_, dialogs_, *profile_, link_, [this] { return portList(); }, firstPort,
                     [this] { frame_->view().refreshPages(); }, demo_->portName(),
                     [](const std::string& port) { return portDevice(port).description; }})};
    dependencies.dataFolder = options.dataFolder;
    frame_ = std::make_unique<CMainFrame>(std::move(dependencies));
    // Asked for when the window closes: the page is made after the window has been painted.
    frame_->setNothingToLose([this] {
        const auto* communication = qobject_cast<CCommunication*>(
            frame_->view().pages()[static_cast<std::size_t>(Page::communication)]);
        return communication->nothingToLose();
    });
    frame_->restoreWindowPlacement();
    // Reading its files would keep the window waiting.
    QObject::connect(&frame_->view(), &CTessavoView::firstPainted, &application_, [] {
        QIcon icon;
        for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
            icon.addFile(QStringLiteral(":/icons/tessavo-%1.png").arg(size));
        }
        QApplication::setWindowIcon(icon);
    });
    if (!options.file.isEmpty() && !frame_->openFile(options.file)) {
        return false;
    }
    frame_->show();
    return true;
}

int CTessavoApp::run() {
    const int code = QApplication::exec();
    // A port that a person has chosen outlasts starts without it. The simulated target is gone with the
    // program.
    const std::string port = link_.portName();
    if (profile_->lastPort().isEmpty() && demo_->portName().empty() && !port.empty()) {
        profile_->setLastPort(QString::fromStdString(port));
    }
    if (const QString trouble = profile_->save(); !trouble.isEmpty()) {
        std::cerr << "tessavo: " << trouble.toStdString() << '\n';
    }
    return code;
}

void CTessavoApp::startDemo() {
    if (!demo_->start()) {
        boxes_.showError("The simulated target could not be started.");
        return;
    }
    link_.setPortName(demo_->portName());
}

std::vector<std::string> CTessavoApp::portList() const {
    std::vector<std::string> ports = listPorts();
    if (const std::string demo = demo_->portName(); !demo.empty()) {
        // The simulated target stands first, whatever the machine has.
        std::erase(ports, demo);
        ports.insert(ports.begin(), demo);
    }
    return ports;
}

BoxAnswer CTessavoApp::present(const QString& text, BoxIcon icon, BoxButtons buttons) {
    if (attendance_ == Attendance::nobody) {
        std::cerr << "tessavo: " << text.toStdString() << '\n';
        return answerWhenClosed(buttons);
    }
    using Box = SkinMessageBox;
    const Box::Buttons choice = buttons == BoxButtons::ok         ? Box::Buttons::ok
                                : buttons == BoxButtons::okCancel ? Box::Buttons::okCancel
                                : buttons == BoxButtons::yesNo    ? Box::Buttons::yesNo
                                                                  : Box::Buttons::yesNoCancel;
    const Box::Icon picture = icon == BoxIcon::error ? Box::Icon::stop : Box::Icon::none;
    // After a dialog of its own has closed no window is active for a moment.
    QWidget* const frame = frame_ && frame_->isVisible() ? frame_.get() : nullptr;
    QWidget* const owner = QApplication::activeWindow() != nullptr ? QApplication::activeWindow() : frame;
    Box box(QString::fromUtf8(applicationTitle.data(), static_cast<qsizetype>(applicationTitle.size())), text,
            picture, choice, owner);
    switch (box.ask()) {
        case Box::Answer::ok:
            return BoxAnswer::ok;
        case Box::Answer::yes:
            return BoxAnswer::yes;
        case Box::Answer::no:
            return BoxAnswer::no;
        case Box::Answer::cancel:
            break;
    }
    return answerWhenClosed(buttons);
}

bool CTessavoApp::serialize(std::ostream& archive) const {
    archive.put(applicationFlag_ ? '\1' : '\0');
    archive.write(reinterpret_cast<const char*>(&tuning_.store()), parameterStoreSize);
    return archive.good();
}

bool CTessavoApp::serialize(std::istream& archive) {
    const int flag = archive.get();
    std::array<char, parameterStoreSize> bytes{};
    archive.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!archive) {
        return false;
    }
    ParameterStore store;
    std::memcpy(&store, bytes.data(), bytes.size());
    applicationFlag_ = flag != 0;
    tuning_.replaceStore(store);
    return true;
}

}  // namespace tessavo
