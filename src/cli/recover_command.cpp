#include "cli/recover_command.h"

#include <ostream>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/recovery_report.h"
#include "history/recovery_store.h"
#include "platform/data_folder.h"

namespace tessavo::cli {

namespace {

// One line for each file that gives nothing.
std::vector<std::string> troubles(const RecoveryList& list) {
    std::vector<std::string> lines;
    for (const auto& file : list.damaged) {
        lines.push_back(textOf(file) + ": is damaged, nothing can be restored from it");
    }
    for (const auto& file : list.newer) {
        lines.push_back(textOf(file) + ": a later version of Tessavo wrote it, and that version restores it");
    }
    for (const auto& file : list.unreadable) {
        lines.push_back(textOf(file) + ": cannot be read");
    }
    return lines;
}

std::vector<FoundRecovery> readAll(const RecoveryList& list) {
    std::vector<FoundRecovery> found;
    for (const WaitingRecovery& one : list.waiting) {
        // One that a window has restored or discarded meanwhile is gone.
        if (auto state = RecoveryStore::take(one)) {
            found.push_back({one.file, std::move(*state)});
        }
    }
    return found;
}

}  // namespace

int runRecover(const Arguments& arguments, const CommandContext& context) {
    if (!arguments.output.empty() && !arguments.force && isExistingFile(arguments.output)) {
        context.reporter.error(arguments.output + ": exists already; --force writes over it");
        return exit_code::failed;
    }
    const RecoveryStore store(dataFolder());
    const RecoveryList list = store.look();
    const std::vector<FoundRecovery> found = readAll(list);
    for (const std::string& line : troubles(list)) {
        found.empty() ? context.reporter.error(line) : context.reporter.note(line);
    }
    if (arguments.json) {
        context.console.out << recoveriesJson(found, list);
    }
    if (found.empty()) {
        context.reporter.error("there is nothing to restore");
        return exit_code::failed;
    }
    if (!arguments.json) {
        context.console.out << recoveriesReport(found);
    }
    if (arguments.output.empty()) {
        return exit_code::done;
    }
    const TuningSnapshot& newest = found.front().state.trail->state;
    OutputFiles output(context.reporter);
    output.addSettings(arguments.output);
    return output.write(newest.store, newest.image) ? exit_code::done : exit_code::failed;
}

std::string recoverHelp() {
    return "The window keeps what is being tuned in recovery files of the user's data folder, and offers it "
           "at its "
           "next\nstart. This command only reads them. " +
           std::string(dataFolderVariable) + " names another folder than the usual one.";
}

}  // namespace tessavo::cli
