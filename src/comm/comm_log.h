#pragma once

#include <cstdint>
#include <string_view>

namespace tessavo {

/// Kinds of lines in the communication log.
enum class LogKind : std::uint8_t { tx = 0, rx = 1, status = 2, error = 3 };

/// Prefix of a log line of this kind, up to the text.
constexpr std::string_view logPrefix(LogKind kind) {
    switch (kind) {
        case LogKind::tx:
            return "TX-->    ";
        case LogKind::rx:
            return "RX-->    ";
        case LogKind::status:
            return "ST-->    ";
        case LogKind::error:
            break;
    }
    return "ERR-->   ";
}

/// Takes the lines of every exchange as they happen. Called from any thread.
class ICommLog {
 public:
    virtual ~ICommLog() = default;
    virtual void log(LogKind kind, std::string_view text) = 0;
};

}  // namespace tessavo
