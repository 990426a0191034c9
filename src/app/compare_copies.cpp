#include "app/compare_copies.h"

#include <QApplication>
#include <algorithm>
#include <utility>

#include "app/choice_dialog.h"
#include "app/copy_sources.h"
#include "app/restore_sources.h"
#include "app/ui_file_dialogs.h"
#include "app/wall_time_text.h"
#include "comm/target_commands.h"
#include "copies/target_sets.h"
#include "copies/written_sets.h"
#include "pages/form/form.h"
#include "params/tuning_state.h"

namespace tessavo {

namespace {

QString nameOf(std::uint8_t targetSet) {
    return QString::fromStdString(targetSetTitle(targetSet));
}

QString backupTitle(WallTime time) {
    return QStringLiteral("Backup ") + dayAndTimeText(time);
}

CompareReading trouble(const QString& text) {
    return {.set = {}, .title = {}, .trouble = text};
}

}  // namespace

CompareCopies::CompareCopies(Dependencies dependencies, QObject* parent)
    : QObject(parent), dependencies_(std::move(dependencies)) {}

void CompareCopies::look() {
    if (looking_ || dependencies_.dataFolder.empty()) {
        return;
    }
    looking_ = true;
    jobs_.run([this, folder = knownBackupsFolder(dependencies_.dataFolder)] {
        calls_.call([this, known = KnownBackups(folder).list()] {
            looking_ = false;
            known_ = known;
        });
    });
}

std::vector<CompareSource> CompareCopies::sources() {
    look();
    const QString copies = QStringLiteral("copies");
    std::vector<CompareSource> all;
    all.push_back(
        {QStringLiteral("Target..."), {}, [this](const ParameterSet& base) { return readTarget(base); }});
    for (std::size_t i = 0; i < std::min(known_.size(), listedBackups); ++i) {
        all.push_back({backupTitle(known_[i].time) + QStringLiteral("..."), copies,
                       [this, folder = known_[i].folder](const ParameterSet& base) {
                           return readBackupIn(folder, base);
                       }});
    }
    all.push_back({QStringLiteral("Other backup..."), copies,
                   [this](const ParameterSet& base) { return otherBackup(base); }});
    if (!dependencies_.dataFolder.empty()) {
        all.push_back({QStringLiteral("Written by Tessavo..."), copies,
                       [this](const ParameterSet& base) { return writtenByProgram(base); }});
    }
    return all;
}

// The comparison, from which an entry is chosen, and not the window behind it.
QWidget* CompareCopies::front() const {
    QWidget* const active = QApplication::activeWindow();
    return active != nullptr ? active : &dependencies_.window;
}

CompareReading CompareCopies::readTarget(const ParameterSet& base) {
    const TuningState& tuning = dependencies_.tuning;
    if (tuning.liveMode()) {
        return trouble(textOf(turnOffLiveModeText));
    }
    QStringList names;
    for (const std::uint8_t set : targetSetNumbers) {
        names << nameOf(set);
    }
    const auto row = ChoiceDialog::ask(QStringLiteral("Sets of the Target"), names,
                                       static_cast<int>(tuning.currentSet()), front());
    if (!row) {
        return {};
    }
    const auto sources = targetSources(tuning, dependencies_.transfers, base);
    const CopiedSet copied = sources.at(static_cast<std::size_t>(*row)).read();
    return {.set = copied.set,
            .title = QStringLiteral("Target: ") + names.at(*row),
            .trouble = QString::fromStdString(copied.trouble)};
}

CompareReading CompareCopies::readBackupIn(const std::filesystem::path& folder, const ParameterSet& base) {
    RestoreFolder read;
    jobs_.runAndWait([&] { read = readRestoreFolder(folder); });
    if (!read.source) {
        return trouble(
            QStringLiteral("%1: %2.").arg(folderText(folder), QString::fromStdString(read.trouble)));
    }
    return chooseSet(*read.source, base);
}

CompareReading CompareCopies::chooseSet(const RestoreSource& backup, const ParameterSet& base) {
    QStringList rows;
    for (const SetToWrite& set : backup.sets) {
        rows << nameOf(set.targetSet);
    }
    // What is missing is named, and chosen in vain.
    for (const std::uint8_t number : targetSetNumbers) {
        if (std::ranges::find(backup.sets, number, &SetToWrite::targetSet) == backup.sets.end()) {
            rows << nameOf(number) + QStringLiteral(" is damaged or missing in this backup.");
        }
    }
    const QString title = backupTitle(backup.time);
    const auto row = ChoiceDialog::ask(QStringLiteral("Sets of %1").arg(QString::fromStdString(backup.title)),
                                       rows, 0, front());
    if (!row) {
        return {};
    }
    const auto index = static_cast<std::size_t>(*row);
    if (index >= backup.sets.size()) {
        return trouble(rows.at(*row));
    }
    return {.set = setOfImage(backup.sets[index].image, base),
            .title = title + QStringLiteral(": ") + rows.at(*row),
            .trouble = {}};
}

CompareReading CompareCopies::otherBackup(const ParameterSet& base) {
    std::vector<KnownBackup> known;
    if (!dependencies_.dataFolder.empty()) {
        jobs_.runAndWait([&] { known = KnownBackups(knownBackupsFolder(dependencies_.dataFolder)).list(); });
    }
    if (known.empty()) {
        return backupOfAFolder(base);
    }
    QStringList rows;
    for (const KnownBackup& each : known) {
        rows << QStringLiteral("%1, %2, %3")
                    .arg(dayAndTimeText(each.time), folderText(each.folder),
                         QString::fromStdString(each.port));
    }
    rows << QStringLiteral("Other folder...");
    const auto row = ChoiceDialog::ask(QStringLiteral("Backups of the Target"), rows, 0, front());
    if (!row) {
        return {};
    }
    const auto index = static_cast<std::size_t>(*row);
    return index < known.size() ? readBackupIn(known[index].folder, base) : backupOfAFolder(base);
}

CompareReading CompareCopies::backupOfAFolder(const ParameterSet& base) {
    const auto folder = dependencies_.dialogs.askFolder(openBackupTitle);
    dependencies_.dialogs.resetLocale();
    return folder && !folder->empty() ? readBackupIn(*folder, base) : CompareReading();
}

CompareReading CompareCopies::writtenByProgram(const ParameterSet& base) {
    const WrittenSets written(writtenSetsFolder(dependencies_.dataFolder));
    std::vector<WrittenSet> sets;
    jobs_.runAndWait([&] { sets = written.list().sets; });
    if (sets.empty()) {
        return trouble(QStringLiteral("No set is kept that Tessavo has written into the target."));
    }
    QStringList rows;
    for (const WrittenSet& each : sets) {
        rows << QStringLiteral("%1, %2, %3")
                    .arg(dayAndTimeText(each.time), nameOf(each.targetSet),
                         QString::fromStdString(each.port));
    }
    const auto row = ChoiceDialog::ask(QStringLiteral("Written by Tessavo"), rows, 0, front());
    if (!row) {
        return {};
    }
    const WrittenSet& chosen = sets.at(static_cast<std::size_t>(*row));
    std::optional<ParameterImage> image;
    jobs_.runAndWait([&] { image = written.read(chosen.id); });
    if (!image) {
        return trouble(QStringLiteral("This set is damaged or no longer kept."));
    }
    return {
        .set = setOfImage(*image, base),
        .title = QStringLiteral("Written %1: %2").arg(dayAndTimeText(chosen.time), nameOf(chosen.targetSet)),
        .trouble = {}};
}

}  // namespace tessavo
