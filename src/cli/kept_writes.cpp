#include "cli/kept_writes.h"

#include "copies/target_sets.h"
#include "copies/written_sets.h"
#include "platform/data_folder.h"

namespace tessavo::cli {

void keepWritten(std::uint8_t targetSet, const std::string& port, const ParameterImage& image,
                 Reporter& reporter) {
    if (!WrittenSets(writtenSetsFolder(dataFolder())).keep(targetSet, port, image)) {
        reporter.note("what was written into " + targetSetText(targetSet) +
                      " of the target could not be kept in the data folder");
    }
}

}  // namespace tessavo::cli
