#include "cli/reporter.h"

#include <ostream>
#include <utility>

namespace tessavo::cli {

namespace {

constexpr std::size_t barCells = 40;

// Message texts may have several lines; here each is one.
std::string oneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        const bool blank = character == '\r' || character == '\n' || character == ' ';
        if (!blank) {
            line += character;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    while (line.ends_with(' ')) {
        line.pop_back();
    }
    return line;
}

}  // namespace

void Reporter::error(std::string_view text) {
    writeLine("tessavoctl: " + oneLine(text));
}

void Reporter::note(std::string_view text) {
    if (!quiet_) {
        error(text);
    }
}

BoxAnswer Reporter::show(std::string_view text, BoxIcon /*icon*/, BoxButtons buttons) {
    bool repeated = false;
    {
        const std::lock_guard guard(mutex_);
        repeated = std::exchange(lastMessage_, std::string(text)) == text;
    }
    if (!repeated) {
        error(text);
    }
    return buttons == BoxButtons::ok ? BoxAnswer::ok : BoxAnswer::cancel;
}

void Reporter::log(LogKind kind, std::string_view text) {
    if (!quiet_ || kind == LogKind::error) {
        writeLine(std::string(logPrefix(kind)) + std::string(text));
    }
}

void Reporter::progress(std::size_t done, std::size_t total) {
    if (!drawsProgress_ || quiet_ || total == 0) {
        return;
    }
    if (done >= total) {
        endProgress();
        return;
    }
    const std::lock_guard guard(mutex_);
    eraseBar();
    const std::size_t filled = done * barCells / total;
    bar_ = "[" + std::string(filled, '#') + std::string(barCells - filled, '.') + "] " +
           std::to_string(done) + "/" + std::to_string(total);
    err_ << bar_ << std::flush;
}

void Reporter::endProgress() {
    const std::lock_guard guard(mutex_);
    eraseBar();
    bar_.clear();
    err_ << std::flush;
}

void Reporter::writeLine(std::string_view line) {
    const std::lock_guard guard(mutex_);
    eraseBar();
    err_ << line << '\n' << bar_ << std::flush;
}

// Works on every terminal, without control sequences that it would have to know.
void Reporter::eraseBar() {
    if (!bar_.empty()) {
        err_ << '\r' << std::string(bar_.size(), ' ') << '\r';
    }
}

}  // namespace tessavo::cli
