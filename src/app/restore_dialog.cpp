#include "app/restore_dialog.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollArea>
#include <QTreeWidget>
#include <algorithm>
#include <utility>

#include "app/copy_parts.h"
#include "app/wall_time_text.h"
#include "controls/column_list.h"
#include "controls/screen_room.h"
#include "controls/scroll_body.h"
#include "controls/skin_check_box.h"
#include "controls/skin_group_box.h"
#include "controls/theme.h"
#include "copies/copy_text.h"
#include "pages/form/form.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr QSize usualSize(660, 632);
constexpr int rowHeight = 24;
constexpr int timeWidth = 150;
constexpr int portWidth = 110;
constexpr int setNameWidth = 120;

enum Column { titleColumn, timeColumn, portColumn };

// Each row tells of a set whose name stands beside it already.
QString behindTheName(const std::string& text) {
    const std::size_t colon = text.find(": ");
    return sentenceStart(colon == std::string::npos ? text : text.substr(colon + 2));
}

}  // namespace

RestoreDialog::RestoreDialog(Dependencies dependencies, QWidget* parent)
    : CDialogSK(parent), dependencies_(std::move(dependencies)) {
    setObjectName(QStringLiteral("restore"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Restore Target"));
    setModal(true);
    auto* const body = new QVBoxLayout(this);
    body->setContentsMargins(12, 12, 12, 12);
    body->setSpacing(10);
    auto* const warning = makeMessage(this);
    warning->setObjectName(QStringLiteral("warning"));
    warning->setFont(theme::font(12, QFont::Medium));
    warning->setText(textOf(playsInTurnText));
    warning->setColors(QColor::fromRgb(theme::mixed));
    body->addWidget(warning);
    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);
    makeList(*column);
    makeSets(*column);
    amplifiers_ = makeCheck(QStringLiteral("The amplifiers are off or turned down"), this);
    column->addWidget(amplifiers_);
    connect(amplifiers_, &QAbstractButton::toggled, this, &RestoreDialog::showButtons);
    connect(amplifiers_, &QAbstractButton::toggled, this, &RestoreDialog::showHint);
    body->addWidget(makeScrollBody(content, this), 1);
    progress_ = makeMessage(this);
    bar_ = makeProgressBar(this);
    message_ = makeMessage(this);
    message_->setObjectName(QStringLiteral("message"));
    body->addWidget(progress_);
    body->addWidget(bar_);
    body->addWidget(message_);
    makeFoot(*body);
    resize(usualSize.boundedTo(roomOnScreen(parent)));
    showSource();
    list_->setFocus();
}

void RestoreDialog::makeList(QVBoxLayout& body) {
    list_ = new QTreeWidget(this);
    list_->setAccessibleName(QStringLiteral("Copies"));
    list_->setStyleSheet(columnListSheet());
    list_->setHeaderLabels({QStringLiteral("Copy"), QStringLiteral("Made"), QStringLiteral("Port")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setTabKeyNavigation(false);
    list_->setMinimumHeight(4 * rowHeight);
    QHeaderView& head = *list_->header();
    head.setStretchLastSection(false);
    head.setSectionsMovable(false);
    head.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    head.setSectionResizeMode(titleColumn, QHeaderView::Stretch);
    head.resizeSection(timeColumn, timeWidth);
    head.resizeSection(portColumn, portWidth);
    otherFolder_ = makeButton(QStringLiteral("Other Folder..."), this);
    otherFolder_->setAutoDefault(true);
    auto* const side = new QHBoxLayout;
    side->addStretch();
    side->addWidget(otherFolder_);
    body.addWidget(list_, 1);
    body.addLayout(side);
    connect(list_, &QTreeWidget::currentItemChanged, this, &RestoreDialog::showSource);
    connect(otherFolder_, &QPushButton::clicked, this, &RestoreDialog::chooseFolder);
}

void RestoreDialog::makeSets(QVBoxLayout& body) {
    SkinGroupBox* const group = makeGroup(QStringLiteral("Sets"), this);
    QGridLayout* const grid = makeGrid(group);
    grid->setVerticalSpacing(2);
    grid->setColumnMinimumWidth(0, setNameWidth);
    grid->setColumnStretch(1, 1);
    for (std::size_t i = 0; i < sets_.size(); ++i) {
        const std::uint8_t number = targetSetNumbers.at(i);
        const QString name = QString::fromStdString(targetSetTitle(number));
        sets_.at(i) = {.check = makeCheck(name, group), .state = makeLabel({}, group)};
        sets_.at(i).check->setFixedHeight(rowHeight);
        grid->addWidget(sets_.at(i).check, static_cast<int>(i), 0);
        grid->addWidget(sets_.at(i).state, static_cast<int>(i), 1);
        connect(sets_.at(i).check, &QAbstractButton::toggled, this, &RestoreDialog::showButtons);
        connect(sets_.at(i).check, &QAbstractButton::toggled, this, &RestoreDialog::showHint);
    }
    body.addWidget(group);
}

void RestoreDialog::makeFoot(QVBoxLayout& body) {
    send_ = makeButton(QStringLiteral("Send Current Set"), this);
    send_->setToolTip(QStringLiteral("Switches Live Mode on, which sends the current set"));
    send_->hide();
    restore_ = makeButton(QStringLiteral("Restore"), this);
    restore_->setAccented(true);
    close_ = makeButton(QStringLiteral("Close"), this);
    // Enter presses the button that has the focus.
    for (CxSkinButton* const button : {send_, restore_, close_}) {
        button->setAutoDefault(true);
    }
    connect(send_, &QPushButton::clicked, this, &RestoreDialog::sendCurrentSet);
    connect(restore_, &QPushButton::clicked, this, &RestoreDialog::start);
    connect(close_, &QPushButton::clicked, this, &RestoreDialog::reject);
    auto* const foot = new QHBoxLayout;
    foot->setSpacing(8);
    foot->addWidget(send_);
    foot->addStretch();
    foot->addWidget(restore_);
    foot->addWidget(close_);
    body.addLayout(foot);
}

void RestoreDialog::setSources(std::vector<RestoreSource> sources) {
    // A folder that was chosen meanwhile stands in front and stays chosen.
    const bool none = sources_.empty();
    for (RestoreSource& source : sources) {
        addSource(std::move(source), list_->topLevelItemCount());
    }
    if (none) {
        list_->setCurrentItem(list_->topLevelItem(0));
    }
    looked_ = true;
    showHint();
}

void RestoreDialog::addSource(RestoreSource source, int row) {
    auto* const item = new QTreeWidgetItem;
    item->setText(titleColumn, textOf(source.title));
    item->setText(timeColumn, dayAndTimeText(source.time));
    item->setText(portColumn, textOf(source.port));
    item->setToolTip(titleColumn, textOf(source.place.empty() ? source.title : source.place));
    item->setToolTip(portColumn, textOf(source.port));
    item->setSizeHint(titleColumn, QSize(0, rowHeight));
    // A screen reader reads a row by its first cell.
    item->setData(titleColumn, Qt::AccessibleTextRole,
                  QStringLiteral("%1, %2, %3")
                      .arg(item->text(titleColumn), item->text(timeColumn), item->text(portColumn)));
    sources_.insert(sources_.begin() + row, std::move(source));
    list_->insertTopLevelItem(row, item);
}

void RestoreDialog::chooseFolder() {
    if (auto source = dependencies_.askFolder()) {
        addSource(std::move(*source), 0);
        list_->setCurrentItem(list_->topLevelItem(0));
        showHint();
    }
}

const RestoreSource* RestoreDialog::chosen() const {
    const int row = list_->indexOfTopLevelItem(list_->currentItem());
    return row >= 0 && static_cast<std::size_t>(row) < sources_.size()
               ? &sources_[static_cast<std::size_t>(row)]
               : nullptr;
}

RestoreDialog::SetRow& RestoreDialog::rowOf(std::uint8_t targetSet) {
    const auto* const found = std::ranges::find(targetSetNumbers, targetSet);
    return sets_.at(static_cast<std::size_t>(found - targetSetNumbers.begin()));
}

// The default set is what a target falls back to: it is never chosen by itself.
void RestoreDialog::showSource() {
    const RestoreSource* const source = chosen();
    for (SetRow& row : sets_) {
        row.check->setEnabled(false);
        row.check->setChecked(false);
        row.state->setText(source != nullptr ? QStringLiteral("Not in this copy") : QString());
        row.state->setColors(QColor::fromRgb(theme::text3));
    }
    if (source != nullptr) {
        for (const SetToWrite& set : source->sets) {
            SetRow& row = rowOf(set.targetSet);
            row.check->setEnabled(true);
            row.check->setChecked(set.targetSet != 0);
            row.state->setText({});
        }
        for (const std::string& trouble : source->troubles) {
            for (const std::uint8_t number : targetSetNumbers) {
                if (trouble.starts_with(targetSetText(number) + ": ")) {
                    rowOf(number).state->setText(behindTheName(trouble));
                }
            }
        }
    }
    showButtons();
    showHint();
}

// What is still to be done, since a button that cannot be pressed does not tell.
void RestoreDialog::showHint() {
    if (running_) {
        return;
    }
    const auto count = std::ranges::count_if(sets_, [](const SetRow& row) { return row.check->isChecked(); });
    QString text;
    if (sources_.empty()) {
        text = looked_ ? QStringLiteral("No copy is known yet: choose a folder")
                       : QStringLiteral("Looking for copies");
    } else if (count == 0) {
        text = QStringLiteral("Tick the sets to restore.");
    } else if (!amplifiers_->isChecked()) {
        text =
            QStringLiteral("Tick that the amplifiers are off or turned down; then Restore can be pressed.");
    } else {
        text = count == 1 ? QStringLiteral("Ready: one set is restored.")
                          : QStringLiteral("Ready: %1 sets are restored, one after another.").arg(count);
    }
    progress_->setColors(QColor::fromRgb(theme::text2));
    progress_->setText(text);
}

void RestoreDialog::showButtons() {
    const bool wanted = std::ranges::any_of(sets_, [](const SetRow& row) { return row.check->isChecked(); });
    restore_->setEnabled(!running_ && wanted && amplifiers_->isChecked());
}

// In the order of the list; without the default set where the answer says so, and empty for none of them.
std::vector<SetToWrite> RestoreDialog::wantedSets() {
    std::vector<SetToWrite> wanted;
    for (const SetToWrite& set : chosen()->sets) {
        if (!rowOf(set.targetSet).check->isChecked()) {
            continue;
        }
        if (set.targetSet == 0) {
            const BoxAnswer answer =
                dependencies_.boxes.show(restoreDefaultText, BoxIcon::error, BoxButtons::yesNoCancel);
            if (answer == BoxAnswer::no) {
                continue;
            }
            if (answer != BoxAnswer::yes) {
                return {};
            }
        }
        wanted.push_back(set);
    }
    return wanted;
}

void RestoreDialog::start() {
    if (running_ || chosen() == nullptr) {
        return;
    }
    const std::vector<SetToWrite> wanted = wantedSets();
    if (wanted.empty()) {
        return;
    }
    for (SetRow& row : sets_) {
        row.state->setText({});
    }
    cancelled_ = false;
    setRunning(true);
    const RestoreReport report =
        dependencies_.restore(wanted, {.progress = [this](const CopyProgress& step) { showStep(step); },
                                       .mayGoOn = [this] { return !cancelled_; },
                                       .nothingSent = {}});
    setRunning(false);
    showReport(report);
}

void RestoreDialog::setRunning(bool running) {
    running_ = running;
    list_->setEnabled(!running);
    otherFolder_->setEnabled(!running);
    amplifiers_->setEnabled(!running);
    if (running) {
        for (SetRow& row : sets_) {
            row.check->setEnabled(false);
        }
        send_->hide();
        showAccent();
        showBarState(*bar_, BarState::running);
        tell(*message_, {}, false);
    } else {
        for (const SetToWrite& set : chosen()->sets) {
            rowOf(set.targetSet).check->setEnabled(true);
        }
    }
    showButtons();
    close_->setText(running ? QStringLiteral("Cancel") : QStringLiteral("Close"));
    close_->setEnabled(true);
    close_->setFocus(Qt::TabFocusReason);
}

void RestoreDialog::showStep(const CopyProgress& progress) {
    showProgress(progress, *progress_, *bar_);
    SetRow& row = rowOf(progress.targetSet);
    row.state->setColors(QColor::fromRgb(theme::text2));
    row.state->setText(sentenceStart(copyActText(progress.act, progress.targetSet)));
    // Each set begins where the one before it has been compared.
    for (SetRow& other : sets_) {
        if (&other != &row && !other.state->text().isEmpty()) {
            other.state->setText(QStringLiteral("Done"));
        }
    }
}

void RestoreDialog::showReport(const RestoreReport& report) {
    for (const RestoreReport::Row& each : report.sets) {
        SetRow& row = rowOf(each.targetSet);
        row.state->setText(behindTheName(restoredText(each)));
        const bool settled = each.state == RestoredState::done || each.state == RestoredState::untouched;
        row.state->setColors(QColor::fromRgb(settled ? theme::text : theme::trouble));
    }
    const bool isDone = report.end == RestoreReport::End::done;
    bar_->setValue(isDone ? bar_->maximum() : bar_->value());
    showBarState(*bar_, isDone ? BarState::done : BarState::stopped);
    const QString end = sentenceStart(restoreEndText(report));
    tell(*progress_,
         end.isEmpty() ? QStringLiteral("All of it is restored and compared.") : end + QLatin1Char('.'),
         report.end == RestoreReport::End::failed);
    tell(*message_, textOf(playsNowText(report.plays)), true);
    send_->show();
    // What comes next has the accent, and shows that Enter presses it.
    send_->setFocus(Qt::TabFocusReason);
    showAccent();
}

void RestoreDialog::showAccent() {
    send_->setAccented(!send_->isHidden());
    restore_->setAccented(send_->isHidden());
}

void RestoreDialog::sendCurrentSet() {
    dependencies_.sendCurrentSet();
    accept();
}

void RestoreDialog::cancel() {
    if (!running_ || cancelled_) {
        return;
    }
    cancelled_ = true;
    close_->setEnabled(false);
    tell(*progress_, QStringLiteral("Cancelled: waiting for the end of this exchange"), false);
    Q_EMIT cancelAsked();
}

void RestoreDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && qobject_cast<QPushButton*>(focusWidget()) == nullptr) {
        // A dialog makes its first button the default one where none is.
        event->accept();
        return;
    }
    CDialogSK::keyPressEvent(event);
}

void RestoreDialog::reject() {
    if (running_) {
        cancel();
    } else {
        CDialogSK::reject();
    }
}

}  // namespace tessavo
