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

/// Writes all that a command says on standard error: messages, the log of exchanges and the progress bar. Any
/// thread.
class Reporter final : public IMessageBox, public ICommLog {
 public:
    explicit Reporter(const Console& console) : err_(console.err), drawsProgress_(console.errIsTerminal) {}

    /// When quiet, writes errors only: error lines of the log, and messages.
    void setQuiet(bool quiet) { quiet_ = quiet; }

    /// Writes one line "tessavoctl: text"; line breaks in the text become spaces.
    void error(std::string_view text);
    /// Writes such a line for something that is no error; nothing when quiet.
    void note(std::string_view text);
    /// Writes the text as error() does, unless the message before was the same. Nobody can be asked, so every
    /// question is answered with "cancel".
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override;
    /// Writes a line of the log of exchanges; when quiet, only if it is an error.
    void log(LogKind kind, std::string_view text) override;

    /// Draws the progress bar. Only on a terminal, and not when quiet. It disappears once `done` reaches
    /// `total`.
    void progress(std::size_t done, std::size_t total);
    /// Erases the progress bar.
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
