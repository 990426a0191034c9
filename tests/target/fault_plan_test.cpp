#include "target/fault_plan.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "target/fault_names.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

FaultPlan planOf(const std::vector<std::string>& texts) {
    FaultPlan plan;
    for (const std::string& text : texts) {
        EXPECT_THAT(addFault(plan, text), IsEmpty()) << text;
    }
    return plan;
}

std::string problemOf(const std::string& text) {
    FaultPlan plan;
    std::string problem = addFault(plan, text);
    EXPECT_TRUE(plan == FaultPlan{}) << text << " changed the plan";
    return problem;
}

TEST(FaultPlan, NamesWithoutNumber) {
    EXPECT_TRUE(planOf({"no-request"}).noRequest);
    EXPECT_TRUE(planOf({"damaged-reply"}).damagedReply);
    EXPECT_TRUE(planOf({"wrong-complement"}).wrongComplement);
    EXPECT_TRUE(planOf({"wrong-confirmation"}).wrongConfirmation);
    EXPECT_TRUE(planOf({"wrong-digest"}).wrongDigest);
    EXPECT_TRUE(planOf({"no-disconnect"}).noDisconnect);
}

TEST(FaultPlan, NumbersThatMayBeLeftOut) {
    EXPECT_EQ(planOf({"junk"}).junkBytes, 1U);
    EXPECT_EQ(planOf({"junk=4"}).junkBytes, 4U);
    EXPECT_EQ(planOf({"wrong-request"}).wrongRequests, 1U);
    EXPECT_EQ(planOf({"wrong-request=5"}).wrongRequests, 5U);
    EXPECT_EQ(planOf({"truncated-reply"}).truncatedReply, 2000U);
    EXPECT_EQ(planOf({"truncated-reply=0"}).truncatedReply, 0U);
    EXPECT_EQ(planOf({"late"}).late, std::chrono::seconds(1));
    EXPECT_EQ(planOf({"late=11000"}).late, std::chrono::seconds(11));
}

TEST(FaultPlan, NumbersThatAreNeeded) {
    EXPECT_THAT(planOf({"negative=3"}).negativeBlocks, ElementsAre(3));
    EXPECT_THAT(planOf({"silence=2"}).silentBlocks, ElementsAre(2));
    EXPECT_EQ(planOf({"cable=5000"}).cable, 5000U);
    for (const std::string name : {"negative", "silence", "cable"}) {
        EXPECT_THAT(problemOf(name), HasSubstr("needs a number: " + name + "=N"));
    }
}

TEST(FaultPlan, FaultsAddUp) {
    const FaultPlan plan = planOf({"negative=3", "negative=1", "junk", "negative=3", "no-disconnect"});
    EXPECT_THAT(plan.negativeBlocks, ElementsAre(1, 3));
    EXPECT_EQ(plan.junkBytes, 1U);
    EXPECT_TRUE(plan.noDisconnect);
}

TEST(FaultPlan, UnknownNamesAreNamedWithTheKnownOnes) {
    for (const std::string name : {"", "nagative", "NEGATIVE", "negative ", " junk", "junk2"}) {
        EXPECT_THAT(problemOf(name + "=1"),
                    testing::AllOf(HasSubstr("unknown fault \"" + name + "\""), HasSubstr("no-disconnect")));
    }
}

TEST(FaultPlan, NumbersWhereNoneBelongs) {
    EXPECT_THAT(problemOf("no-request=1"), HasSubstr("takes no number"));
    EXPECT_THAT(problemOf("damaged-reply="), HasSubstr("takes no number"));
}

TEST(FaultPlan, BadNumbersAreRefusedWithTheRange) {
    for (const std::string number :
         {"", "x", "-1", "+1", "1.5", "1 ", " 1", "0x10", "4294967296", "99999999999999999999", "1=1"}) {
        EXPECT_THAT(problemOf("junk=" + number), HasSubstr("from 1 to 1000, not \"" + number + "\""));
    }
    EXPECT_THAT(problemOf("junk=0"), HasSubstr("from 1 to"));
    EXPECT_THAT(problemOf("junk=1001"), HasSubstr("from 1 to 1000"));
    EXPECT_THAT(problemOf("truncated-reply=4101"), HasSubstr("from 0 to 4100"));
    EXPECT_THAT(problemOf("negative=0"), HasSubstr("from 1 to"));
    EXPECT_THAT(problemOf("cable=0"), HasSubstr("from 1 to"));
}

TEST(FaultPlan, TheHelpNamesEveryFault) {
    EXPECT_THAT(faultForms(),
                ElementsAre("no-request", "wrong-request[=N]", "negative=N", "silence=N", "junk[=N]",
                            "damaged-reply", "truncated-reply[=N]", "wrong-complement", "late[=N]",
                            "wrong-confirmation", "wrong-digest", "no-disconnect", "cable=N"));
    for (const std::string& form : faultForms()) {
        EXPECT_THAT(faultHelp(), HasSubstr("  " + form + " "));
    }
}

TEST(FaultPlan, EveryFaultSetsAMemberOfItsOwn) {
    std::vector<FaultPlan> plans{FaultPlan{}};
    for (const std::string& form : faultForms()) {
        const std::string name = faultName(form);
        plans.push_back(planOf({form.ends_with('N') ? name + "=1" : name}));
        EXPECT_EQ(std::ranges::count(plans, plans.back()), 1) << form;
    }
}

}  // namespace
}  // namespace tessavo::test
