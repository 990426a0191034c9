#pragma once

#include <functional>
#include <string>

namespace tessavo {

/// Follows whether the chosen port is there, look by look, without opening it.
///
/// A port counts as gone only after it was seen: a name that the system never had is not watched. Knows no
/// clock; used on one thread.
class PortWatch {
 public:
    /// What a look has found new.
    enum class Event {
        none,
        gone,     ///< the port was there at the last look
        back,     ///< it is there again, with the same device behind it as far as that is known
        replaced  ///< its name is there again, but another device bears it
    };

    /// Where the truth comes from.
    struct System {
        std::function<bool(const std::string&)> isThere;          ///< see portIsThere()
        std::function<std::string(const std::string&)> identity;  ///< see PortDevice
    };

    explicit PortWatch(System system) : system_(std::move(system)) {}

    /// From now on this port is watched, beginning with a look; empty for none. The same name again begins
    /// anew too: a person has chosen what is there now.
    void setPort(const std::string& name);
    [[nodiscard]] Event look();
    /// A device that has replaced another one is the right one from now on.
    void accept();

 private:
    enum class Presence { neverSeen, there, gone };

    System system_;
    std::string port_;
    std::string identity_;     ///< of the device that the port had when it was chosen
    std::string replacement_;  ///< of the device that has its name now; empty when it is the right one
    Presence presence_ = Presence::neverSeen;
};

/// The machine that the program runs on.
[[nodiscard]] PortWatch::System systemPorts();

}  // namespace tessavo
