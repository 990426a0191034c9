#include "app/tessavo_view.h"

#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <bit>
#include <utility>

#include "app/plot_note.h"
#include "app/record_mark.h"
#include "app/tab_control.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/text_edit_box.h"
#include "controls/theme.h"
#include "dsp/filter_methods.h"
#include "params/set_text.h"
#include "plot/chart/plot_dlg.h"

namespace tessavo {

namespace {

constexpr int headerHeight = 48;
constexpr int tabRowHeight = 36;
static_assert(CTessavoView::pageTop == headerHeight + tabRowHeight);
constexpr int pageLeft = 20;
constexpr int pageWidth = 984;
constexpr int pageHeight = 596;
// The page, a gap, and the scroll bar that shows only when the page does not fit.
constexpr int pageAreaWidth = 998;

void paintLabel(QLabel& label, QRgb color) {
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(color));
    label.setPalette(palette);
}

QString latin(std::string_view text) {
    return QLatin1String(text.data(), static_cast<qsizetype>(text.size()));
}

QString nameOf(const ParameterSet& set) {
    return QString::fromStdU16String(readSetText(set.setName));
}

// Record channel that the check box of this number shows.
RecordChannel channelOfCheckBox(int number) {
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        if (channelCheckBoxMap[channel] == number) {
            return {channel};
        }
    }
    return {};
}

}  // namespace

CTessavoView::CTessavoView(TuningState& tuning, IChartHost& chartHost, QWidget* parent,
                           const PageFactory& makePage)
    : QWidget(parent), tuning_(tuning), chartHost_(chartHost), makePage_(makePage) {
    setObjectName(QStringLiteral("mainView"));
    makeHeader();
    makeFlags();
    makeTabs();
}

CTessavoView::~CTessavoView() {
    delete plot_;
}

void CTessavoView::makeHeader() {
    setSelector_ = new SkinComboBox(view_id::setSelector, this);
    setSelector_->setGeometry(20, 10, 132, 28);
    setSelector_->setAccessibleName(QStringLiteral("Parameter set"));
    setSelector_->setToolTip(QStringLiteral("Parameter set"));
    connect(setSelector_, &QComboBox::activated, this, &CTessavoView::chooseSet);

    recordMark_ = new RecordMark(view_id::recordMark, tuning_, this);
    recordMark_->move(2, 16);

    setName_ = new TextEditBox(view_id::setName, this);
    setName_->setGeometry(160, 10, 188, 28);
    setName_->setAccessibleName(QStringLiteral("Set name"));
    setName_->setToolTip(QStringLiteral("Set name"));
    connect(setName_, &QLineEdit::textEdited, this, &CTessavoView::renameSet);
    connect(setName_, &QLineEdit::editingFinished, this, &CTessavoView::leaveSetName);

    eqMode_ = new CxSkinButton(QString(), view_id::eqMode, this);
    eqMode_->setGeometry(374, 10, 124, 28);
    eqMode_->setToggle(true);
    connect(eqMode_, &QAbstractButton::clicked, this, &CTessavoView::toggleLiveMode);

    auto* label = new QLabel(QStringLiteral("Switch Mode"), this);
    label->setGeometry(510, 10, 78, 28);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setFont(theme::font(12));
    paintLabel(*label, theme::text2);

    filterModes_ = new SkinComboBox(view_id::filterMode, this);
    filterModes_->setGeometry(596, 10, 96, 28);
    filterModes_->setAccessibleName(QStringLiteral("Switch Mode"));
    connect(filterModes_, &QComboBox::activated, this, [this](int index) {
        tuning_.setFilterMode(static_cast<std::uint32_t>(index));
        showNotes();
    });

    showPlot_ = new CxSkinButton(QStringLiteral("Show Plot"), view_id::showPlot, this);
    showPlot_->setGeometry(702, 10, 92, 28);
    connect(showPlot_, &QAbstractButton::clicked, this, &CTessavoView::togglePlot);
}

void CTessavoView::makeFlags() {
    for (int i = 0; i < static_cast<int>(channelCount); ++i) {
        const int number = i + 1;
        auto* flag = new SkinCheckBox(QString(), view_id::firstChannelFlag + i, this);
        flag->setGeometry(817 + 24 * i, 7, 22, 22);
        flag->setAccessibleName(QStringLiteral("Channel flag %1").arg(number));
        flag->setToolTip(QStringLiteral("Channel flag %1").arg(number));
        connect(flag, &QAbstractButton::clicked, this, [this, number](bool checked) {
            tuning_.setChannelFlag(channelOfCheckBox(number), checked ? 1 : 0);
        });
        flags_[static_cast<std::size_t>(i)] = flag;
        auto* digit = new QLabel(QString::number(number), this);
        digit->setGeometry(817 + 24 * i, 29, 22, 12);
        digit->setAlignment(Qt::AlignCenter);
        digit->setFont(theme::font(11));
        paintLabel(*digit, theme::text2);
    }
}

void CTessavoView::makeTabs() {
    tabs_ = new eqCTabCtrl(view_id::tabs, this);
    tabs_->setGeometry(pageLeft, headerHeight + 2, 776, 34);
    for (const PageEntry& each : pageTable()) {
        tabs_->addFixedTab(latin(each.title), each.tabWidth);
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
        plot_->setWindowTitle(latin(entryInFront().plotTitle));
        tuning_.setCurveDisplay(plot_);
        updatePlot();
    }
    return *plot_;
}

