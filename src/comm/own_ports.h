#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// A port that only this program has, such as that of a simulated target inside it. While it lives,
/// listPorts(), portIsThere() and portDevice() of this program know it; other programs never do. Any thread.
class OwnPort {
 public:
    /// \param portName as listPorts() is to give it
    explicit OwnPort(std::string portName);
    ~OwnPort();
    OwnPort(const OwnPort&) = delete;
    OwnPort& operator=(const OwnPort&) = delete;

 private:
    std::string portName_;
};

namespace ports {

/// Names of the living own ports, in the order in which they were made.
[[nodiscard]] std::vector<std::string> ownPorts();
[[nodiscard]] bool isOwnPort(std::string_view portName);

}  // namespace ports

}  // namespace tessavo
