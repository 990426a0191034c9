#include "cli/port_commands.h"

#include <array>
#include <optional>
#include <ostream>
#include <string>

#include "base/raw_file.h"
#include "cli/clip_report.h"
#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/file_commands.h"
#include "cli/kept_writes.h"
#include "cli/port_session.h"
#include "comm/framing.h"
#include "comm/live_worker.h"
#include "comm/port_list.h"
#include "comm/target_commands.h"
#include "copies/target_sets.h"
#include "params/tuning_state.h"

namespace tessavo::cli {

namespace {

constexpr std::string_view exchangeFailedText = "the exchange with the target failed";
constexpr std::string_view nothingWrittenText = "no file was written";

// Sends the current set live and waits for its confirmation. Tells what fails.
bool sendLive(TuningState& tuning, PortSession& session, const CommandContext& context,
              std::string_view consequence) {
    tuning.setLiveMode(true);
    std::array<std::uint8_t, maximumFrameSize> reply{};
    const LiveOutcome outcome = sendLiveImage(session.engine(), session.clock(), tuning.image(), reply);
    if (!outcome.sent) {
        session.tellFailure("the target did not take the image", consequence);
        return false;
    }
    if (!outcome.answered) {
        session.tellFailure("the target took the image but did not answer the confirmation request",
                            consequence);
        return false;
    }
    if (!outcome.confirmed) {
        context.reporter.showError(wrongSetText);
        session.tellFailure("the target did not confirm the image", consequence);
        return false;
    }
    return true;
}

}  // namespace

int runPorts(const Arguments& /*arguments*/, const CommandContext& context) {
    const std::vector<std::string> ports = listPorts();
    for (const std::string& port : ports) {
        context.console.out << port << "\n";
    }
    if (ports.empty()) {
        context.reporter.note(
            "no serial port was found; name more of them in the environment variable TESSAVO_PORTS");
    }
    return exit_code::done;
}

int runVersions(const Arguments& arguments, const CommandContext& context) {
    TuningState tuning(context.reporter);
    PortSession session(arguments, context);
    const auto versions = TargetCommands(tuning, session.engine(), context.reporter).ReadVersions();
    if (!versions) {
        session.tellFailure(exchangeFailedText, "the versions are not known");
        return exit_code::failed;
    }
    context.console.out << "Hardware Version " << versionText(versions->hardware) << "\nSoftware Version "
                        << versionText(versions->software) << "\n";
    return exit_code::done;
}

int runClip(const Arguments& arguments, const CommandContext& context) {
    TuningState tuning(context.reporter);
    PortSession session(arguments, context);
    const auto state = TargetCommands(tuning, session.engine(), context.reporter).ReadClipState();
    if (!state) {
        session.tellFailure(exchangeFailedText, "the clip state is not known");
        return exit_code::failed;
    }
    context.console.out << clipReport(*state);
    return exit_code::done;
}

int runLive(const Arguments& arguments, const CommandContext& context) {
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeSetToSend(tuning, *store, arguments);
    noteInputEq(*store, arguments, context.reporter);
    PortSession session(arguments, context);
    if (!sendLive(tuning, session, context, "what it plays now is not known")) {
        return exit_code::failed;
    }
    context.console.out << "set " << arguments.set << " was sent live and confirmed\n";
    return exit_code::done;
}

int runWriteSet(const Arguments& arguments, const CommandContext& context) {
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeSetToSend(tuning, *store, arguments);
    noteInputEq(*store, arguments, context.reporter);
    PortSession session(arguments, context);
    const std::string savedSet = targetSetText(arguments.targetSet) + " of the target";
    if (!sendLive(tuning, session, context, savedSet + " is unchanged")) {
        return exit_code::failed;
    }
    if (!TargetCommands(tuning, session.engine(), context.reporter).SaveSetToRam(arguments.targetSet)) {
        session.tellFailure("the set was sent, but the command to save it failed",
                            session.portUnusable() ? savedSet + " is unchanged"
                                                   : "whether " + savedSet + " has changed is not known");
        return exit_code::failed;
    }
    keepWritten(arguments.targetSet, arguments.port, tuning.image(), context.reporter);
    context.console.out << "set " << arguments.set << " was sent, confirmed and saved as " << savedSet
                        << "\n";
    return exit_code::done;
}

int runReadSet(const Arguments& arguments, const CommandContext& context) {
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    OutputFiles output(context.reporter);
    output.addSettings(arguments.output);
    // What cannot be written need not be read first.
    if (!store || !output.check()) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeStore(tuning, *store, arguments.setIndex(), arguments.filterMode);
    PortSession session(arguments, context);
    const bool read =
        TargetCommands(tuning, session.engine(), context.reporter).LoadSetFromRam(arguments.targetSet);
    if (!read || session.interrupted()) {
        session.tellFailure("the set could not be read", nothingWrittenText);
        return exit_code::failed;
    }
    if (!output.write(tuning.store(), tuning.image())) {
        return exit_code::failed;
    }
    context.console.out << targetSetText(arguments.targetSet) << " of the target was read into set "
                        << arguments.set << "\n";
    return exit_code::done;
}

int runFlash(const Arguments& arguments, const CommandContext& context) {
    const auto start = readFileStart(pathOf(arguments.image), 1);
    if (!start) {
        context.reporter.error(arguments.image + ": " + readTrouble(arguments.image));
        return exit_code::failed;
    }
    // The exchange would go through without a block, and nobody would know that nothing was sent.
    if (start->bytes.empty()) {
        context.reporter.error(arguments.image + ": the file is empty");
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    PortSession session(arguments, context);
    TargetCommands commands(tuning, session.engine(), context.reporter);
    if (!commands.FlashFile(pathOf(arguments.image))) {
        // A file that cannot be taken was told already.
        if (session.tried()) {
            session.tellFailure("the software image was not sent to its end",
                                "the target may hold a part of it, so send it again");
        }
        return exit_code::failed;
    }
    context.console.out << arguments.image << " was sent\n";
    return exit_code::done;
}

}  // namespace tessavo::cli
