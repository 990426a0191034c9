#include "comm/page/communication.h"

#include <QDir>
#include <QLabel>
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
#include "controls/skin_group_box.h"
#include "controls/theme.h"
#include "controls/transfer_line.h"

namespace tessavo {

namespace {

constexpr int targetSetButtons = 5;
constexpr QRect artPlace{784, 396, 200, 192};
constexpr FileFilter logFilter{"Text files (*.txt)|*.txt||", "txt"};
constexpr std::string_view logNotSavedText = "The log could not be saved.";

QString latin(std::string_view text) {
    return QLatin1String(text.data(), static_cast<qsizetype>(text.size()));
}

std::filesystem::path pathOf(const QString& text) {
    return {text.toStdU16String()};
}

QString textOf(const std::filesystem::path& path) {
    return QDir::toNativeSeparators(QString::fromStdU16String(path.u16string()));
}

// A device may call itself what it likes; the toolkit must not take that for markup.
QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace

CCommunication::CCommunication(Parts parts, QWidget* parent)
    : CTabDialog(parent),
      parts_(std::move(parts)),
      commands_(parts_.tuning, parts_.transfers, parts_.boxes, readFileStart,
                [this](const CommandReport& report) { Q_EMIT commandReported(report); }) {
    connect(&parts_.transfers, &ForegroundTransfers::started, this, &CCommunication::exchangeStarted);
    connect(&parts_.transfers, &ForegroundTransfers::ended, this, &CCommunication::exchangeEnded);
    OnInitDialog();
}

CCommunication::~CCommunication() = default;

void CCommunication::OnInitDialog() {
    makeSetGroup("Save Set In RAM To", comm_id::saveGroup, 0, comm_id::firstSave,
                 [this](std::uint8_t set) { SaveSetToRam(set); });
    makeSetGroup("Load Set from RAM", comm_id::loadGroup, 392, comm_id::firstLoad,
                 [this](std::uint8_t set) { LoadSetFromRam(set); });
    makeSoftwareGroup();
    makeInterfaceGroup();
    makeVersionGroup();
    makeLogGroup();
    FillPortList();
    const int last = ports_->findText(QString::fromStdString(parts_.lastPort));
    if (!parts_.lastPort.empty() && last > 0) {
        ports_->setCurrentIndex(last);
        selectPort(last);
    }
}

void CCommunication::makeSetGroup(const char* title, int groupId, int left, int firstId,
                                  const std::function<void(std::uint8_t)>& command) {
    constexpr int top = 38;
    constexpr int height = 28;
    auto* group = new SkinGroupBox(QLatin1String(title), groupId, this);
    group->setGeometry(left, 8, 382, 68);
    for (int set = 1; set <= targetSetButtons + 1; ++set) {
        const bool isDefault = set > targetSetButtons;
        const auto number = static_cast<std::uint8_t>(isDefault ? 0 : set);
        const QString caption = isDefault ? QStringLiteral("Default Set") : QStringLiteral("Set %1").arg(set);
        auto* button = new CxSkinButton(caption, firstId + number, this);
        button->setGeometry(left + 12 + 52 * (set - 1), top, isDefault ? 98 : 46, height);
        button->setAccessibleName(QLatin1String(title) + QStringLiteral(": ") + caption);
        connect(button, &QAbstractButton::clicked, this, [command, number] { command(number); });
    }
}

void CCommunication::makeSoftwareGroup() {
    (new SkinGroupBox(QStringLiteral("Software Update"), comm_id::softwareGroup, this))
        ->setGeometry(0, 86, 774, 90);
    imagePath_ = addField("Software image file", comm_id::imagePath, {12, 116, 470, 28});
    addButton("Select Image File", comm_id::selectImage, {492, 116, 130, 28}, [this] { SelectImageFile(); });
    flash_ = addButton("Flash File", comm_id::flashFile, {632, 116, 130, 28}, [this] { FlashFile(); });
    line_ = new TransferLine(comm_id::transferLine, this);
    line_->setLineLength(470);
    line_->setGeometry(12, 150, 750, 16);
}

void CCommunication::makeInterfaceGroup() {
    (new SkinGroupBox(QStringLiteral("Communication Interface"), comm_id::interfaceGroup, this))
        ->setGeometry(784, 8, 200, 168);
    addLabel("COM Port", {796, 46, 62, 28});
    ports_ = new SkinComboBox(comm_id::portList, this);
    ports_->setGeometry(864, 46, 108, 28);
    ports_->setAccessibleName(QStringLiteral("COM Port"));
    connect(ports_, &QComboBox::activated, this, [this](int index) {
        selectPort(index);
        if (parts_.rememberPort) {
            parts_.rememberPort(portName_);
        }
    });
    addButton("Refresh", comm_id::refresh, {796, 138, 176, 28}, [this] { FillPortList(); });
}

void CCommunication::makeVersionGroup() {
    (new SkinGroupBox(QStringLiteral("Version Information"), comm_id::versionGroup, this))
        ->setGeometry(784, 186, 200, 200);
    addLabel("Hardware Version", {796, 222, 176, 16});
    hardware_ = addField("Hardware Version", comm_id::hardwareVersion, {796, 242, 176, 26});
    addLabel("Software Version", {796, 284, 176, 16});
    software_ = addField("Software Version", comm_id::softwareVersion, {796, 304, 176, 26});
    for (QWidget* field : {static_cast<QWidget*>(hardware_), static_cast<QWidget*>(software_)}) {
        // Some fonts draw an x between digits as a multiplication sign; a version is read letter by letter.
        QFont font = field->font();
        font.setStyleStrategy(QFont::PreferNoShaping);
        field->setFont(font);
    }
    addButton("Update", comm_id::update, {796, 348, 176, 28}, [this] { ReadVersions(); });
}

void CCommunication::makeLogGroup() {
    (new SkinGroupBox(QStringLiteral("Communication Log"), comm_id::logGroup, this))
        ->setGeometry(0, 186, 774, 402);
    log_ = new LogView(comm_id::log, this);
    log_->setGeometry(12, 216, 750, 326);
    connect(log_, &LogView::saveAsked, this, &CCommunication::saveLog);
    showStatus_ = addFilter("Show Status Message", comm_id::showStatus, {9, 550, 157, 28});
    showErrors_ = addFilter("Show Error Message", comm_id::showErrors, {167, 550, 149, 28});
    showSent_ = addFilter("Show TX Message", comm_id::showSent, {317, 550, 135, 28});
    showReceived_ = addFilter("Show RX Message", comm_id::showReceived, {453, 550, 137, 28});
    addButton("Clear Communication Log", comm_id::clearLog, {592, 550, 170, 28}, [this] { log_->clear(); });
}

CxSkinButton* CCommunication::addButton(const char* caption, int id, const QRect& place,
                                        const std::function<void()>& command) {
    auto* button = new CxSkinButton(QLatin1String(caption), id, this);
    button->setGeometry(place);
    connect(button, &QAbstractButton::clicked, this, command);
    return button;
}

SkinCheckBox* CCommunication::addFilter(const char* caption, int id, const QRect& place) {
    auto* filter = new SkinCheckBox(QLatin1String(caption), id, this);
    filter->setGeometry(place);
    filter->setChecked(true);
    return filter;
}

QLabel* CCommunication::addLabel(const char* text, const QRect& place) {
    auto* label = new QLabel(QLatin1String(text), this);
    label->setGeometry(place);
    label->setFont(theme::font(12));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(theme::text));
    label->setPalette(palette);
    return label;
}

CReadOnlyEdit* CCommunication::addField(const char* name, int id, const QRect& place) {
    auto* field = new CReadOnlyEdit(id, this);
    field->setGeometry(place);
    field->setAccessibleName(QLatin1String(name));
    return field;
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
    const std::array<const SkinCheckBox*, 4> filters{showSent_, showReceived_, showStatus_, showErrors_};
    const auto index = static_cast<std::size_t>(kind);
    if (index < filters.size()) {
        // A line that its filter keeps back leaves an empty one: the log shows that something happened there.
        log_->append(kind, filters[index]->isChecked() ? latin(logPrefix(kind)) + text : QString());
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
    line_->showProgress(static_cast<int>(done), static_cast<int>(all), elapsed);
}

void CCommunication::exchangeStarted(std::size_t blocks) {
    blocksToSend_ = blocks > 1 ? blocks : 0;
    if (blocksToSend_ > 0) {
        line_->showProgress(0, static_cast<int>(blocks), Milliseconds{0});
    } else {
        line_->showIdle();
    }
}

void CCommunication::exchangeEnded(bool success) {
    if (blocksToSend_ > 0) {
        if (success) {
            line_->showDone();
        } else {
            line_->showStopped();
        }
    }
    blocksToSend_ = 0;
}

void CCommunication::FillPortList() {
    ports_->clear();
    int index = 0;
    for (const std::string& name : parts_.listPorts()) {
        ports_->addItem(QString::fromStdString(name), index);
        if (parts_.describePort) {
            const QString device = QString::fromStdString(parts_.describePort(name));
            const QString told = device.isEmpty() ? QStringLiteral("nothing known of its device") : device;
            ports_->setItemData(index, plainToolTip(told), Qt::ToolTipRole);
            ports_->setItemData(index, told, Qt::AccessibleDescriptionRole);
        }
        ++index;
    }
    ports_->setCurrentIndex(ports_->count() > 0 ? 0 : -1);
    selectPort(0);
}

void CCommunication::selectPort(int index) {
    portName_ = ports_->itemText(index).toStdString();
    ports_->setToolTip(ports_->itemData(index, Qt::ToolTipRole).toString());
    ports_->setAccessibleDescription(ports_->itemData(index, Qt::AccessibleDescriptionRole).toString());
    parts_.usePort(portName_);
}

void CCommunication::SaveSetToRam(std::uint8_t targetSet) {
    commands_.SaveSetToRam(targetSet);
}

void CCommunication::LoadSetFromRam(std::uint8_t targetSet) {
    commands_.LoadSetFromRam(targetSet, parts_.refreshPages);
}

void CCommunication::ReadVersions() {
    if (const auto versions = commands_.ReadVersions()) {
        hardware_->setText(QString::fromStdString(versionText(versions->hardware)));
        software_->setText(QString::fromStdString(versionText(versions->software)));
        versionsKnown_ = true;
    }
}

void CCommunication::SelectImageFile() {
    if (const auto path = TargetCommands::SelectImageFile(parts_.dialogs)) {
        imagePath_->setText(textOf(*path));
        imagePath_->setToolTip(imagePath_->text());
    }
}

void CCommunication::FlashFile() {
    const bool focused = flash_->hasFocus();
    if (focused) {
        // A disabled button hands the focus on, and keys pressed later would choose another port.
        setFocus();
    }
    flash_->setEnabled(false);
    commands_.FlashFile(pathOf(imagePath_->text()));
    flash_->setEnabled(true);
    if (focused) {
        flash_->setFocus();
    }
}

void CCommunication::saveLog() {
    const auto path = parts_.dialogs.askSavePath(logFilter);
    parts_.dialogs.resetLocale();
    if (!path || path->empty()) {
        return;
    }
    QSaveFile file(textOf(*path));
    const QByteArray text = log_->allText().toUtf8();
    const bool written =
        file.open(QIODevice::WriteOnly | QIODevice::Text) && file.write(text) == text.size() && file.commit();
    if (!written) {
        parts_.boxes.showError(logNotSavedText);
    }
}

}  // namespace tessavo
