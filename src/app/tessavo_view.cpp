#include "app/tessavo_view.h"

#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <utility>

#include "app/plot_note.h"
#include "app/record_mark.h"
#include "app/tab_control.h"
#include "controls/control_note.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/text_edit_box.h"
#include "controls/theme.h"
#include "dsp/filter_methods.h"
#include "pages/form/channel_titles.h"
#include "pages/output/output_eq.h"
#include "params/set_text.h"
#include "plot/chart/plot_dlg.h"

namespace tessavo {

namespace {

constexpr int pageWidth = 984;
constexpr int pageHeight = 596;
// The page, a gap, and the scroll bar that shows only when the page does not fit.
constexpr int pageAreaWidth = 998;

QString nameOf(const ParameterSet& set) {
    return QString::fromStdU16String(readSetText(set.setName));
}

}  // namespace

CTessavoView::CTessavoView(TuningState& tuning, IChartHost& chartHost, QWidget* parent,
                           const PageFactory& makePage)
    : QWidget(parent), tuning_(tuning), chartHost_(chartHost), makePage_(makePage), header_(*this) {
    setObjectName(QStringLiteral("mainView"));
    makeHeader();
    makeTabs();
}

CTessavoView::~CTessavoView() {
    delete plot_;
}

void CTessavoView::makeHeader() {
    header_.build(headerRows(), [this](const ControlRow& row, QWidget& parent) -> QWidget* {
        switch (row.identifier) {
            case view_id::recordMark:
                return new RecordMark(row.identifier, tuning_, &parent);
            case view_id::setName:
                return new TextEditBox(row.identifier, &parent);
            default:
                return tabs_ = new eqCTabCtrl(row.identifier, &parent);
        }
    });
    for (const ControlRow& row : headerRows()) {
        // What has no words on it or beside it says what it is.
        if (!row.name.empty()) {
            header_.control<QWidget>(row.identifier).setToolTip(textOf(row.name));
        }
    }
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        header_.onClick(view_id::channelFlag(channel), [this, channel](bool checked) {
            tuning_.setChannelFlag({channel}, checked ? 1 : 0);
        });
    }
    header_.onClick(view_id::eqMode, [this] { toggleLiveMode(); });
    header_.onClick(view_id::showPlot, [this] { togglePlot(); });
    connect(&setSelector(), &QComboBox::activated, this, &CTessavoView::chooseSet);
    connect(&setName(), &QLineEdit::textEdited, this, &CTessavoView::renameSet);
    connect(&setName(), &QLineEdit::editingFinished, this, &CTessavoView::leaveSetName);
    connect(&filterModes(), &QComboBox::activated, this,
            [this](int index) { showFilterMode(static_cast<std::uint32_t>(index)); });
}

SkinComboBox& CTessavoView::setSelector() const {
    return header_.control<SkinComboBox>(view_id::setSelector);
}

SkinComboBox& CTessavoView::filterModes() const {
    return header_.control<SkinComboBox>(view_id::filterMode);
}

QLineEdit& CTessavoView::setName() const {
    return header_.control<QLineEdit>(view_id::setName);
}

SkinCheckBox& CTessavoView::channelFlag(std::size_t channel) const {
    return header_.control<SkinCheckBox>(view_id::channelFlag(channel));
}

void CTessavoView::makeTabs() {
    for (const PageEntry& each : pageTable()) {
        tabs_->addFixedTab(textOf(each.title), each.tabWidth);
    }
    pageArea_ = new QScrollArea(this);
    pageArea_->setFrameShape(QFrame::NoFrame);
    pageArea_->setFocusPolicy(Qt::NoFocus);
    stack_ = new QStackedWidget;
    stack_->setFixedSize(pageWidth, pageHeight);
    pageArea_->setWidget(stack_);
    makePagesUpTo(1);
    // A click on the tab in front is a click too: it brings the plot up to date. Buttons that choose no tab
    // are told for any of them.
    connect(tabs_, &QTabBar::tabBarClicked, this, [this](int index) {
        if (index == tabs_->currentIndex()) {
            tabClicked(index);
        }
    });
    connect(tabs_, &QTabBar::currentChanged, this, &CTessavoView::tabClicked);
}

