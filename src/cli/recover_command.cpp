#include "cli/recover_command.h"

#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/recovery_report.h"
#include "history/notes_file.h"
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

/// Whether the file of notes beside the settings has to change: where there is something to keep, or where it
/// holds other notes.
bool hasToWrite(const std::filesystem::path& settings, const FileNotes& notes) {
    std::error_code unknown;
    const auto type = std::filesystem::status(settings, unknown).type();
    // Nothing stands beside a device.
    if (type != std::filesystem::file_type::regular && type != std::filesystem::file_type::not_found) {
        return false;
    }
    const auto found = readNotes(notesPathOf(settings));
    const auto* const there = std::get_if<FileNotes>(&found);
    return there != nullptr ? *there != notes : !isEmpty(notes);
}

// Tells why the file of notes is left alone; empty where it may be written.
std::string notesTrouble(const std::string& file, bool force) {
    std::error_code unknown;
    if (!std::filesystem::exists(std::filesystem::symlink_status(pathOf(file), unknown))) {
        return {};
    }
    const auto type = std::filesystem::status(pathOf(file), unknown).type();
    if (type == std::filesystem::file_type::directory) {
        return file + ": is a directory";
    }
    if (type != std::filesystem::file_type::regular && type != std::filesystem::file_type::not_found) {
        return file + ": is no regular file";
    }
    return force ? "" : file + ": exists already; --force writes over it";
}

int writeNewest(const TuningSnapshot& newest, const Arguments& arguments, const CommandContext& context) {
    const std::filesystem::path settings = pathOf(arguments.output);
    const FileNotes notes = wellFormed(newest.notes);
    const bool withNotes = hasToWrite(settings, notes);
    const std::string notesFile = textOf(notesPathOf(settings));
    if (withNotes) {
        if (const std::string trouble = notesTrouble(notesFile, arguments.force); !trouble.empty()) {
            context.reporter.error(trouble);
            return exit_code::failed;
        }
    }
    OutputFiles output(context.reporter);
    output.addSettings(arguments.output);
    if (!output.write(newest.store, newest.image)) {
        return exit_code::failed;
    }
    if (withNotes && !writeNotes(settings, notes)) {
        context.reporter.error(notesFile + ": could not be written; the settings file was");
        return exit_code::failed;
    }
    return exit_code::done;
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
    return arguments.output.empty() ? exit_code::done
                                    : writeNewest(found.front().state.trail->state, arguments, context);
}

std::string recoverHelp() {
    return "The window keeps what is being tuned in recovery files of the user's data folder, and offers it "
           "at its "
           "next\nstart. This command only reads them. Names of channels and the note go into "
           "NAME.notes.json "
           "beside NAME.eqs,\nwhich is left alone like an existing settings file. " +
           std::string(dataFolderVariable) + " names another folder than the usual one.";
}

}  // namespace tessavo::cli
