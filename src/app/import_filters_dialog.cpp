#include "app/import_filters_dialog.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QShortcut>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "app/copy_parts.h"
#include "app/import_chart.h"
#include "app/import_into.h"
#include "app/import_rows.h"
#include "app/plain_tool_tip.h"
#include "app/ui_file_dialogs.h"
#include "base/number_text.h"
#include "base/raw_file.h"
#include "controls/color_control.h"
#include "controls/read_only_edit.h"
#include "controls/screen_room.h"
#include "controls/skin_button.h"
#include "controls/theme.h"
#include "pages/form/form.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr int noControl = -1;
constexpr int margin = 16;
constexpr int gap = 8;
constexpr int partGap = 12;
constexpr int headTop = 14;
constexpr int listTop = 54;
constexpr int footHeight = 52;
constexpr int controlHeight = 28;
constexpr int buttonWidth = 84;
constexpr int boxHeight = 128;
constexpr int boxBottom = 68;
constexpr int intoWidth = 470;
// Less is what rounding to the target's steps makes.
constexpr double leastDeviationDb = 0.05;

const FileFilter filterTexts{
    "Filter texts (*.txt *.csv *.yml *.yaml)|*.txt;*.csv;*.yml;*.yaml|All files (*)|*||", "txt"};

// A path could be meant as well.
QString words(std::string_view text) {
    return textOf(text);
}

bool hasFile(const QMimeData& data) {
    return data.hasUrls() && data.urls().size() == 1 && data.urls().constFirst().isLocalFile();
}

QString placeText(const FilterText& text) {
    if (text.troubleLine == 0) {
        return {};
    }
    const QString line = QStringLiteral(", line %1").arg(text.troubleLine);
    return text.troubleColumn == 0 ? line : line + QStringLiteral(", column %1").arg(text.troubleColumn);
}

}  // namespace

