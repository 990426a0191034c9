#pragma once

#include <memory>

namespace tessavo {

/// One Read, Write or WaitEvent that its caller completes.
///
/// Handed to the operation, which then returns at once, and later to CSerial::Complete(). Until then the
/// caller keeps the operation's buffer and uses the structure for nothing else. Where the system moves no
/// bytes by itself, what could not be moved at once is moved by Complete().
class SerialOverlapped {
 public:
    SerialOverlapped();
    /// Ends an operation that was not completed.
    ~SerialOverlapped();
    SerialOverlapped(const SerialOverlapped&) = delete;
    SerialOverlapped& operator=(const SerialOverlapped&) = delete;

 private:
    friend class CSerial;
    struct Native;
    std::unique_ptr<Native> native_;
};

}  // namespace tessavo
