#pragma once

#include <cstddef>
#include <memory>

#include "comm/serial.h"

namespace tessavo::test {

/// A real port that tells the test what it cannot see from outside.
class WatchedPort final : public CSerial {
 public:
    /// The thread that makes it is the one that will wait in it.
    WatchedPort();
    ~WatchedPort() override;

    /// From another thread: goes on as soon as the port waits for something.
    /// \return false when it does not
    [[nodiscard]] bool untilWaiting() const;
    /// Goes on as soon as that many bytes wait to be read.
    /// \return false when they do not come
    [[nodiscard]] bool untilReceived(std::size_t count) const;

 private:
    struct Watch;
    explicit WatchedPort(std::unique_ptr<Watch> watch);
    std::unique_ptr<Watch> watch_;
};

}  // namespace tessavo::test
