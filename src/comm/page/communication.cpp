#include "comm/page/communication.h"

#include <QDir>
#include <QPainter>
#include <QSaveFile>
#include <QTextDocument>
#include <QThread>
#include <algorithm>
#include <array>

#include "comm/page/log_view.h"
#include "comm/page/page_art.h"
#include "controls/read_only_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/transfer_line.h"

namespace tessavo {

namespace {

constexpr QRect artPlace{784, 396, 200, 192};
constexpr FileFilter logFilter{"Text files (*.txt)|*.txt||", "txt"};
constexpr std::string_view logNotSavedText = "The log could not be saved.";

// By kind of a line.
constexpr std::array filters{comm_id::showSent, comm_id::showReceived, comm_id::showStatus,
                             comm_id::showErrors};

std::filesystem::path pathOf(const QString& text) {
    return {text.toStdU16String()};
}

QString pathText(const std::filesystem::path& path) {
    return QDir::toNativeSeparators(QString::fromStdU16String(path.u16string()));
}

// A device may call itself what it likes; the toolkit must not take that for markup.
QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace

CCommunication::CCommunication(Dependencies dependencies, QWidget* parent)
    : CTabDialog(parent),
      dependencies_(std::move(dependencies)),
      form_(*this),
      commands_(dependencies_.tuning, dependencies_.transfers, dependencies_.boxes, readFileStart,
                [this](const CommandReport& report) { Q_EMIT commandReported(report); }) {
    connect(&dependencies_.transfers, &ForegroundTransfers::started, this, &CCommunication::exchangeStarted);
    connect(&dependencies_.transfers, &ForegroundTransfers::ended, this, &CCommunication::exchangeEnded);
    OnInitDialog();
}

CCommunication::~CCommunication() = default;

void CCommunication::OnInitDialog() {
    form_.build(communicationRows(), [](const ControlRow& row, QWidget& parent) -> QWidget* {
        if (row.identifier == comm_id::log) {
            return new LogView(row.identifier, &parent);
        }
        return new TransferLine(row.identifier, &parent);
    });
    for (std::uint8_t set = 0; set <= setCount; ++set) {
        form_.onClick(comm_id::firstSave + set, [this, set] { saveSet(set); });
        form_.onClick(comm_id::firstLoad + set,
                      [this, set] { commands_.LoadSetFromRam(set, dependencies_.refreshPages); });
    }
    form_.onClick(comm_id::selectImage, [this] { SelectImageFile(); });
    form_.onClick(comm_id::flashFile, [this] { FlashFile(); });
    form_.onClick(comm_id::backUpTarget, [this] { Q_EMIT backUpAsked(); });
    form_.control<CxSkinButton>(comm_id::backUpTarget).hide();
    form_.onClick(comm_id::refresh, [this] { FillPortList(); });
    form_.onClick(comm_id::update, [this] { ReadVersions(); });
    form_.onClick(comm_id::clearLog, [this] { log().clear(); });
    connect(&log(), &LogView::saveAsked, this, &CCommunication::saveLog);
    connect(&ports(), &QComboBox::activated, this, [this](int index) {
        selectPort(index);
        if (dependencies_.rememberPort) {
            dependencies_.rememberPort(portName_);
        }
    });
    line().setLineLength(form_.control<CReadOnlyEdit>(comm_id::imagePath).width());
    for (const int filter : filters) {
        form_.control<SkinCheckBox>(filter).setChecked(true);
    }
    for (const int version : {comm_id::hardwareVersion, comm_id::softwareVersion}) {
        // Some fonts draw an x between digits as a multiplication sign; a version is read letter by letter.
        auto& field = form_.control<CReadOnlyEdit>(version);
        QFont font = field.font();
        font.setStyleStrategy(QFont::PreferNoShaping);
        field.setFont(font);
    }
    FillPortList();
    const int last = ports().findText(QString::fromStdString(dependencies_.lastPort));
    if (!dependencies_.lastPort.empty() && last > 0) {
        ports().setCurrentIndex(last);
        selectPort(last);
    }
}

SkinComboBox& CCommunication::ports() const {
    return form_.control<SkinComboBox>(comm_id::portList);
}

LogView& CCommunication::log() const {
    return form_.control<LogView>(comm_id::log);
}

TransferLine& CCommunication::line() const {
    return form_.control<TransferLine>(comm_id::transferLine);
}

void CCommunication::paintEvent(QPaintEvent* event) {
    CTabDialog::paintEvent(event);
    QPainter painter(this);
    const double scale = painter.device()->devicePixelRatioF();
    if (art_.isNull() || art_.devicePixelRatio() != scale) {
        art_ = pageArt(artPlace.size(), scale);
    }
    painter.drawPixmap(artPlace.topLeft(), art_);
}

void CCommunication::Log(LogKind kind, const QString& text) {
    if (QThread::currentThread() != thread()) {
        calls_.call([this, kind, text] { Log(kind, text); });
        return;
    }
    const auto index = static_cast<std::size_t>(kind);
    if (index < filters.size()) {
        // A line that its filter keeps back leaves an empty one: the log shows that something happened there.
        const bool isShown = form_.control<SkinCheckBox>(filters[index]).isChecked();
        log().append(kind, isShown ? textOf(logPrefix(kind)) + text : QString());
    }
}

void CCommunication::blockSent(std::size_t done, std::size_t all, Milliseconds at) {
    if (QThread::currentThread() != thread()) {
        calls_.call([=, this] { blockSent(done, all, at); });
        return;
    }
    if (all < 2 || blocksToSend_ == 0) {
        return;
    }
    if (done == 1) {
        firstBlockAt_ = at;
    }
    // Connecting takes its own time: the mean counts from the first block's end.
    const auto blocks = static_cast<Milliseconds::rep>(done);
    const Milliseconds elapsed = done < 2 ? Milliseconds{0} : (at - firstBlockAt_) * blocks / (blocks - 1);
    line().showProgress(static_cast<int>(done), static_cast<int>(all), elapsed);
}

void CCommunication::exchangeStarted(std::size_t blocks) {
    blocksToSend_ = blocks > 1 ? blocks : 0;
    if (blocksToSend_ > 0) {
        line().showProgress(0, static_cast<int>(blocks), Milliseconds{0});
    } else {
        line().showIdle();
    }
}

void CCommunication::exchangeEnded(bool success) {
    if (blocksToSend_ > 0) {
        if (success) {
            line().showDone();
        } else {
            line().showStopped();
        }
    }
    blocksToSend_ = 0;
}

void CCommunication::FillPortList() {
    ports().clear();
    int index = 0;
    for (const std::string& name : dependencies_.listPorts()) {
        ports().addItem(QString::fromStdString(name), index);
        if (dependencies_.describePort) {
            const QString device = QString::fromStdString(dependencies_.describePort(name));
            const QString told = device.isEmpty() ? QStringLiteral("nothing known of its device") : device;
            ports().setItemData(index, plainToolTip(told), Qt::ToolTipRole);
            ports().setItemData(index, told, Qt::AccessibleDescriptionRole);
        }
        ++index;
    }
    ports().setCurrentIndex(ports().count() > 0 ? 0 : -1);
    selectPort(0);
}

void CCommunication::selectPort(int index) {
    portName_ = ports().itemText(index).toStdString();
    ports().setToolTip(ports().itemData(index, Qt::ToolTipRole).toString());
    ports().setAccessibleDescription(ports().itemData(index, Qt::AccessibleDescriptionRole).toString());
    dependencies_.usePort(portName_);
}

void CCommunication::saveSet(std::uint8_t targetSet) {
    if (!dependencies_.prepareSave || dependencies_.prepareSave()) {
        commands_.SaveSetToRam(targetSet);
    }
}

void CCommunication::ReadVersions() {
    if (const auto versions = commands_.ReadVersions()) {
        const auto showVersion = [this](int field, std::uint32_t version) {
            form_.control<CReadOnlyEdit>(field).setText(QString::fromStdString(versionText(version)));
        };
        showVersion(comm_id::hardwareVersion, versions->hardware);
        showVersion(comm_id::softwareVersion, versions->software);
        versionsKnown_ = true;
        Q_EMIT versionsRead(*versions);
    }
}

void CCommunication::SelectImageFile() {
    if (const auto path = TargetCommands::SelectImageFile(dependencies_.dialogs)) {
        auto& field = form_.control<CReadOnlyEdit>(comm_id::imagePath);
        field.setText(pathText(*path));
        field.setToolTip(field.text());
    }
}

void CCommunication::FlashFile() {
    auto& button = form_.control<CxSkinButton>(comm_id::flashFile);
    const bool focused = button.hasFocus();
    if (focused) {
        // A disabled button hands the focus on, and keys pressed later would choose another port.
        setFocus();
    }
    button.setEnabled(false);
    commands_.FlashFile(pathOf(form_.control<CReadOnlyEdit>(comm_id::imagePath).text()));
    button.setEnabled(true);
    if (focused) {
        button.setFocus();
    }
}

void CCommunication::offerBackUp(bool offered) {
    auto& button = form_.control<CxSkinButton>(comm_id::backUpTarget);
    if (!offered && button.hasFocus()) {
        // Otherwise the focus would go to whatever stands behind it, and keys pressed later with it.
        setFocus();
    }
    button.setVisible(offered);
}

void CCommunication::saveLog() {
    const auto path = dependencies_.dialogs.askSavePath(logFilter);
    dependencies_.dialogs.resetLocale();
    if (!path || path->empty()) {
        return;
    }
    QSaveFile file(pathText(*path));
    const QByteArray text = log().allText().toUtf8();
    const bool written =
        file.open(QIODevice::WriteOnly | QIODevice::Text) && file.write(text) == text.size() && file.commit();
    if (!written) {
        dependencies_.boxes.showError(logNotSavedText);
    }
}

}  // namespace tessavo
