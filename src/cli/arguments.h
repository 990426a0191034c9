#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/reporter.h"
#include "filtertext/filter_export.h"
#include "measure/measurement_text.h"
#include "measure/smoothing.h"
#include "params/channels.h"

namespace CLI {
class App;
}

namespace tessavo::cli {

/// Whether an image has the input equalizer in circuit.
enum class InputEq : std::uint8_t {
    assumedOn,  ///< on, since nothing was asked for; told where the record says otherwise
    on,
    off,
    stored  ///< as the record says
};

/// What a command was asked for, checked as far as the command line tells. Each command reads what it offers.
struct Arguments {
    std::string file;
    std::string secondFile;
    std::string script;
    std::string output;
    std::string image;
    std::string port;
    std::uint8_t targetSet = 0;                 ///< 1 to 5, or 0 for the default set
    std::vector<std::uint8_t> targetSets;       ///< such numbers; empty where none were named
    int set = 0;                                ///< 1 to 5, or 0 where none was named
    int channel = 0;                            ///< page position 1 to 8, or 0 where none was named
    std::vector<PagePosition> summedChannels;   ///< empty where none were named
    std::vector<double> frequenciesHz;          ///< each finite and 0 or above; empty where none were named
    std::size_t points = 1000;                  ///< number of frequencies where none were named, at least 2
    std::vector<PagePosition> channels;         ///< empty where none were named
    std::vector<std::size_t> bands;             ///< indices of bands, 0 to 7; empty where none were named
    std::string channelName;                    ///< of a filter text; empty for its first
    ExportForm exportForm = ExportForm::text;   ///< of exported filters
    std::vector<std::string> measurements;      ///< files with measurements
    std::optional<MeasurementColumns> columns;  ///< of those files, where they were named
    std::string calibration;                    ///< file of a microphone's; empty for none
    Smoothing smoothing;                        ///< of measurements; none unless one was named
    std::uint32_t filterMode = 0;               ///< index of filterMethodNames
    std::vector<std::optional<double>> distancesCm;  ///< eight by page position; empty where times were named
    std::vector<std::optional<double>> timesMs;  ///< eight by page position; empty where distances were named
    double airCelsius = 20.0;                    ///< lowestAirCelsius to highestAirCelsius
    InputEq inputEq = InputEq::assumedOn;
    bool json = false;
    bool onlyReal = false;
    bool force = false;
    bool yes = false;
    bool keep = false;            ///< bands that are not written stay as they are
    bool noPreamp = false;        ///< a preamp is left out
    bool skipUnreadable = false;  ///< what cannot be read is told and left out
    bool withVolume = false;      ///< the volume is exported, too

    [[nodiscard]] std::size_t setIndex() const { return static_cast<std::size_t>(set - 1); }
};

/// Adds an option, or an argument without a name, to a command of the parser: its name, what help tells of
/// it, what it may be, and the member of Arguments that takes it. Both objects outlive the parsing. Arguments
/// without a name are read in the order in which they were added.
using Option = std::function<void(CLI::App& command, Arguments& arguments)>;

/// The options that commands offer. Each function gives one; `what` is told by help.
namespace option {

/// FILE, as Arguments::file.
[[nodiscard]] Option file(const std::string& what);
/// OTHER, as Arguments::secondFile.
[[nodiscard]] Option otherFile(const std::string& what);
/// IMAGE, as Arguments::image.
[[nodiscard]] Option image(const std::string& what);
/// TARGET: which set of the target.
[[nodiscard]] Option targetSet();
/// --sets LIST: sets of the target, which may be left out.
[[nodiscard]] Option targetSets(const std::string& what);
/// DIR, as Arguments::file.
[[nodiscard]] Option folder(const std::string& what);
/// --output DIR, which must be given.
[[nodiscard]] Option outputFolder(const std::string& what);
/// --into FILE, which must be given, as Arguments::file.
[[nodiscard]] Option into(const std::string& what);
/// --output FILE, which must be given.
[[nodiscard]] Option output(const std::string& what);
/// --output FILE, which may be left out.
[[nodiscard]] Option anyOutput(const std::string& what);
/// --output and --image of an edit script, which may be left out.
[[nodiscard]] Option editedFiles();
/// --script FILE, which must be given.
[[nodiscard]] Option script();
/// --set N, which may be left out.
[[nodiscard]] Option anySet();
/// --set N, which must be given.
[[nodiscard]] Option oneSet();
[[nodiscard]] Option filterMode();
[[nodiscard]] Option inputEq();
/// --channel C or --input: one of them must be given.
[[nodiscard]] Option curve();
/// FILE, which is another program's, as Arguments::secondFile.
[[nodiscard]] Option foreignFile(const std::string& what);
/// --channel P, which must be given.
[[nodiscard]] Option oneChannel();
/// --channel P,P,..., which must be given, as Arguments::channels.
[[nodiscard]] Option channels();
/// --bands LIST, which may be left out.
[[nodiscard]] Option bands();
/// --channel-name NAME, which may be left out.
[[nodiscard]] Option channelName();
/// --keep, --no-preamp and --skip-unreadable.
[[nodiscard]] Option importing();
/// --format FORM and --with-volume.
[[nodiscard]] Option exporting();
/// FILE..., as Arguments::measurements: at least one.
[[nodiscard]] Option measurements(const std::string& what);
/// --columns, --calibration and --smoothing of measurements, which may be left out.
[[nodiscard]] Option measuring();
/// --channel P or --sum P,P,...: one of them must be given.
[[nodiscard]] Option channelOrSum();
/// --at HZ,HZ,... or --points N, which may be left out.
[[nodiscard]] Option frequencies();
/// --distances CM,CM,... or --times MS,MS,..., one of which must be given, and --temperature.
[[nodiscard]] Option alignment();
[[nodiscard]] Option json();
[[nodiscard]] Option onlyReal();
[[nodiscard]] Option force();
[[nodiscard]] Option yes(const std::string& what);
/// --port PORT, which must be given.
[[nodiscard]] Option port();

}  // namespace option

/// What a command works with besides its arguments.
struct CommandContext {
    const Console& console;
    Reporter& reporter;
};

/// A command: its arguments in, a value of exit_code out.
using Command = int (*)(const Arguments&, const CommandContext&);

}  // namespace tessavo::cli
