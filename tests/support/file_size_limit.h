#pragma once

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace tessavo::test {

/// Lets no file of this process grow beyond a size while it lives, as a disk that is nearly full.
class FileSizeLimit {
 public:
    explicit FileSizeLimit(rlim_t bytes) : formerAction_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &former_), 0);
        const rlimit limit{bytes, former_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit() {
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &former_), 0);
        std::signal(SIGXFSZ, formerAction_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
    void (*formerAction_)(int);
    rlimit former_{};
};

}  // namespace tessavo::test
