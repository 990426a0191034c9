#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/cli_fixture.h"
#include "platform/data_folder.h"
#include "support/environment.h"
#include "target/pty_target.h"

namespace tessavo::test {

/// Standard error that does something once when a text appears on it.
class WatchedError final : public std::stringbuf {
 public:
    WatchedError(std::string text, std::function<void()> act)
        : text_(std::move(text)), act_(std::move(act)) {}

 protected:
    int sync() override {
        if (act_ && str().find(text_) != std::string::npos) {
            std::exchange(act_, {})();
        }
        return std::stringbuf::sync();
    }

 private:
    std::string text_;
    std::function<void()> act_;
};

inline CommandResult runWatched(const std::vector<std::string>& arguments, const std::string& when,
                                std::function<void()> act) {
    WatchedError error(when, std::move(act));
    std::istringstream in;
    std::ostringstream out;
    std::ostream err(&error);
    const int code = runCommandLine(arguments, {out, err, in});
    return {code, out.str(), error.str()};
}

inline Bytes bytesOf(const ImageBytes& image) {
    return {image.begin(), image.end()};
}

/// Commands with a simulated target on a pseudo-terminal, in real time.
class TargetExchange : public CommandTest {
 protected:
    void startTarget(const std::vector<std::string>& faults = {},
                     const TargetMemory& memory = TargetMemory::holding(factoryImage())) {
        PtyTarget::Options options;
        options.versions = {0x0000ABCD, 0x12340005};
        for (const std::string& fault : faults) {
            ASSERT_EQ(addFault(options.faults, fault), "");
        }
        target_ = std::make_unique<PtyTarget>(memory, options);
        ASSERT_EQ(target_->start(), "");
    }

    [[nodiscard]] std::string port() const { return target_->portName(); }

    /// A settings file with a tuned set 2, and that set's image.
    [[nodiscard]] std::string tuned() const {
        const std::string file = fresh("tuned.eqs");
        const CommandResult result = runWith(
            "set 2\nselect 1 2\nsetVolume -3\nsetCrossover 0 hp 4 1\nsetCrossoverFrequency 0 80\n"
            "setBandGainOrQ 3 gain 4.5\nsetDelay 1\nsetInputBandGain 5 2",
            {"edit", file, "--script", "-", "--output", file, "--image", path("tuned.bin")});
        EXPECT_EQ(result.code, 0) << result.err;
        return file;
    }

    std::unique_ptr<PtyTarget> target_;
    TemporaryFolder data_;  ///< what the program keeps of its own
    Variable dataFolder_{dataFolderVariable, data_.path().c_str()};
};

}  // namespace tessavo::test
