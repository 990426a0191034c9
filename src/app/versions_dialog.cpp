#include "app/versions_dialog.h"

#include <QAccessible>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/ui_file_dialogs.h"
#include "app/wall_time_text.h"
#include "controls/color_control.h"
#include "controls/column_list.h"
#include "controls/screen_room.h"
#include "controls/skin_button.h"
#include "controls/theme.h"
#include "history/file_history.h"
#include "params/settings_commands.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr QSize usualSize(760, 420);
constexpr int rowHeight = 24;
constexpr int nameWidth = 180;
constexpr int timeWidth = 150;
constexpr int sizeWidth = 110;

enum Column { nameColumn, folderColumn, timeColumn, sizeColumn };

QString nameOf(const KeptVersion& version) {
    return version.path.empty() ? QStringLiteral("no longer known") : textOf(version.path.filename());
}

const FileFilter& filterFor(FileKind kind) {
    static constexpr FileFilter notesFilter{"Tessavo notes (*.json)|*.json||", "json"};
    return kind == FileKind::settings ? settingsFilter : kind == FileKind::image ? binaryFilter : notesFilter;
}

QString troubleText(BroughtBack result, const QString& name) {
    switch (result) {
        case BroughtBack::notKept:
            return QStringLiteral("Not brought back: what %1 holds now could not be kept.").arg(name);
        case BroughtBack::notWritten:
            return QStringLiteral("%1 could not be written. What it held is in the list.").arg(name);
        case BroughtBack::unknown:
        case BroughtBack::damaged:
        default:
            return QStringLiteral("This version is gone or damaged.");
    }
}

}  // namespace

