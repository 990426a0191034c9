#pragma once

#include <memory>
#include <string>

#include "comm/line.h"

namespace tessavo {

/// The simulated target of the program itself, for trying everything without hardware. Every set that it
/// holds is the default one until another is saved there.
class IDemoTarget {
 public:
    /// Stops it.
    virtual ~IDemoTarget() = default;

    /// Announces its port to listPorts(). Called once.
    /// \return false where it could not be started
    virtual bool start() = 0;
    /// As the port list names it; empty unless it has been started.
    [[nodiscard]] virtual std::string portName() const = 0;
    /// Makes the lines to this target, and to every port of the system.
    [[nodiscard]] virtual LineMaker lineMaker() = 0;
};

/// A target on a pseudo-terminal, which other programs may open too.
/// \return null on a system without pseudo-terminals
[[nodiscard]] std::unique_ptr<IDemoTarget> makePtyDemoTarget();

/// A target at the end of a line that only this program has.
[[nodiscard]] std::unique_ptr<IDemoTarget> makeInProcessDemoTarget();

/// The one that programs of this system use: on a pseudo-terminal where there are any.
[[nodiscard]] std::unique_ptr<IDemoTarget> makeDemoTarget();

}  // namespace tessavo
