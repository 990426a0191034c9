#pragma once

#include <memory>
#include <string>

#include "comm/line.h"

namespace tessavo::test {

/// Leads to a line of the test's own, which outlives it and serves one exchange after the other.
class BorrowedLine final : public ILine {
 public:
    explicit BorrowedLine(ILine& line) : line_(line) {}

    std::uint32_t open() override { return line_.open(); }
    std::uint32_t setUp(const LineSettings& settings) override { return line_.setUp(settings); }
    LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override {
        return line_.read(bytes, timeout);
    }
    std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) override {
        return line_.write(bytes, timeout);
    }
    void close() override { line_.close(); }
    void cancel() override { line_.cancel(); }

 private:
    ILine& line_;
};

/// Makes every exchange use one line of the test's, whatever the port's name.
inline LineMaker borrowing(ILine& line) {
    return [&line](const std::string& /*portName*/) { return std::make_unique<BorrowedLine>(line); };
}

}  // namespace tessavo::test
