#pragma once

#include <memory>
#include <string>

namespace tessavo {

class PtyTarget;

/// The simulated target inside the program, for trying everything without hardware.
class DemoTarget {
 public:
    DemoTarget();
    /// Stops it.
    ~DemoTarget();

    /// \return false where it could not be started
    bool start();
    [[nodiscard]] bool running() const { return running_; }
    /// As the port list names it.
    [[nodiscard]] std::string portName() const;

 private:
    std::unique_ptr<PtyTarget> target_;
    bool running_ = false;
};

}  // namespace tessavo