VersionsDialog::VersionsDialog(FileHistory& history, IFileDialogs& dialogs, QWidget* parent)
    : CDialogSK(parent), history_(history), dialogs_(dialogs) {
    setObjectName(QStringLiteral("versions"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Earlier Versions"));
    auto* const body = new QVBoxLayout(this);
    body->setContentsMargins(12, 12, 12, 12);
    body->setSpacing(10);
    makeList();
    makeFoot();
    resize(usualSize.boundedTo(roomOnScreen(parent)));
    fill({});
    if (versions_.empty()) {
        tell(QStringLiteral("No file has been written over yet."), false);
    }
}

void VersionsDialog::makeList() {
    list_ = new QTreeWidget(this);
    list_->setAccessibleName(windowTitle());
    list_->setStyleSheet(columnListSheet());
    list_->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Folder"), QStringLiteral("Written over"),
                            QStringLiteral("Size")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setTabKeyNavigation(false);
    QHeaderView& head = *list_->header();
    head.setStretchLastSection(false);
    head.setSectionsMovable(false);
    head.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    list_->headerItem()->setTextAlignment(sizeColumn, Qt::AlignRight | Qt::AlignVCenter);
    head.setSectionResizeMode(folderColumn, QHeaderView::Stretch);
    head.resizeSection(nameColumn, nameWidth);
    head.resizeSection(timeColumn, timeWidth);
    head.resizeSection(sizeColumn, sizeWidth);
    layout()->addWidget(list_);
    connect(list_, &QTreeWidget::currentItemChanged, this, &VersionsDialog::showChoice);
    connect(list_, &QTreeWidget::itemDoubleClicked, this, &VersionsDialog::bringBack);
}

void VersionsDialog::makeFoot() {
    message_ = makeLabel({}, this);
    message_->setWordWrap(true);
    bringBack_ = makeButton(QStringLiteral("Bring Back"), this);
    open_ = makeButton(QStringLiteral("Open"), this);
    auto* const close = makeButton(QStringLiteral("Close"), this);
    bringBack_->setAccented(true);
    bringBack_->setDefault(true);
    bringBack_->setToolTip(QStringLiteral("The file holds this again; what it holds now is kept"));
    open_->setToolTip(QStringLiteral("Its five sets replace yours; no file is touched"));
    connect(bringBack_, &QPushButton::clicked, this, &VersionsDialog::bringBack);
    connect(open_, &QPushButton::clicked, this, &VersionsDialog::open);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    // Enter presses the button that has the focus.
    for (CxSkinButton* const button : {bringBack_, open_, close}) {
        button->setAutoDefault(true);
    }
    auto* const foot = new QHBoxLayout;
    foot->setSpacing(8);
    foot->addWidget(message_, 1);
    foot->addWidget(bringBack_);
    foot->addWidget(open_);
    foot->addWidget(close);
    static_cast<QVBoxLayout*>(layout())->addLayout(foot);
}

// The version of that number is chosen again; the newest where there is none.
void VersionsDialog::fill(const std::string& chosen) {
    // Without a choice in between no button is disabled, so that the focus stays where it is.
    const QSignalBlocker quiet(list_);
    versions_ = history_.versions().list();
    list_->clear();
    for (const KeptVersion& version : versions_) {
        auto* const item = new QTreeWidgetItem(list_);
        item->setText(nameColumn, nameOf(version));
        item->setText(folderColumn, textOf(version.path.parent_path()));
        item->setText(timeColumn, dayAndTimeText(version.time));
        item->setText(sizeColumn, QStringLiteral("%1 bytes").arg(version.size));
        item->setTextAlignment(sizeColumn, Qt::AlignRight | Qt::AlignVCenter);
        item->setSizeHint(nameColumn, QSize(0, rowHeight));
        item->setToolTip(nameColumn, nameOf(version));
        item->setToolTip(folderColumn, textOf(version.path.parent_path()));
        // A screen reader reads a row by its first cell.
        item->setData(nameColumn, Qt::AccessibleTextRole,
                      QStringLiteral("%1, %2, %3")
                          .arg(nameOf(version), dayAndTimeText(version.time), item->text(sizeColumn)));
    }
    const auto again = std::ranges::find(versions_, chosen, &KeptVersion::id);
    const auto row = again != versions_.end() ? again - versions_.begin() : 0;
    list_->setCurrentItem(list_->topLevelItem(static_cast<int>(row)));
    showChoice();
}

const KeptVersion* VersionsDialog::chosen() const {
    const int row = list_->indexOfTopLevelItem(list_->currentItem());
    return row >= 0 && static_cast<std::size_t>(row) < versions_.size()
               ? &versions_[static_cast<std::size_t>(row)]
               : nullptr;
}

void VersionsDialog::showChoice() {
    const KeptVersion* const version = chosen();
    bringBack_->setEnabled(version != nullptr);
    open_->setEnabled(version != nullptr && version->kind == FileKind::settings);
}

void VersionsDialog::bringBack() {
    if (chosen() == nullptr) {
        return;
    }
    const KeptVersion version = *chosen();
    std::filesystem::path place = version.path;
    if (place.empty()) {
        const auto asked = dialogs_.askSavePath(filterFor(version.kind));
        dialogs_.resetLocale();
        if (!asked || asked->empty()) {
            return;
        }
        place = *asked;
    }
    const QString name = textOf(place.filename());
    switch (const BroughtBack result = history_.bringBack(version.id, place)) {
        case BroughtBack::done:
            tell(QStringLiteral("%1 is as it was before %2.").arg(name, dayAndTimeText(version.time)), false);
            break;
        case BroughtBack::alreadyThere:
            tell(QStringLiteral("%1 holds this already.").arg(name), false);
            break;
        default:
            tell(troubleText(result, name), true);
    }
    fill(version.id);
}

void VersionsDialog::open() {
    if (chosen() == nullptr || chosen()->kind != FileKind::settings) {
        return;
    }
    switch (history_.open(chosen()->id)) {
        case OpenedVersion::done:
            accept();
            break;
        case OpenedVersion::damaged:
            tell(troubleText(BroughtBack::damaged, {}), true);
            break;
        case OpenedVersion::refused:
            break;
    }
}

void VersionsDialog::tell(const QString& text, bool isTrouble) {
    message_->setText(text);
    message_->setColors(QColor::fromRgb(isTrouble ? theme::trouble : theme::text2));
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(message_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

QString VersionsDialog::message() const {
    return message_->text();
}

}  // namespace tessavo
