#include "cli/copy_commands.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/kept_writes.h"
#include "cli/port_session.h"
#include "copies/backup_folder.h"
#include "copies/copy_text.h"
#include "copies/known_backups.h"
#include "copies/restore.h"
#include "platform/data_folder.h"

namespace tessavo::cli {

namespace {

constexpr std::string_view noFolderText = "no folder was written";
constexpr std::string_view notComparedText = "not every set was compared";

// Tells each exchange; ends with Ctrl-C, and where the port could not be used from the start.
CopyWatch watchOf(PortSession& session, Reporter& reporter) {
    CopyWatch watch;
    watch.progress = [&reporter](const CopyProgress& progress) {
        reporter.note(copyActText(progress.act, progress.targetSet) + " (" +
                      std::to_string(progress.done + 1) + " of " + std::to_string(progress.all) + ")");
    };
    watch.mayGoOn = [&session] {
        return !session.interrupted() && (!session.tried() || session.everUsable());
    };
    watch.nothingSent = [&session] { return session.portUnusable(); };
    return watch;
}

std::string listOf(const std::vector<SetToWrite>& sets) {
    std::string list;
    for (std::size_t i = 0; i < sets.size(); ++i) {
        list += i == 0 ? "" : i + 1 < sets.size() ? ", " : " and ";
        list += targetSetText(sets[i].targetSet);
    }
    return list;
}

// Nothing when there is no backup, which is told.
std::optional<TargetCopy> loadBackup(const std::string& folder, Reporter& reporter) {
    BackupRead read = readBackup(pathOf(folder));
    if (!read.copy) {
        reporter.error(folder + ": " + read.trouble);
    }
    return std::move(read.copy);
}

/// Sets of a backup for the target.
struct ChosenSets {
    std::vector<SetToWrite> sets;
    bool allThere = true;  ///< each that was wanted can be used
};

// Tells of those that cannot be used.
ChosenSets choose(const TargetCopy& copy, const std::vector<std::uint8_t>& wanted, const std::string& folder,
                  Reporter& reporter) {
    ChosenSets chosen;
    for (const std::uint8_t number : wanted) {
        const SetCopy& set = copy.set(number);
        if (const auto image = set.image()) {
            chosen.sets.push_back({.targetSet = number, .image = *image});
        } else {
            reporter.error(folder + ": " + troubleText(set));
            chosen.allThere = false;
        }
    }
    return chosen;
}

std::vector<std::uint8_t> setsWithoutDefault() {
    std::vector<std::uint8_t> sets(targetSetNumbers.begin(), targetSetNumbers.end());
    std::erase(sets, std::uint8_t{0});
    return sets;
}

int tellWouldRestore(const Arguments& arguments, const ChosenSets& chosen, Reporter& reporter) {
    reporter.error("nothing was sent; with --yes, " + listOf(chosen.sets) + " of " + arguments.file +
                   " would go into the target at " + arguments.port);
    reporter.error(playsInTurnText);
    return exit_code::wrongUsage;
}

// Says of every set, and of what is heard, where a restore has ended.
void tellRestoreFailure(const RestoreReport& report, PortSession& session, Reporter& reporter) {
    const auto done = std::ranges::count(report.sets, RestoredState::done, &RestoreReport::Row::state);
    session.tellFailure(
        restoreEndText(report),
        std::to_string(done) + " of " + std::to_string(report.sets.size()) + " sets are restored");
    for (const RestoreReport::Row& row : report.sets) {
        reporter.error(restoredText(row));
    }
    reporter.error(playsNowText(report.plays));
}

int tellComparison(const std::vector<Comparison>& rows, PortSession& session, const CommandContext& context) {
    using Result = Comparison::Result;
    if (session.interrupted() || !session.everUsable()) {
        session.tellFailure("the exchange with the target failed", notComparedText);
        return exit_code::failed;
    }
    for (const Comparison& row : rows) {
        context.console.out << comparisonText(row) << "\n";
    }
    const bool equal =
        std::ranges::all_of(rows, [](const Comparison& row) { return row.result == Result::equal; });
    return equal ? exit_code::done : exit_code::failed;
}

int storeBackup(const TargetCopy& copy, const Arguments& arguments, const CommandContext& context) {
    if (const std::string trouble = writeBackup(pathOf(arguments.output), copy); !trouble.empty()) {
        context.reporter.error(arguments.output + ": " + trouble);
        return exit_code::failed;
    }
    if (!KnownBackups(knownBackupsFolder(dataFolder())).add(pathOf(arguments.output))) {
        context.reporter.note("the window will not know of this backup: the data folder cannot be written");
    }
    int code = exit_code::done;
    const auto sound = std::ranges::count(copy.sets, SetState::sound, &SetCopy::state);
    for (const SetCopy& set : copy.sets) {
        if (const std::string trouble = troubleText(set); !trouble.empty()) {
            context.reporter.error(trouble);
            code = exit_code::failed;
        }
    }
    if (!copy.versions) {
        context.reporter.error("the versions could not be read from the target");
        code = exit_code::failed;
    }
    context.console.out << sound << " of " << copy.sets.size() << " sets of the target were read into "
                        << arguments.output << "\n";
    return code;
}

}  // namespace

int runBackup(const Arguments& arguments, const CommandContext& context) {
    // What cannot be written need not be read first.
    if (const std::string trouble = backupFolderTrouble(pathOf(arguments.output)); !trouble.empty()) {
        context.reporter.error(arguments.output + ": " + trouble);
        return exit_code::failed;
    }
    PortSession session(arguments, context);
    BackUp backup = backUp(session.engine(), watchOf(session, context.reporter));
    if (backup.cancelled || session.interrupted() || backup.copy.isEmpty()) {
        session.tellFailure("no set of the target could be read", noFolderText);
        return exit_code::failed;
    }
    backup.copy.port = arguments.port;
    backup.copy.time = std::chrono::system_clock::now();
    return storeBackup(backup.copy, arguments, context);
}

int runRestore(const Arguments& arguments, const CommandContext& context) {
    const auto copy = loadBackup(arguments.file, context.reporter);
    if (!copy) {
        return exit_code::failed;
    }
    const bool named = !arguments.targetSets.empty();
    const ChosenSets chosen =
        choose(*copy, named ? arguments.targetSets : setsWithoutDefault(), arguments.file, context.reporter);
    // Who names sets wants these and not some of them.
    if (chosen.sets.empty() || (named && !chosen.allThere)) {
        context.reporter.error(arguments.file + ": nothing was sent");
        return exit_code::failed;
    }
    if (!arguments.yes) {
        return tellWouldRestore(arguments, chosen, context.reporter);
    }
    context.reporter.note(playsInTurnText);
    PortSession session(arguments, context);
    const RestoreReport report =
        restoreSets(session.engine(), session.clock(), chosen.sets, watchOf(session, context.reporter),
                    [&](const SetToWrite& set) {
                        keepWritten(set.targetSet, arguments.port, set.image, context.reporter);
                    });
    if (report.end != RestoreReport::End::done) {
        tellRestoreFailure(report, session, context.reporter);
        return exit_code::failed;
    }
    for (const RestoreReport::Row& row : report.sets) {
        context.console.out << restoredText(row) << "\n";
    }
    context.console.out << playsNowText(report.plays) << "\n";
    return chosen.allThere ? exit_code::done : exit_code::failed;
}

int runVerify(const Arguments& arguments, const CommandContext& context) {
    const auto copy = loadBackup(arguments.file, context.reporter);
    if (!copy) {
        return exit_code::failed;
    }
    const std::vector<std::uint8_t> all(targetSetNumbers.begin(), targetSetNumbers.end());
    const ChosenSets chosen = choose(*copy, all, arguments.file, context.reporter);
    if (chosen.sets.empty()) {
        context.reporter.error(arguments.file + ": there is nothing to compare");
        return exit_code::failed;
    }
    PortSession session(arguments, context);
    const std::vector<Comparison> rows =
        compareSets(session.engine(), chosen.sets, watchOf(session, context.reporter));
    const int code = tellComparison(rows, session, context);
    return chosen.allThere ? code : exit_code::failed;
}

std::string restoreHelp() {
    return std::string(playsInTurnText) +
           " For each set the\nimage goes live, is confirmed, saved, read back and compared. The default set "
           "is "
           "restored only when --sets names it.";
}

}  // namespace tessavo::cli
