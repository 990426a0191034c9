#pragma once

#include <memory>
#include <string>

namespace tessavo {

class CSerial;

/// The simulated target inside the program, for trying everything without hardware. Every set that it holds
/// is the default one until another is saved there.
///
/// On a pseudo-terminal where the system has them, which other programs may open too; otherwise at the end of
/// a port that only this program has.
class DemoTarget {
 public:
    DemoTarget();
    /// Stops it.
    ~DemoTarget();
    DemoTarget(const DemoTarget&) = delete;
    DemoTarget& operator=(const DemoTarget&) = delete;

    /// Announces its port to listPorts(). Called once.
    /// \return false where it could not be started
    bool start();
    [[nodiscard]] bool running() const { return running_; }
    /// As the port list names it.
    [[nodiscard]] std::string portName() const;

    /// A port that reaches this target once it runs, and every port of the system. The target outlives it.
    [[nodiscard]] std::unique_ptr<CSerial> makePort();

 private:
    struct Native;
    std::unique_ptr<Native> native_;
    bool running_ = false;
};

}  // namespace tessavo
