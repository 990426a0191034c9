#include "app/compare_side.h"

#include <QAbstractItemView>
#include <QDateTime>
#include <QKeyEvent>
#include <QPointer>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>

#include "app/choice_dialog.h"
#include "app/plain_tool_tip.h"
#include "app/record_mark.h"
#include "app/ui_file_dialogs.h"
#include "controls/control_id.h"
#include "pages/form/form.h"
#include "params/set_text.h"
#include "params/settings_commands.h"

namespace tessavo {

namespace {

constexpr int noControl = -1;
constexpr std::size_t listedSteps = 5;
constexpr int visibleEntries = 24;
constexpr int rowMargins = 16;
constexpr int widestList = 480;

QString timeOf(const Step& step) {
    using namespace std::chrono;
    const auto local =
        QDateTime::fromMSecsSinceEpoch(duration_cast<milliseconds>(step.time.time_since_epoch()).count());
    const bool isToday = local.date() == QDate::currentDate();
    return local.toString(isToday ? QStringLiteral("HH:mm") : QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString wordsOf(const Step& step, const char* word) {
    return QStringLiteral("%1 %2, %3")
        .arg(QLatin1String(word), textOf(std::string_view(step.text)).simplified(), timeOf(step));
}

QString startOf(const History& history) {
    return history.dropped() == 0 ? QStringLiteral("at start") : QStringLiteral("oldest state that is kept");
}

CompareReading trouble(const QString& text) {
    return {.set = {}, .title = {}, .trouble = text};
}

}  // namespace

QString nameOfSet(const ParameterSet& set, std::uint32_t index) {
    const QString name = QString::fromStdU16String(readSetText(set.setName)).simplified();
    return name.isEmpty() ? QStringLiteral("Set %1").arg(index + 1) : name;
}

CompareSide::CompareSide(Dependencies dependencies, const QString& name, QWidget* parent)
    : SkinComboBox(noControl, parent), dependencies_(std::move(dependencies)) {
    setAccessibleName(name);
    setMaxVisibleItems(visibleEntries);
    connect(this, &QComboBox::activated, this, &CompareSide::choose);
    fill();
}

const ParameterSet& CompareSide::record() const {
    const TuningState& tuning = dependencies_.tuning;
    switch (shown_.kind) {
        case ComparedSet::Kind::current:
            return tuning.currentParameterSet();
        case ComparedSet::Kind::own:
            return tuning.store().sets[shown_.set];
        default:
            return shown_.record;
    }
}

std::optional<std::uint32_t> CompareSide::writable() const {
    switch (shown_.kind) {
        case ComparedSet::Kind::current:
            return dependencies_.tuning.currentSet();
        case ComparedSet::Kind::own:
            return shown_.set;
        default:
            return std::nullopt;
    }
}

QString CompareSide::title() const {
    const auto own = writable();
    return own ? nameOfSet(record(), *own) : shown_.title;
}

QString CompareSide::shownText() const {
    return shown_.kind == ComparedSet::Kind::current ? QStringLiteral("Current set: ") + title() : title();
}

void CompareSide::setShown(const ComparedSet& set) {
    shown_ = set;
    fill();
}

void CompareSide::follow() {
    // An open list stays as it is.
    if (!view()->isVisible() && currentText() != shownText()) {
        fill();
    }
}

void CompareSide::fill() {
    const QSignalBlocker quiet(this);
    entries_.clear();
    clear();
    addSets();
    if (shown_.kind == ComparedSet::Kind::read) {
        part();
        add(shown_.title, shown_);
        setCurrentIndex(count() - 1);
    } else {
        setCurrentIndex(
            findData(shown_.kind == ComparedSet::Kind::current ? 0 : 1 + static_cast<int>(shown_.set)));
    }
    // A list that is too narrow for a name tells it all the same.
    setToolTip(plainToolTip(QStringLiteral("%1: %2").arg(accessibleName(), shownText())));
    update();
}

void CompareSide::addSets() {
    const TuningState& tuning = dependencies_.tuning;
    add(QStringLiteral("Current set: ") + nameOfSet(tuning.currentParameterSet(), tuning.currentSet()),
        ComparedSet{});
    part();
    for (std::uint32_t set = 0; set < setCount; ++set) {
        add(nameOfSet(tuning.store().sets[set], set), {ComparedSet::Kind::own, set, {}, {}});
        setItemNumber(count() - 1, static_cast<int>(set) + 1);
    }
}

void CompareSide::addSources() {
    part();
    std::vector<CompareSource> sources =
        dependencies_.sources ? dependencies_.sources() : std::vector<CompareSource>();
    const auto behind = std::stable_partition(
        sources.begin(), sources.end(), [](const CompareSource& source) { return source.group.isEmpty(); });
    for (auto source = sources.begin(); source != behind; ++source) {
        add(source->title, std::move(source->read));
    }
    add(QStringLiteral("File..."), [this](const ParameterSet& /*base*/) { return readFile(); });
    QString group;
    for (auto source = behind; source != sources.end(); ++source) {
        if (source->group != group) {
            part();
            group = source->group;
        }
        add(source->title, std::move(source->read));
    }
}

void CompareSide::addHistory() {
    const History& history = dependencies_.history;
    if (history.steps().empty()) {
        return;
    }
    part();
    const auto addStep = [this](std::size_t position, const QString& words) {
        const QString title = QStringLiteral("History: ") + words;
        add(title,
            [this, position, title](const ParameterSet& /*base*/) { return readStep(position, title); });
    };
    const std::size_t now = history.position();
    const std::size_t last = now - std::min(now, listedSteps);
    for (std::size_t position = now; position-- > last;) {
        addStep(position, wordsOf(*history.steps()[position], "before"));
    }
    addStep(0, startOf(history));
    add(QStringLiteral("Other step..."), [this](const ParameterSet& /*base*/) { return askStep(); });
}

void CompareSide::part() {
    insertSeparator(count());
}

void CompareSide::add(const QString& text, std::function<CompareReading(const ParameterSet&)> read) {
    ComparedSet set{ComparedSet::Kind::read, 0, {}, text};
    addItem(text, static_cast<int>(entries_.size()));
    entries_.push_back({std::move(set), std::move(read)});
}

void CompareSide::add(const QString& text, ComparedSet set) {
    addItem(text, static_cast<int>(entries_.size()));
    entries_.push_back({std::move(set), {}});
}

void CompareSide::choose(int index) {
    const auto number = static_cast<std::size_t>(itemData(index).toInt());
    if (!itemData(index).isValid() || number >= entries_.size()) {
        fill();
        return;
    }
    Entry entry = entries_[number];
    if (!entry.read && entry.set.kind == shown_.kind && entry.set.set == shown_.set) {
        return;
    }
    if (entry.read) {
        // Until there is another set the list tells the one that is shown.
        fill();
        // An exchange or a dialog may run the event loop, and the window may be closed meanwhile.
        const QPointer<CompareSide> alive(this);
        const CompareReading reading = entry.read(dependencies_.tuning.store().sets[baseSet()]);
        if (!alive) {
            return;
        }
        if (!reading.set) {
            if (!reading.trouble.isEmpty()) {
                Q_EMIT failed(reading.trouble);
            }
            return;
        }
        entry.set.record = *reading.set;
        if (!reading.title.isEmpty()) {
            entry.set.title = reading.title;
        }
    }
    setShown(entry.set);
    Q_EMIT chosen();
}

CompareReading CompareSide::readFile() {
    IFileDialogs& dialogs = dependencies_.dialogs;
    const auto path = dialogs.askOpenPath(settingsFilter);
    dialogs.resetLocale();
    if (!path || path->empty()) {
        return {};
    }
    const QString name = textOf(path->filename());
    ParameterStore store;
    // Any valid set makes it a settings file; the chosen one is looked at once more.
    LoadVerdict verdict = LoadVerdict::incompatible;
    for (std::size_t set = 0; set < setCount && verdict == LoadVerdict::incompatible; ++set) {
        verdict = readSettings(*path, set, store);
    }
    if (verdict != LoadVerdict::loaded) {
        return trouble(verdict == LoadVerdict::cannotOpen
                           ? QStringLiteral("%1 cannot be opened.").arg(name)
                           : QStringLiteral("%1 is no settings file.").arg(name));
    }
    QStringList names;
    for (std::uint32_t set = 0; set < setCount; ++set) {
        names << QStringLiteral("%1  %2").arg(set + 1).arg(nameOfSet(store.sets[set], set));
    }
    const auto chosen = ChoiceDialog::ask(QStringLiteral("Sets of %1").arg(name), names,
                                          static_cast<int>(dependencies_.tuning.currentSet()), window());
    if (!chosen) {
        return {};
    }
    const auto index = static_cast<std::uint32_t>(*chosen);
    const ParameterSet& set = store.sets[index];
    const QString title = QStringLiteral("%1: %2").arg(name, nameOfSet(set, index));
    if (const QString reason = recordTrouble(set); !reason.isEmpty()) {
        return trouble(QStringLiteral("%1 is no valid record: %2").arg(title, reason));
    }
    return {.set = set, .title = title, .trouble = {}};
}

std::uint32_t CompareSide::baseSet() const {
    return dependencies_.baseSet ? dependencies_.baseSet() : dependencies_.tuning.currentSet();
}

CompareReading CompareSide::readStep(std::size_t position, const QString& title) const {
    const auto sets = dependencies_.history.setsAt(position);
    if (sets == nullptr) {
        return trouble(QStringLiteral("This step is gone."));
    }
    return {.set = sets->sets.at(baseSet()), .title = title, .trouble = {}};
}

CompareReading CompareSide::askStep() {
    const History& history = dependencies_.history;
    QStringList words{startOf(history)};
    for (const auto& step : history.steps()) {
        words << wordsOf(*step, "after");
    }
    const auto row = ChoiceDialog::ask(QStringLiteral("Steps of the History"), words,
                                       static_cast<int>(history.position()), window());
    if (!row) {
        return {};
    }
    // The target may have parted the newest step meanwhile, by confirming a state in its middle.
    const std::size_t position =
        *row == words.size() - 1 ? history.steps().size() : static_cast<std::size_t>(*row);
    return readStep(position, QStringLiteral("History: ") + words.at(*row));
}

// The entries are as long as a step of the history tells, and longer than the side is wide.
void CompareSide::showWidth() {
    for (int index = 0; index < count(); ++index) {
        setItemData(index, plainToolTip(itemText(index)), Qt::ToolTipRole);
    }
    const int wanted = neededWidth() + rowMargins + view()->verticalScrollBar()->sizeHint().width();
    view()->setMinimumWidth(std::max(width(), std::min(wanted, widestList)));
}

void CompareSide::showPopup() {
    fill();
    addSources();
    addHistory();
    showWidth();
    SkinComboBox::showPopup();
}

void CompareSide::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F4:
            showPopup();
            break;
        default:
            event->ignore();
    }
}

void CompareSide::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace tessavo
