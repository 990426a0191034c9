#pragma once

#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <string>
#include <string_view>

#include "base/message_box.h"
#include "cli/console.h"
#include "comm/comm_log.h"

namespace tessavo::cli {

/// Everything that a command says on standard error: messages, the log of exchanges and the progress bar. Any
/// thread.
class Reporter final : public IMessageBox, public ICommLog {
 public:
    explicit Reporter(const Console& console) : err_(console.err), drawsProgress_(console.errIsTerminal) {}

    /// Keeps only errors: error lines of the log and messages.
    void setQuiet(bool quiet) { quiet_ = quiet; }

    /// One line "tessavoctl: text"; line breaks in the text become spaces.
    void error(std::string_view text);
    /// The same, for what is no error.
    void note(std::string_view text);
    /// Prints the text as error(), unless the message before was the same. Questions are answered with
    /// "cancel".
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override;
    /// One line in the log's own format.
    void log(LogKind kind, std::string_view text) override;

    /// Draws the progress bar, on a terminal only and not when quiet; it goes once `done` reaches `total`.
    void progress(std::size_t done, std::size_t total);
    /// Takes the progress bar away.
    void endProgress();

 private:
    void writeLine(std::string_view line);
    void eraseBar();

    std::ostream& err_;
    bool drawsProgress_;
    bool quiet_ = false;
    std::mutex mutex_;
    std::string bar_;
    std::string lastMessage_;
};

}  // namespace tessavo::cli