void CTessavoView::makePagesUpTo(std::size_t count) {
    while (pages_.size() < count) {
        pages_.push_back(tabs_->createPage(stack_, static_cast<Page>(pages_.size()), makePage_));
    }
}

const std::vector<CTabDialog*>& CTessavoView::pages() {
    makePagesUpTo(pageCount);
    return pages_;
}

CPlotDlg& CTessavoView::plot() {
    if (!plot_) {
        plot_ = new CPlotDlg(chartHost_, window());
        connect(plot_, &QObject::destroyed, this, [this] { tuning_.setCurveDisplay(nullptr); });
        connect(plot_, &CPlotDlg::curveShown, this, &CTessavoView::tuningChanged);
        connect(plot_, &CPlotDlg::closedByUser, this, [this] { setPlotShown(false); });
        plot_->setWindowTitle(textOf(entryInFront().plotTitle));
        tuning_.setCurveDisplay(plot_);
        updatePlot();
    }
    return *plot_;
}

void CTessavoView::initialUpdate() {
    fillSetSelector();
    setSelector().setCurrentIndex(0);
    for (const std::string_view name : filterMethodNames) {
        filterModes().addItem(textOf(name));
    }
    filterModes().setCurrentIndex(0);
    setName().setText(nameOf(tuning_.currentParameterSet()));
    showPage(Page::inputEqualizer);
}

void CTessavoView::showPage(Page page) {
    const int index = static_cast<int>(page);
    if (tabs_->currentIndex() == index) {
        tabClicked(index);
    } else {
        tabs_->setCurrentIndex(index);
    }
}

void CTessavoView::checkChannelBox(int number, bool checked) {
    if (number >= 1 && number <= static_cast<int>(channelCount)) {
        header_.control<SkinCheckBox>(view_id::firstChannelFlag + number - 1).setChecked(checked);
    }
}

void CTessavoView::refreshPages() {
    for (CTabDialog* page : pages()) {
        page->refresh();
    }
    fillSetSelector();
    setName().setText(nameOf(tuning_.currentParameterSet()));
    showChannelFlags();
    showChannelNames();
    updatePlot();
    Q_EMIT currentSetChanged();
}

void CTessavoView::showChannelNames() {
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        const QString name = channelToolTip(tuning_.notes(), {channel});
        replaceNote(channelFlag(channel), std::exchange(channelNames_.at(channel), name), name);
    }
}

void CTessavoView::showChannelFlags() {
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        channelFlag(channel).setChecked(tuning_.currentParameterSet().channels[channel].channelFlag != 0);
    }
}

void CTessavoView::fillSetSelector() {
    setSelector().clear();
    for (const ParameterSet& set : tuning_.store().sets) {
        setSelector().addItem(nameOf(set));
        setSelector().setItemNumber(setSelector().count() - 1, setSelector().count());
    }
    setSelector().setCurrentIndex(static_cast<int>(tuning_.currentSet()));
    markInvalidSets();
}

void CTessavoView::markInvalidSets() {
    for (int set = 0; set < setSelector().count(); ++set) {
        const QString trouble = recordTrouble(tuning_.store().sets[static_cast<std::size_t>(set)]);
        setSelector().setItemDot(set, trouble.isEmpty() ? QColor() : QColor::fromRgb(theme::clip));
        setSelector().setItemData(
            set, trouble.isEmpty() ? QVariant() : QStringLiteral("No valid record: %1").arg(trouble),
            Qt::ToolTipRole);
    }
    auto& mark = header_.control<RecordMark>(view_id::recordMark);
    mark.showState();
    // The keyboard passes the mark by, and a screen reader goes with it.
    setSelector().setAccessibleDescription(mark.toolTip());
}

