#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tessavo {

/// A pseudo-terminal that tells when somebody opens or closes its other end. One thread at a time.
///
/// The other end stays open here too, so that it keeps its settings and never hangs up between two hosts.
class PseudoTerminal {
 public:
    enum class Visit : std::uint8_t { opened, closed };

    PseudoTerminal() = default;
    /// Closes it.
    ~PseudoTerminal() { close(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// \return empty, or what failed
    [[nodiscard]] std::string open();
    /// Closes both ends; a host sees its device vanish.
    void close();

    /// Path of the end that a host opens, such as "/dev/pts/3".
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Descriptors to wait on: bytes come and go on the first, visits are told on the second.
    [[nodiscard]] int byteDescriptor() const { return master_; }
    [[nodiscard]] int visitDescriptor() const { return watch_; }

    /// What happened at the other end since the last call, in order. Does not wait.
    [[nodiscard]] std::vector<Visit> visits();
    /// Bytes from the host, at most `limit`. Does not wait.
    [[nodiscard]] std::vector<std::uint8_t> read(std::size_t limit);
    /// Sends bytes to the host as far as there is room. Does not wait.
    /// \return how many went
    std::size_t write(std::span<const std::uint8_t> bytes);

    /// Gives the host a moment to read what has been sent.
    void linger() const;
    /// Throws away what waits in either direction.
    void drain();
    /// Undoes what a host may have left behind: line editing, echo, exclusive use.
    void restore();

 private:
    int master_ = -1;
    int slave_ = -1;
    int watch_ = -1;
    std::string path_;
};

}  // namespace tessavo
