#include "app/compare_dialog.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <chrono>

#include "app/compare_rows.h"
#include "app/undo_commands.h"
#include "compare/copy_elements.h"
#include "controls/color_control.h"
#include "controls/screen_room.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/theme.h"
#include "pages/form/channel_titles.h"
#include "pages/form/form.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr int noControl = -1;
constexpr int margin = 16;
constexpr int gap = 8;
constexpr int headHeight = 60;
constexpr int footHeight = 52;
constexpr int controlHeight = 28;
constexpr int checkHeight = 22;
constexpr int copyWidth = 116;
constexpr int closeWidth = 84;
constexpr int swapWidth = 28;
// Below each other with the marks of the groups.
constexpr int markLeft = 6;
constexpr int leastChart = 92;
constexpr int mostChart = 190;
// A dragged slider changes the sets with every move of the mouse.
constexpr std::chrono::milliseconds comparePause{40};

QString countText(std::size_t count, const char* noun) {
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(noun),
                                                    count == 1 ? QString() : QStringLiteral("s"));
}

}  // namespace

CompareDialog::CompareDialog(Dependencies dependencies, QWidget* parent)
    : CDialogSK(parent), dependencies_(std::move(dependencies)) {
    setObjectName(QStringLiteral("compare"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Compare"));
    makeHead();
    makeTree();
    makeFoot();
    setTabOrders();
    setMinimumSize(leastSize);
    resize(usualSize.boundedTo(roomOnScreen(parent)));

    soon_.setSingleShot(true);
    soon_.setInterval(comparePause);
    connect(&soon_, &QTimer::timeout, this, &CompareDialog::compareAnew);
    connect(&dependencies_.undo, &UndoCommands::historyChanged, this, [this](HistoryEvent event) {
        if (event != HistoryEvent::marksChanged) {
            compareSoon();
        }
    });
    connect(&model_, &CompareModel::choiceChanged, this, [this] {
        trouble_.clear();
        showFoot();
    });
    compareAnew();
    tree_->setFocus();
}

void CompareDialog::makeHead() {
    differencesOnly_ = makeCheck(QStringLiteral("Differences only"), this);
    realOnly_ = makeCheck(QStringLiteral("Real differences only"), this);
    realOnly_->setToolTip(QStringLiteral(
        "Without those that the target\u2019s number formats make (\u2248), as steps of 0.5 dB"));
    differencesOnly_->setChecked(true);
    const auto makeSide = [this](const QString& name, CompareSide* const& other) {
        auto* const side = new CompareSide({.tuning = dependencies_.tuning,
                                            .history = dependencies_.undo.history(),
                                            .dialogs = dependencies_.dialogs,
                                            .sources = dependencies_.sources,
                                            .baseSet = [this, &other] { return baseSet(other); }},
                                           name, this);
        connect(side, &CompareSide::chosen, this, [this] {
            trouble_.clear();
            model_.clearChoice();
            compareAnew();
        });
        connect(side, &CompareSide::failed, this, &CompareDialog::showTrouble);
        return side;
    };
    left_ = makeSide(QStringLiteral("Left set"), right_);
    exchange_ = new CxSkinButton(QStringLiteral("\u21C4"), noControl, this);
    exchange_->setAccessibleName(QStringLiteral("Exchange left and right"));
    exchange_->setToolTip(exchange_->accessibleName());
    exchange_->setAutoDefault(true);
    right_ = makeSide(QStringLiteral("Right set"), left_);
    right_->setShown({ComparedSet::Kind::own,
                      (dependencies_.tuning.currentSet() + 1) % static_cast<std::uint32_t>(setCount),
                      {},
                      {}});
    connect(differencesOnly_, &QAbstractButton::toggled, this, [this](bool on) {
        realOnly_->setEnabled(on);
        compareAnew();
    });
    connect(realOnly_, &QAbstractButton::toggled, this, &CompareDialog::compareAnew);
    connect(exchange_, &QAbstractButton::clicked, this, &CompareDialog::exchange);
}

void CompareDialog::makeTree() {
    tree_ = new CompareTree(model_, this);
    chart_ = new CompareChart(this);
    connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, &CompareDialog::showCurves);
}

void CompareDialog::makeFoot() {
    message_ = makeLabel({}, this);
    message_->setWordWrap(true);
    copy_ = makeButton(QStringLiteral("Copy Selected"), this);
    copy_->setAccented(true);
    close_ = makeButton(QStringLiteral("Close"), this);
    for (CxSkinButton* const button : {copy_, close_}) {
        button->setAutoDefault(true);
    }
    connect(copy_, &QAbstractButton::clicked, this, &CompareDialog::copy);
    connect(close_, &QAbstractButton::clicked, this, &QDialog::close);
}

void CompareDialog::setTabOrders() {
    const std::array<QWidget*, 8> order{differencesOnly_, realOnly_, left_, exchange_,
                                        right_,           tree_,     copy_, close_};
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void CompareDialog::compareSoon() {
    if (!soon_.isActive()) {
        soon_.start();
    }
}

void CompareDialog::compareAnew() {
    soon_.stop();
    left_->follow();
    right_->follow();
    const CompareModel::Filter filter{differencesOnly_->isChecked(),
                                      realOnly_->isChecked() && differencesOnly_->isChecked()};
    model_.show(compareSets(left_->record(), right_->record(),
                            filter.differencesOnly ? ListedElements::differing : ListedElements::all),
                filter, dependencies_.tuning.notes());
    tree_->rows().setDirection(destination() == nullptr ? CompareRows::Direction::none
                               : destination() == left_ ? CompareRows::Direction::toLeft
                                                        : CompareRows::Direction::toRight);
    showCurves();
    showFoot();
}

const CompareSide* CompareDialog::destination() const {
    return left_->writable() ? left_ : right_->writable() ? right_ : nullptr;
}

std::uint32_t CompareDialog::baseSet(const CompareSide* other) const {
    const auto set = other != nullptr ? other->writable() : std::nullopt;
    return set.value_or(dependencies_.tuning.currentSet());
}

void CompareDialog::showCurves() {
    const CompareGroup* const group = model_.groupOf(tree_->currentIndex());
    const bool isChannel = group != nullptr && group->kind == CompareGroupKind::channel;
    if (group == nullptr || (!isChannel && group->kind != CompareGroupKind::input)) {
        chart_->clear(QStringLiteral("Curves: choose a row of a channel or of the input"));
        return;
    }
    const auto channel = isChannel ? std::optional(group->channel) : std::nullopt;
    const std::uint32_t mode = dependencies_.tuning.filterMode();
    const QString title =
        isChannel ? channelTitle(dependencies_.tuning.notes(), group->channel) : textOf(group->heading);
    chart_->show(title, left_->title(), curves_.curveOf(left_->record(), channel, mode), right_->title(),
                 curves_.curveOf(right_->record(), channel, mode));
}

QString CompareDialog::footText() const {
    const std::size_t count = model_.differenceCount();
    const std::size_t chosen = model_.chosen().size();
    if (count == 0) {
        const bool hides = realOnly_->isChecked() && realOnly_->isEnabled();
        const QString text =
            hides ? QStringLiteral("No real differences.") : QStringLiteral("No differences.");
        return model_.spareBytes() == 0 ? text
                                        : text + QStringLiteral(" %1 without a meaning differ.")
                                                     .arg(countText(model_.spareBytes(), "byte"));
    }
    const CompareSide* const to = destination();
    if (to == nullptr) {
        return countText(count, "field") +
               QStringLiteral(" differ. Neither side can be written: choose one of the five sets.");
    }
    const bool isCurrent = to->shown().kind == ComparedSet::Kind::current;
    const QString way =
        QStringLiteral("from %1, into %2")
            .arg(to == left_ ? QStringLiteral("right to left") : QStringLiteral("left to right"),
                 isCurrent ? QStringLiteral("the current set") : to->title());
    if (chosen == 0) {
        return QStringLiteral("0 of %1 selected. Tick what is to go %2.").arg(countText(count, "field"), way);
    }
    return QStringLiteral("%1 of %2 selected. %3 %4; one step of undo.")
        .arg(QString::number(chosen), countText(count, "field"),
             chosen == 1 ? QStringLiteral("It goes") : QStringLiteral("They go"), way);
}

void CompareDialog::showFoot() {
    copy_->setEnabled(destination() != nullptr && !model_.chosen().empty());
    const bool isTrouble = !trouble_.isEmpty();
    message_->setText(isTrouble ? trouble_ : footText());
    message_->setColors(QColor::fromRgb(isTrouble ? theme::trouble : theme::text2));
}

void CompareDialog::showTrouble(const QString& text) {
    trouble_ = text;
    showFoot();
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(message_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

QString CompareDialog::message() const {
    return message_->text();
}

void CompareDialog::exchange() {
    const ComparedSet left = left_->shown();
    trouble_.clear();
    left_->setShown(right_->shown());
    right_->setShown(left);
    compareAnew();
}

void CompareDialog::copy() {
    const CompareSide* const to = destination();
    const auto set = to != nullptr ? to->writable() : std::nullopt;
    // What a person has seen and chosen is what goes.
    if (soon_.isActive()) {
        compareAnew();
    }
    const std::vector<SetElement> elements = model_.chosen();
    if (!set || elements.empty()) {
        return;
    }
    const CompareSide* const from = to == left_ ? right_ : left_;
    const std::array replacement{SetReplacement{*set, copyElements(to->record(), from->record(), elements)}};
    const QString text =
        QStringLiteral("Copied %1 from %2").arg(countText(elements.size(), "field"), from->title());
    trouble_.clear();
    dependencies_.edits.write(replacement, QStringLiteral("Copy Selected"), text);
    compareAnew();
}

// Enter presses the button that has the focus, and none from the list.
void CompareDialog::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && qobject_cast<QPushButton*>(focusWidget()) == nullptr) {
        event->accept();
        return;
    }
    CDialogSK::keyPressEvent(event);
}

void CompareDialog::changeEvent(QEvent* event) {
    CDialogSK::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && tree_ != nullptr) {
        tree_->viewport()->update();
    }
}

void CompareDialog::paintBackground(QPainter& painter, QSize size) const {
    CDialogSK::paintBackground(painter, size);
    paintFoot(painter, size, footHeight);
}

void CompareDialog::resizeEvent(QResizeEvent* event) {
    CDialogSK::resizeEvent(event);
    const int wide = width() - 2 * margin;
    const int leftSide = margin + CompareRows::leftValueAt(wide) - gap;
    const int rightSide = margin + CompareRows::rightValueAt(wide) - gap;
    const int top = (headHeight - controlHeight) / 2;
    const int checkTop = (headHeight - 2 * checkHeight) / 2;
    const int checkWidth = leftSide - margin - markLeft - gap;
    differencesOnly_->setGeometry(margin + markLeft, checkTop, checkWidth, checkHeight);
    realOnly_->setGeometry(margin + markLeft, checkTop + checkHeight, checkWidth, checkHeight);
    left_->setGeometry(leftSide, top, rightSide - leftSide - swapWidth - gap, controlHeight);
    exchange_->setGeometry(rightSide - swapWidth - gap / 2, top, swapWidth, controlHeight);
    right_->setGeometry(rightSide, top, width() - margin - rightSide, controlHeight);

    const int middle = height() - headHeight - footHeight;
    const int chart = std::clamp(middle * 3 / 10, leastChart, mostChart);
    const int treeHeight = middle - chart - 2 * gap;
    tree_->setGeometry(margin, headHeight, wide, treeHeight);
    chart_->setGeometry(margin, headHeight + treeHeight + gap, wide, chart);

    const int foot = height() - footHeight + (footHeight - controlHeight) / 2;
    close_->setGeometry(width() - margin - closeWidth, foot, closeWidth, controlHeight);
    copy_->setGeometry(close_->x() - gap - copyWidth, foot, copyWidth, controlHeight);
    message_->setGeometry(margin, height() - footHeight + 6, copy_->x() - margin - 2 * gap, footHeight - 12);
}

}  // namespace tessavo
