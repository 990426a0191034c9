#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "support/temporary_folder.h"

namespace tessavo::test {

/// A variable of the environment that gets its former value back. Made before any thread starts.
class Variable {
 public:
    /// \param value nullptr: the variable is not there
    Variable(const char* name, const char* value) : name_(name) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs meanwhile
        if (const char* former = std::getenv(name)) {
            former_ = former;
        }
        set(value);
    }
    ~Variable() { set(former_ ? former_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

 private:
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs meanwhile
    void set(const char* value) {
        if (value == nullptr) {
            ::unsetenv(name_);
        } else {
            ::setenv(name_, value, 1);
        }
    }
    // NOLINTEND(concurrency-mt-unsafe)

    const char* name_;
    std::optional<std::string> former_;
};

/// Announces and lists ports in a folder of its own while it lives, so that other targets on the machine,
/// which may get the same port once it is free, are out of sight. Made before any thread starts.
class OwnRunFolder {
    TemporaryFolder folder_;
    Variable variable_{"XDG_RUNTIME_DIR", folder_.path().c_str()};
};

}  // namespace tessavo::test
