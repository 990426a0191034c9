#include "cli/command_table.h"

#include <algorithm>
#include <iterator>

#include "cli/align_command.h"
#include "cli/copy_commands.h"
#include "cli/edit_script.h"
#include "cli/file_commands.h"
#include "cli/filter_commands.h"
#include "cli/measurement_command.h"
#include "cli/port_commands.h"
#include "cli/recover_command.h"
#include "cli/response_command.h"

namespace tessavo::cli {

namespace {

std::string scriptHelp() {
    std::string text =
        "A script has one operation a line:\n  set 1\n  select 1 2\n  setVolume -3.5\n  setCrossover 0 hp 4 "
        "1\n"
        "  setCrossoverFrequency 0 80\n\nIts words are:";
    for (const ScriptWord& word : scriptWords()) {
        text.append("\n  ").append(word.usage);
    }
    return text +
           "\n\nselect takes channels 1 to 8 as the pages number them; elsewhere CHANNEL is the record's, "
           "BAND and CROSSOVER\ncount from 0.";
}

std::vector<CommandRow> fileCommands() {
    using namespace option;
    // clang-format off
    return {
        {.name = "new", .purpose = "Write a settings file that holds the defaults", .example = "new fresh.eqs",
         .run = runNew,
         .options = {file("Settings file to write; an existing one is left alone"), force()}},
        {.name = "show", .purpose = "Show the sets of a settings file", .example = "show car.eqs --set 1",
         .run = runShow,
         .options = {file("Settings file"), anySet(), json()}},
        {.name = "diff", .purpose = "Name every field in which two settings files differ (exit code 1 if any)",
         .example = "diff before.eqs after.eqs", .run = runDiff,
         .options = {file("Settings file"), otherFile("Settings file to compare with"), onlyReal()}},
        {.name = "edit", .purpose = "Run an edit script on a settings file",
         .example = "edit car.eqs --script tuning.txt --output tuned.eqs", .run = runEdit,
         .options = {file("Settings file"), script(), filterMode(), editedFiles()}, .more = scriptHelp()},
        {.name = "export", .purpose = "Write a set as a parameter image",
         .example = "export car.eqs --set 1 --output set1.bin", .run = runExport,
         .options = {file("Settings file"), oneSet(), filterMode(), inputEq(), output("Parameter image to write")}},
        {.name = "import", .purpose = "Take a parameter image into a set",
         .example = "import set1.bin --into car.eqs --set 2 --output both.eqs", .run = runImport,
         .options = {image("Parameter image"), into("Settings file"), oneSet(), output("Settings file to write")}},
        {.name = "curve", .purpose = "Print a response: 1000 lines of frequency in Hz and magnitude in dB",
         .example = "curve car.eqs --set 1 --channel 3", .run = runCurve,
         .options = {file("Settings file"), oneSet(), filterMode(), curve()}},
        {.name = "response", .purpose = "Print the exact response of a channel, or of several together",
         .example = "response car.eqs --set 1 --sum 1,2 --at 80,1000 --json", .run = runResponse,
         .options = {file("Settings file"), oneSet(), channelOrSum(), filterMode(), frequencies(), json()},
         .more = "A line for each frequency: Hz, dB, degrees of phase, milliseconds of group delay, none of them rounded."},
        {.name = "filters", .purpose = "Say what becomes of each line of another program's filter text",
         .example = "filters front-left.txt", .run = runFilters,
         .options = {file("Filter text of another program"), channelName(), json()}, .more = filterTextHelp()},
        {.name = "import-filters", .purpose = "Take the filters of a text into channels of a set",
         .example = "import-filters front-left.txt --into car.eqs --set 1 --channel 3 --output tuned.eqs",
         .run = runImportFilters,
         .options = {foreignFile("Filter text of another program"), into("Settings file"), oneSet(), channels(), bands(),
                     importing(), channelName(), filterMode(), json(), output("Settings file to write")},
         .more = filterTextHelp()},
        {.name = "export-filters", .purpose = "Write the filters of a channel as a text for another program",
         .example = "export-filters car.eqs --set 1 --channel 3 --output front-left.txt", .run = runExportFilters,
         .options = {file("Settings file"), oneSet(), oneChannel(), exporting(),
                     anyOutput("Text to write; standard output unless told")}},
        {.name = "measurement", .purpose = "Read measurements, take their mean, and smooth it",
         .example = "measurement left-seat.txt right-seat.txt --smoothing 1/6 --json", .run = runMeasurement,
         .options = {measurements("Measurements: texts with frequency, level and perhaps phase"), measuring(), json()},
         .more = measurementHelp()},
        {.name = "align", .purpose = "Set the delays so that all loudspeakers are heard at one time",
         .example = "align car.eqs --set 1 --distances 112,142,116,138,124,148,96,245 --output aligned.eqs",
         .run = runAlign,
         .options = {file("Settings file"), oneSet(), alignment(), json(), output("Settings file to write")},
         .more = "The farthest one gets no delay. The group delay goes first, at most 2 ms, the rest into the channel's own,\n"
                 "at most 2 ms. What cannot be reached is told, and the delays are as near as possible."},
        {.name = "recover", .purpose = "Show what the window did not save, and write the newest of it to a file",
         .example = "recover --output rescued.eqs", .run = runRecover,
         .options = {json(),
                     anyOutput("Settings file to write, with its NAME.notes.json; existing ones are left alone"),
                     force()},
         .more = recoverHelp()},
    };
    // clang-format on
}

std::vector<CommandRow> portCommands() {
    using namespace option;
    // clang-format off
    return {
        {.name = "ports", .purpose = "List the serial ports", .example = "ports", .run = runPorts},
        {.name = "versions", .purpose = "Read the target's versions", .example = "versions --port ttyUSB0",
         .run = runVersions,
         .options = {port()}},
        {.name = "clip", .purpose = "Read which stages of the target clip now", .example = "clip --port ttyUSB0",
         .run = runClip,
         .options = {port()}},
        {.name = "live", .purpose = "Send a set to the target's live memory",
         .example = "live car.eqs --set 1 --port ttyUSB0", .run = runLive,
         .options = {file("Settings file"), oneSet(), filterMode(), inputEq(), port()}},
        {.name = "write-set", .purpose = "Send a set and save it as one of the target's sets",
         .example = "write-set 3 car.eqs --set 1 --port ttyUSB0", .run = runWriteSet,
         .options = {targetSet(), file("Settings file"), oneSet(), filterMode(), inputEq(), port()}},
        {.name = "read-set", .purpose = "Read one of the target's sets into a settings file",
         .example = "read-set 3 --into car.eqs --set 2 --output read.eqs --port ttyUSB0", .run = runReadSet,
         .options = {targetSet(), into("Settings file that the set is put into"), oneSet(),
                     output("Settings file to write"), port()}},
        {.name = "flash", .purpose = "Send a software image to the target",
         .example = "flash software.bin --port ttyUSB0", .run = runFlash,
         .options = {image("Software image, at most 524288 bytes"), port()}},
        {.name = "backup", .purpose = "Read all sets of the target into a folder",
         .example = "backup --port ttyUSB0 --output new-backup", .run = runBackup,
         .options = {port(), outputFolder("Folder to make; one that holds something is left alone")}},
        {.name = "restore", .purpose = "Put sets of a backup back into the target, which plays each in turn",
         .example = "restore car-backup --port ttyUSB0 --sets 1,2 --yes", .run = runRestore,
         .options = {folder("Folder of the backup"), port(),
                     targetSets("Sets to restore, as 1,2 or default; sets 1 to 5 unless told"),
                     yes("Do it; without, only what would be done is told")},
         .more = restoreHelp()},
        {.name = "verify", .purpose = "Compare the sets of the target with a backup (exit code 1 if any differs)",
         .example = "verify car-backup --port ttyUSB0", .run = runVerify,
         .options = {folder("Folder of the backup"), port()}},
    };
    // clang-format on
}

std::vector<CommandRow> makeCommands() {
    std::vector<CommandRow> rows = fileCommands();
    std::ranges::move(portCommands(), std::back_inserter(rows));
    return rows;
}

}  // namespace

const std::vector<CommandRow>& commandTable() {
    static const std::vector<CommandRow> rows = makeCommands();
    return rows;
}

}  // namespace tessavo::cli
