#pragma once

#include <string>
#include <vector>

namespace tessavo::test {

/// Texts of a log, as the page shows them.
using LogLines = std::vector<std::string>;

inline LogLines joined(const std::vector<LogLines>& parts) {
    LogLines all;
    for (const LogLines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

/// What every exchange logs up to the connection.
inline LogLines opened(const std::string& preparation) {
    return {"ST-->    " + preparation, "ST-->    Connecting to Target", "RX-->    Wait for REQ",
            "ST-->    Connected to Target"};
}

/// What it logs from the disconnect on.
inline LogLines disconnected() {
    return {"ST-->    Disconnect from Target", "TX-->    Send Disconnect Command", "RX-->    Wait for answer",
            "ST-->    Disconnected from Target"};
}

/// A block that the target takes.
inline const LogLines sentAndTaken{"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                   "RX-->    Answer received"};
/// A request that the target takes.
inline const LogLines askedAndTaken{"TX-->    Send XModem Message", "RX-->    Wait for answer",
                                    "ST-->    Answer received"};

/// An exchange that saves to a set, up to the connection, and what follows.
inline LogLines saved(const LogLines& rest) {
    return joined({opened("Prepare XModem128 Message"), rest});
}
/// The same of one that reads.
inline LogLines read(const LogLines& rest) {
    return joined({opened("Prepare XModem2k Message"), rest});
}

}  // namespace tessavo::test
