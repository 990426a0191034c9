#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "comm/line.h"
#include "target/in_process_target.h"

namespace tessavo {

/// A line that ends in a target inside the program; its time-outs run in real time.
///
/// Only one line at a time has the target open. Output is taken at once, and how the line is set up makes no
/// difference: the target has a pace of its own.
class InProcessLine : public ILine {
 public:
    /// \param target outlives the line
    explicit InProcessLine(InProcessTarget& target) : target_(target) {}
    /// Closes the line.
    ~InProcessLine() override;
    InProcessLine(const InProcessLine&) = delete;
    InProcessLine& operator=(const InProcessLine&) = delete;

    /// \return `accessDenied` while another line has the target, `fileNotFound` once its cable is pulled
    std::uint32_t open() override;
    std::uint32_t setUp(const LineSettings& settings) override;
    LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override;
    std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) override;
    void close() override;
    void cancel() override;

 private:
    /// Why nothing can be moved now; 0 when it can.
    [[nodiscard]] std::uint32_t refusal() const;
    /// Takes what the target has sent by now.
    void takeDueBytes();
    std::uint32_t waitForBytes(std::unique_lock<std::mutex>& guard, std::size_t count, Milliseconds timeout);

    InProcessTarget& target_;
    std::deque<std::uint8_t> input_;  ///< arrived, not read yet
    bool open_ = false;
    bool cancelled_ = false;  ///< guarded by the target's mutex
};

/// A maker of lines to a target inside the program, under its port's name and under its device's path, and of
/// those of another maker under every other name.
/// \param target outlives the maker and its lines
[[nodiscard]] LineMaker linesTo(InProcessTarget& target, LineMaker others);

}  // namespace tessavo