void CTessavoView::initialUpdate() {
    eqMode_->setText(QStringLiteral("EQ Mode Off"));
    fillSetSelector();
    setSelector_->setCurrentIndex(0);
    for (const std::string_view name : filterMethodNames) {
        filterModes_->addItem(latin(name));
    }
    filterModes_->setCurrentIndex(0);
    setName_->setText(nameOf(tuning_.currentParameterSet()));
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
        flags_[static_cast<std::size_t>(number - 1)]->setChecked(checked);
    }
}

void CTessavoView::refreshPages() {
    for (CTabDialog* page : pages()) {
        page->refresh();
    }
    fillSetSelector();
    setName_->setText(nameOf(tuning_.currentParameterSet()));
    showChannelFlags();
    updatePlot();
    Q_EMIT currentSetChanged();
}

void CTessavoView::showChannelFlags() {
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        checkChannelBox(channelCheckBoxMap[channel],
                        tuning_.currentParameterSet().channels[channel].channelFlag != 0);
    }
}

void CTessavoView::fillSetSelector() {
    setSelector_->clear();
    for (const ParameterSet& set : tuning_.store().sets) {
        setSelector_->addItem(nameOf(set));
        setSelector_->setItemNumber(setSelector_->count() - 1, setSelector_->count());
    }
    setSelector_->setCurrentIndex(static_cast<int>(tuning_.currentSet()));
    markInvalidSets();
}

void CTessavoView::markInvalidSets() {
    for (int set = 0; set < setSelector_->count(); ++set) {
        const QString trouble = recordTrouble(tuning_.store().sets[static_cast<std::size_t>(set)]);
        setSelector_->setItemDot(set, trouble.isEmpty() ? QColor() : QColor::fromRgb(theme::clip));
        setSelector_->setItemData(
            set, trouble.isEmpty() ? QVariant() : QStringLiteral("No valid record: %1").arg(trouble),
            Qt::ToolTipRole);
    }
    recordMark_->showState();
    // The keyboard passes the mark by, and a screen reader goes with it.
    setSelector_->setAccessibleDescription(recordMark_->toolTip());
}

void CTessavoView::toggleLiveMode() {
    // A page that logs the exchange must be there before it starts.
    makePagesUpTo(pageCount);
    const bool on = !tuning_.liveMode();
    tuning_.setLiveMode(on);
    eqMode_->setText(on ? QStringLiteral("EQ Mode On") : QStringLiteral("EQ Mode Off"));
    eqMode_->setOn(on);
    Q_EMIT liveModeChanged(on);
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
    setName_->setText(nameOf(tuning_.currentParameterSet()));
    markInvalidSets();
    showChannelFlags();
    updatePlot();
    Q_EMIT currentSetChanged();
}

void CTessavoView::renameSet(const QString& text) {
    tuning_.setName(text.toStdU16String());
    markInvalidSets();
}

void CTessavoView::leaveSetName() {
    fillSetSelector();
    setName_->setText(nameOf(tuning_.currentParameterSet()));
    Q_EMIT currentSetChanged();
}

void CTessavoView::togglePlot() {
    setPlotShown(!plotShown_);
    updatePlot();
}

void CTessavoView::setPlotShown(bool shown) {
    plotShown_ = shown;
    showPlot_->setText(shown ? QStringLiteral("Hide Plot") : QStringLiteral("Show Plot"));
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
        plot_->setWindowTitle(latin(entryInFront().plotTitle));
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
    const int position = static_cast<int>(channelCount) - 1 - std::countr_zero(tuning_.selectionMask());
    return position >= 0 ? recordChannelAt({static_cast<std::uint8_t>(position)})
                         : tuning_.lastEditedBand().channel;
}

void CTessavoView::tuningChanged() {
    if (!std::exchange(notesAreDue_, true)) {
        QTimer::singleShot(0, this, &CTessavoView::showNotes);
    }
}

// A box knows checked and not checked; set and image hold a byte.
void CTessavoView::markChannelFlags() {
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        SkinCheckBox& flag = *flags_[static_cast<std::size_t>(channelCheckBoxMap[channel] - 1)];
        const int inForce = tuning_.currentParameterSet().channels[channel].channelFlag;
        const int plays = tuning_.image().channels[channel].channelFlag;
        QStringList parts;
        if ((inForce != 0) != flag.isChecked()) {
            parts << (inForce != 0 ? QStringLiteral("In force: checked")
                                   : QStringLiteral("In force: not checked"));
        } else if (inForce > 1) {
            parts << QStringLiteral("In force: code %1").arg(inForce);
        }
        if ((plays != 0) != flag.isChecked()) {
            parts << (plays != 0 ? QStringLiteral("Plays as if checked")
                                 : QStringLiteral("Plays as if not checked"));
        } else if (plays > 1 && plays != inForce) {
            parts << QStringLiteral("Plays code %1").arg(plays);
        }
        flag.setMark(parts.join(QStringLiteral(". ")));
    }
}

void CTessavoView::showNotes() {
    notesAreDue_ = false;
    markChannelFlags();
    const ForeignWords foreign = foreignWords_.find(tuning_);
    filterModes_->setMark(foreignWordsNote(tuning_, foreign));
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
    pageArea_->setGeometry(pageLeft, pageTop, pageAreaWidth, height() - pageTop);
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
    painter.fillRect(360, 11, 1, 26, line);
    painter.fillRect(807, 11, 1, 26, line);
    if (!std::exchange(painted_, true)) {
        // The window is there at once; what is behind its first page follows.
        QTimer::singleShot(0, this, [this] {
            makePagesUpTo(pageCount);
            Q_EMIT firstPainted();
        });
    }
}

}  // namespace tessavo