ImportFiltersDialog::ImportFiltersDialog(const Dependencies& dependencies, QWidget* parent)
    : CDialogSK(parent), dependencies_(dependencies) {
    setObjectName(QStringLiteral("importFilters"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Import Filters"));
    setAcceptDrops(true);
    makeHead();
    view_ = new ImportView(list_, this);
    into_ = new ImportInto(dependencies_.tuning, this);
    chart_ = new ImportChart(this);
    makeFoot();
    setTabOrders();
    connect(into_, &ImportInto::changed, this, &ImportFiltersDialog::planAnew);
    connect(into_, &ImportInto::textChannelChanged, this,
            [this] { showText(readFilterText(bytes_, into_->textChannel())); });
    setMinimumSize(leastSize);
    resize(usualSize.boundedTo(roomOnScreen(parent)));
    planAnew();
    open_->setFocus();
}

void ImportFiltersDialog::makeHead() {
    file_ = new CReadOnlyEdit(noControl, this);
    file_->setAccessibleName(QStringLiteral("File"));
    file_->setPlaceholderText(QStringLiteral("Open a file, paste a text, or drop a file here"));
    open_ = makeButton(QStringLiteral("Open..."), this);
    open_->setToolTip(QStringLiteral("Opens a filter text of another program (Ctrl+O)"));
    paste_ = makeButton(QStringLiteral("Paste"), this);
    paste_->setToolTip(QStringLiteral("Takes the text of the clipboard (Ctrl+V)"));
    connect(open_, &QAbstractButton::clicked, this, &ImportFiltersDialog::chooseFile);
    connect(paste_, &QAbstractButton::clicked, this, &ImportFiltersDialog::paste);
    auto* const opens = new QShortcut(QKeySequence::Open, this);
    connect(opens, &QShortcut::activated, this, &ImportFiltersDialog::chooseFile);
    auto* const pastes = new QShortcut(QKeySequence::Paste, this);
    connect(pastes, &QShortcut::activated, this, &ImportFiltersDialog::paste);
}

void ImportFiltersDialog::makeFoot() {
    message_ = makeLabel({}, this);
    message_->setWordWrap(true);
    apply_ = makeButton(QStringLiteral("Apply"), this);
    apply_->setAccented(true);
    cancel_ = makeButton(QStringLiteral("Cancel"), this);
    for (CxSkinButton* const button : {open_, paste_, apply_, cancel_}) {
        button->setAutoDefault(true);
    }
    apply_->setDefault(true);
    connect(apply_, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cancel_, &QAbstractButton::clicked, this, &QDialog::reject);
}

void ImportFiltersDialog::setTabOrders() {
    std::vector<QWidget*> order{file_, open_, paste_, view_};
    std::ranges::copy(into_->controls(), std::back_inserter(order));
    order.insert(order.end(), {apply_, cancel_});
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void ImportFiltersDialog::chooseFile() {
    const auto path = dependencies_.dialogs.askOpenPath(filterTexts);
    dependencies_.dialogs.resetLocale();
    if (path && !path->empty()) {
        openFile(*path);
    }
}

void ImportFiltersDialog::openFile(const std::filesystem::path& path) {
    const auto start = readFileStart(path, mostFilterTextBytes + 1);
    if (!start) {
        showTrouble(textOf(path.filename()) + QStringLiteral(": cannot be read."));
        return;
    }
    takeText({start->bytes.begin(), start->bytes.end()}, textOf(path));
}

void ImportFiltersDialog::paste() {
    const QMimeData* const held = QGuiApplication::clipboard()->mimeData();
    if (held == nullptr || !(hasFile(*held) || held->hasText())) {
        showTrouble(QStringLiteral("The clipboard holds no text."));
        return;
    }
    takeMime(*held, QStringLiteral("Clipboard"));
}

void ImportFiltersDialog::takeMime(const QMimeData& mime, const QString& name) {
    if (hasFile(mime)) {
        openFile(pathOf(mime.urls().constFirst().toLocalFile()));
    } else {
        takeText(mime.text().toStdString(), name);
    }
}

void ImportFiltersDialog::takeText(const std::string& bytes, const QString& name) {
    FilterText text = readFilterText(bytes);
    if (!text.trouble.empty()) {
        showTrouble(QFileInfo(name).fileName() + placeText(text) + QStringLiteral(": ") +
                    words(text.trouble));
        return;
    }
    bytes_ = bytes;
    file_->setText(name);
    file_->setToolTip(plainToolTip(name));
    trouble_.clear();
    showText(std::move(text));
    // Enter applies from here, and the keys go through the lines.
    view_->setCurrentIndex(list_.index(0, 0));
    view_->setFocus(Qt::OtherFocusReason);
}

void ImportFiltersDialog::showTrouble(const QString& text) {
    trouble_ = text;
    showFoot();
}

void ImportFiltersDialog::showText(FilterText text) {
    text_ = std::move(text);
    const auto wantsBand = [](const FilterLine& line) {
        return line.meaning && line.device && isBand(line.device->shape);
    };
    into_->showText(text_, static_cast<std::size_t>(std::ranges::count_if(text_.lines, wantsBand)));
    list_.show(text_, plan_ = {});
    planAnew();
}

void ImportFiltersDialog::planAnew() {
    const TuningState& tuning = dependencies_.tuning;
    const ParameterSet& before = tuning.currentParameterSet();
    const OutputChannelParams& channelBefore = before.channels.at(channel().value);
    plan_ = text_.lines.empty() ? ImportPlan{channelBefore, {}, 0, 0}
                                : planImport(text_, channelBefore, into_->choice());
    list_.showPlan(text_, plan_);
    const std::size_t position = pagePositionOf(channel()).value;
    chart_->show(curves_.curveOf(before, channel(), tuning.filterMode()),
                 curves_.curveOf(record(), channel(), tuning.filterMode()),
                 QColor::fromRgb(theme::channels.at(position)));
    showFoot();
}

RecordChannel ImportFiltersDialog::channel() const {
    return into_->channel();
}

ParameterSet ImportFiltersDialog::record() const {
    ParameterSet set = dependencies_.tuning.currentParameterSet();
    set.channels.at(channel().value) = plan_.after;
    return set;
}

QString ImportFiltersDialog::message() const {
    return message_->text();
}

QString ImportFiltersDialog::whyNot() const {
    if (!trouble_.isEmpty()) {
        return trouble_;
    }
    if (text_.lines.empty()) {
        return QStringLiteral("Open or paste a filter text first.");
    }
    const bool takesSome = std::ranges::any_of(
        plan_.lines, [](const ImportedLine& line) { return line.band || line.crossover; });
    return takesSome || plan_.preampAddedDb != 0
               ? QString()
               : QStringLiteral("No line of the text goes into the channel.");
}

// What a person would otherwise find out by ear.
QString ImportFiltersDialog::remarks() const {
    QStringList parts;
    if (const int count = list_.leftOut(); count != 0) {
        parts << QStringLiteral("%1 left out.").arg(count);
    }
    const TuningState& tuning = dependencies_.tuning;
    const auto deviation = importDeviation(text_, plan_, tuning.generator());
    if (deviation && std::abs(deviation->db) >= leastDeviationDb) {
        parts << QStringLiteral("With %1 up to %2 off the text, at %3 Hz.")
                     .arg(words(filterMethodNames.at(tuning.filterMode())), signedDecibels(deviation->db),
                          words(fixedText(deviation->hz, 0)));
    }
    if (plan_.preampLeftDb != 0 && into_->choice().withPreamp) {
        parts << signedDecibels(plan_.preampLeftDb) + QStringLiteral(" of the preamp are left.");
    }
    return parts.join(QLatin1Char(' '));
}

void ImportFiltersDialog::showFoot() {
    const QString why = whyNot();
    apply_->setEnabled(why.isEmpty());
    apply_->setToolTip(plainToolTip(why));
    QString text = why;
    if (trouble_.isEmpty() && !text_.lines.empty()) {
        text = words(verdictCounts(text_)) + QLatin1Char(' ') +
               (why.isEmpty() ? QStringLiteral("One step of undo.") : why);
        if (const QString more = remarks(); !more.isEmpty()) {
            text += QLatin1Char('\n') + more;
        }
    }
    // What is the same is not read aloud once more.
    if (text != message_->text()) {
        tell(*message_, text, !trouble_.isEmpty());
    }
}

void ImportFiltersDialog::dragEnterEvent(QDragEnterEvent* event) {
    if (hasFile(*event->mimeData()) || event->mimeData()->hasText()) {
        event->acceptProposedAction();
    }
}

void ImportFiltersDialog::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    takeMime(*event->mimeData(), QStringLiteral("Dropped text"));
}

void ImportFiltersDialog::paintBackground(QPainter& painter, QSize size) const {
    CDialogSK::paintBackground(painter, size);
    paintFoot(painter, size, footHeight);
}

void ImportFiltersDialog::resizeEvent(QResizeEvent* event) {
    CDialogSK::resizeEvent(event);
    const int right = width() - margin;
    paste_->setGeometry(right - buttonWidth, headTop, buttonWidth, controlHeight);
    open_->setGeometry(paste_->x() - gap - buttonWidth, headTop, buttonWidth, controlHeight);
    file_->setGeometry(margin, headTop, open_->x() - gap - margin, controlHeight);
    const int boxTop = height() - boxBottom - boxHeight;
    view_->setGeometry(margin, listTop, right - margin, boxTop - partGap - listTop);
    into_->setGeometry(margin, boxTop, intoWidth, boxHeight);
    const int chartLeft = margin + intoWidth + partGap;
    chart_->setGeometry(chartLeft, boxTop, right - chartLeft, boxHeight);
    const int foot = height() - footHeight + (footHeight - controlHeight) / 2;
    cancel_->setGeometry(right - buttonWidth, foot, buttonWidth, controlHeight);
    apply_->setGeometry(cancel_->x() - gap - buttonWidth, foot, buttonWidth, controlHeight);
    message_->setGeometry(margin, height() - footHeight + 2, apply_->x() - margin - gap, footHeight - 4);
}

}  // namespace tessavo