void CTessavoView::toggleLiveMode() {
    // A page that logs the exchange must be there before it starts.
    makePagesUpTo(pageCount);
    const bool on = !tuning_.liveMode();
    tuning_.setLiveMode(on);
    auto& eqMode = header_.control<CxSkinButton>(view_id::eqMode);
    eqMode.setText(on ? QStringLiteral("EQ Mode On") : QStringLiteral("EQ Mode Off"));
    eqMode.setOn(on);
    Q_EMIT liveModeChanged(on);
}

void CTessavoView::turnOnLiveMode() {
    if (!tuning_.liveMode()) {
        toggleLiveMode();
    }
}

void CTessavoView::chooseSet(int index) {
    // The list also tells of an entry that was chosen again.
    if (index < 0 || static_cast<std::uint32_t>(index) == tuning_.currentSet()) {
        return;
    }
    const auto set = static_cast<std::uint32_t>(index);
    tuning_.selectSet(set, [&] {
        for (CTabDialog* page : pages()) {
            page->changeSet(set);
        }
    });
    setName().setText(nameOf(tuning_.currentParameterSet()));
    markInvalidSets();
    showChannelFlags();
    updatePlot();
    Q_EMIT currentSetChanged();
}

void CTessavoView::showSet(std::uint32_t set) {
    setSelector().setCurrentIndex(static_cast<int>(set));
    chooseSet(static_cast<int>(set));
}

void CTessavoView::showPlace(const FieldPlace& place) {
    showSet(place.set);
    QWidget* parent = this;
    if (place.page) {
        showPage(*place.page);
        parent = pages()[static_cast<std::size_t>(*place.page)];
    }
    if (auto* output = qobject_cast<COutputEQ*>(parent); output != nullptr && place.channel) {
        output->showChannel(*place.channel);
    }
    // Numbers repeat on different pages.
    if (auto* control = parent->findChild<QWidget*>(QStringLiteral("id%1").arg(place.control))) {
        window()->activateWindow();
        control->setFocus(Qt::ShortcutFocusReason);
    }
}

void CTessavoView::showFilterMode(std::uint32_t mode) {
    tuning_.setFilterMode(mode);
    filterModes().setCurrentIndex(static_cast<int>(tuning_.filterMode()));
    showNotes();
    Q_EMIT filterModeChanged();
}

void CTessavoView::renameSet(const QString& text) {
    tuning_.setName(text.toStdU16String());
    markInvalidSets();
}

void CTessavoView::leaveSetName() {
    fillSetSelector();
    setName().setText(nameOf(tuning_.currentParameterSet()));
    Q_EMIT currentSetChanged();
}

void CTessavoView::togglePlot() {
    setPlotShown(!plotShown_);
    updatePlot();
}

void CTessavoView::setPlotShown(bool shown) {
    plotShown_ = shown;
    header_.control<CxSkinButton>(view_id::showPlot)
        .setText(shown ? QStringLiteral("Hide Plot") : QStringLiteral("Show Plot"));
    if (shown) {
        plot().showCentred();
    } else {
        plot().hide();
    }
}

void CTessavoView::tabClicked(int index) {
    if (index < 0 || index >= static_cast<int>(pageCount)) {
        return;
    }
    makePagesUpTo(static_cast<std::size_t>(index) + 1);
    if (stack_->currentIndex() != index) {
        // On a low screen every page starts at its top.
        pageArea_->verticalScrollBar()->setValue(0);
        pageArea_->horizontalScrollBar()->setValue(0);
    }
    stack_->setCurrentIndex(index);
    if (plot_) {
        plot_->setWindowTitle(textOf(entryInFront().plotTitle));
    }
    updatePlot();
}

void CTessavoView::bringIntoSight(QWidget* control) {
    if (stack_->isAncestorOf(control)) {
        pageArea_->ensureWidgetVisible(control);
    }
}

