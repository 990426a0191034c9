#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace tessavo::test {

/// Steps down from the superuser, for whom no permission counts.
class OrdinaryUser {
 public:
    OrdinaryUser() : before_(::geteuid()) {
        if (before_ == 0) {
            constexpr uid_t nobody = 65534;
            stepped_ = ::seteuid(nobody) == 0;
        }
    }
    ~OrdinaryUser() {
        if (stepped_) {
            EXPECT_EQ(::seteuid(before_), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
    uid_t before_;
    bool stepped_ = false;
};

}  // namespace tessavo::test
