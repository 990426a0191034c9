#include "app/folded_boxes.h"

#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "support/boxes.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Folded : public ::testing::Test {
 protected:
    RecordingBoxes list{BoxAnswer::no};
    std::vector<int> counted;
    FoldedBoxes boxes{list, [this](int times) { counted.push_back(times); }};
};

TEST_F(Folded, TheFirstOfEqualBoxesIsShownAndTheOthersAreCounted) {
    for (int round = 0; round < 4; ++round) {
        boxes.showPlain("closed");
    }
    EXPECT_THAT(list.texts(), ElementsAre("closed"));
    EXPECT_THAT(counted, ElementsAre(2, 3, 4));
}

TEST_F(Folded, AnotherTextIsShown) {
    for (const char* text : {"a", "b", "b", "a"}) {
        boxes.showPlain(text);
    }
    EXPECT_THAT(list.texts(), ElementsAre("a", "b", "a"));
    EXPECT_THAT(counted, ElementsAre(2));
}

TEST_F(Folded, WhatIsForgottenIsShownAgain) {
    boxes.forget();
    boxes.showPlain("closed");
    boxes.forget();
    EXPECT_THAT(counted, IsEmpty()) << "nothing was counted yet";
    boxes.showPlain("closed");
    boxes.showPlain("closed");
    boxes.forget();
    boxes.forget();
    EXPECT_THAT(counted, ElementsAre(2, 0));
    boxes.showPlain("closed");
    EXPECT_THAT(list.texts(), ElementsAre("closed", "closed", "closed"));
}

TEST_F(Folded, AQuestionIsAskedEachTime) {
    EXPECT_EQ(boxes.show("sure?", BoxIcon::none, BoxButtons::yesNoCancel), BoxAnswer::no);
    EXPECT_EQ(boxes.show("sure?", BoxIcon::none, BoxButtons::yesNoCancel), BoxAnswer::no);
    EXPECT_THAT(list.texts(), ElementsAre("sure?", "sure?"));
}

TEST_F(Folded, AnEmptyTextIsATextToo) {
    boxes.showPlain("");
    boxes.showPlain("");
    EXPECT_THAT(list.texts(), ElementsAre(""));
    EXPECT_THAT(counted, ElementsAre(2));
}

TEST_F(Folded, BoxesOfSeveralThreadsAreCountedWhole) {
    std::atomic<int> highest = 0;
    FoldedBoxes shared{list, [&highest](int times) {
                           int before = highest;
                           while (before < times && !highest.compare_exchange_weak(before, times)) {
                           }
                       }};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&shared] {
            for (int round = 0; round < 500; ++round) {
                shared.showPlain("closed");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(list.texts(), ElementsAre("closed"));
    EXPECT_EQ(highest, 2000);
}

}  // namespace
}  // namespace tessavo::test