void CTessavoView::scrollPageWith(QScrollBar* bar) {
    if (pageBar_ == bar) {
        return;
    }
    QScrollBar* own = pageArea_->verticalScrollBar();
    if (pageBar_ != nullptr) {
        pageBar_->disconnect(own);
        own->disconnect(pageBar_);
    }
    pageBar_ = bar;
    pageArea_->setVerticalScrollBarPolicy(bar != nullptr ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    if (bar == nullptr) {
        return;
    }
    const auto takeRange = [own, bar] {
        bar->setPageStep(own->pageStep());
        bar->setSingleStep(own->singleStep());
        bar->setRange(own->minimum(), own->maximum());
        bar->setValue(own->value());
    };
    connect(own, &QScrollBar::rangeChanged, bar, takeRange);
    connect(own, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(bar, &QScrollBar::valueChanged, own, &QScrollBar::setValue);
    takeRange();
}

const PageEntry& CTessavoView::entryInFront() const {
    return entryOf(static_cast<Page>(stack_->currentIndex()));
}

// The last selected channel in page order, or that of the last edit, as an edit shows it.
RecordChannel CTessavoView::drawnChannel() const {
    return lastSelected(tuning_.selectionMask()).value_or(tuning_.lastEditedBand().channel);
}

void CTessavoView::tuningChanged() {
    if (!std::exchange(notesAreDue_, true)) {
        QTimer::singleShot(0, this, &CTessavoView::showNotes);
    }
}

// A box knows checked and not checked; set and image hold a byte.
void CTessavoView::markChannelFlags() {
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        SkinCheckBox& flag = channelFlag(channel);
        const int inForce = tuning_.currentParameterSet().channels[channel].channelFlag;
        const int plays = tuning_.image().channels[channel].channelFlag;
        QStringList sentences;
        if ((inForce != 0) != flag.isChecked()) {
            sentences << (inForce != 0 ? QStringLiteral("In force: checked")
                                       : QStringLiteral("In force: not checked"));
        } else if (inForce > 1) {
            sentences << QStringLiteral("In force: code %1").arg(inForce);
        }
        if ((plays != 0) != flag.isChecked()) {
            sentences << (plays != 0 ? QStringLiteral("Plays as if checked")
                                     : QStringLiteral("Plays as if not checked"));
        } else if (plays > 1 && plays != inForce) {
            sentences << QStringLiteral("Plays code %1").arg(plays);
        }
        flag.setMark(sentences.join(QStringLiteral(". ")));
    }
}

void CTessavoView::showNotes() {
    notesAreDue_ = false;
    markChannelFlags();
    const ForeignWords foreign = foreignWords_.find(tuning_);
    filterModes().setMark(foreignWordsNote(tuning_, foreign));
    if (!plot_) {
        return;
    }
    switch (entryInFront().curve) {
        case PageCurve::input:
            plot_->setCurveNotes(inputCurveNotes(tuning_, foreign));
            break;
        case PageCurve::output:
            plot_->setCurveNotes(outputCurveNotes(tuning_, drawnChannel(), foreign));
            break;
        case PageCurve::none:
            plot_->setCurveNotes({});
    }
}

void CTessavoView::updatePlot() {
    showNotes();
    if (!plot_) {
        return;
    }
    switch (entryInFront().curve) {
        case PageCurve::input:
            tuning_.showInputCurve();
            break;
        case PageCurve::output:
            tuning_.showOutputCurve(drawnChannel());
            break;
        case PageCurve::none:
            plot_->clearCurve();
    }
}

void CTessavoView::resizeEvent(QResizeEvent*) {
    pageArea_->setGeometry(tabs_->x(), pageTop, pageAreaWidth, height() - pageTop);
}

void CTessavoView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(theme::window));
    QLinearGradient strip(0, 0, 0, pageTop);
    strip.setColorAt(0, QColor::fromRgb(theme::headerTop));
    strip.setColorAt(1, QColor::fromRgb(theme::headerBottom));
    painter.fillRect(0, 0, width(), pageTop, strip);
    const QColor line = QColor::fromRgb(theme::line);
    painter.fillRect(0, 0, width(), 1, line);
    painter.fillRect(0, pageTop - 1, width(), 1, line);
    if (!std::exchange(painted_, true)) {
        // The window is there at once; what is behind its first page follows.
        QTimer::singleShot(0, this, [this] {
            makePagesUpTo(pageCount);
            Q_EMIT firstPainted();
        });
    }
}

}  // namespace tessavo
