#pragma once

#include <gtest/gtest.h>

#include "base/semaphore.h"
#include "params/tuning_state.h"
#include "support/answering_line.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {

/// Settings, and a target that takes and confirms every image at once, for a live worker with its thread.
class LiveBench : public testing::Test {
 protected:
    LiveBench() {
        clock.notePauses(false);
        tuning.start();
    }

    Transcript transcript;
    VirtualClock clock{transcript};
    NotedBoxes boxes{transcript};
    NotedLog log{transcript};
    CSemaphore lock;
    AnsweringLine line{replyFrame(Bytes(10, 0x11))};
    TuningState tuning{boxes};
};

}  // namespace tessavo::test
