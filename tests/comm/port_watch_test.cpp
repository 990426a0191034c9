#include "comm/port_watch.h"

#include <gtest/gtest.h>
#include <map>
#include <optional>

// What looking at a port finds, with a system that a test makes up.

namespace tessavo::test {
namespace {

using Event = PortWatch::Event;

class Watched : public testing::Test {
 protected:
    PortWatch::System system() {
        return {[this](const std::string& name) {
                    ++looks;
                    return devices.contains(name);
                },
                [this](const std::string& name) {
                    ++identityReads;
                    return devices.at(name);
                }};
    }
    void plug(const std::string& identity) { devices["ttyUSB0"] = identity; }
    void unplug() { devices.erase("ttyUSB0"); }

    std::map<std::string, std::string> devices;  ///< identities by the names that are there
    int looks = 0;
    int identityReads = 0;
    PortWatch watch{system()};
};

TEST_F(Watched, APortThatStaysIsNoNews) {
    plug("a");
    watch.setPort("ttyUSB0");
    const int before = looks;
    for (int look = 1; look <= 5; ++look) {
        EXPECT_EQ(watch.look(), Event::none);
        EXPECT_EQ(looks, before + look) << "one question for a look";
    }
    EXPECT_EQ(identityReads, 1) << "while nothing changes only its name is asked for";
}

TEST_F(Watched, APortThatGoesAndComesBackIsToldOnceEach) {
    for (const char* identity : {"a", ""}) {
        plug(identity);
        watch.setPort("ttyUSB0");
        for (int round = 0; round < 3; ++round) {
            unplug();
            EXPECT_EQ(watch.look(), Event::gone);
            EXPECT_EQ(watch.look(), Event::none);
            plug(identity);
            EXPECT_EQ(watch.look(), Event::back);
            EXPECT_EQ(watch.look(), Event::none);
        }
    }
}

TEST_F(Watched, AnotherDeviceOfTheSameNameIsNotTheSame) {
    plug("a");
    watch.setPort("ttyUSB0");
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("b");
    EXPECT_EQ(watch.look(), Event::replaced);
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("b");
    EXPECT_EQ(watch.look(), Event::replaced) << "it is still not the one that was chosen";
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("a");
    EXPECT_EQ(watch.look(), Event::back);
}

TEST_F(Watched, ADeviceThatWasAcceptedIsTheOneToComeBack) {
    plug("a");
    watch.setPort("ttyUSB0");
    watch.accept();
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("b");
    EXPECT_EQ(watch.look(), Event::replaced);
    watch.accept();
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("a");
    EXPECT_EQ(watch.look(), Event::replaced);
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("b");
    EXPECT_EQ(watch.look(), Event::back);
}

TEST_F(Watched, AnUnknownIdentityOnEitherSideDoesNotMakeAnotherDevice) {
    plug("");
    watch.setPort("ttyUSB0");
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("a");
    EXPECT_EQ(watch.look(), Event::back);
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("");
    EXPECT_EQ(watch.look(), Event::back);
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("b");
    EXPECT_EQ(watch.look(), Event::replaced) << "what was once known is not forgotten";
}

TEST_F(Watched, ANameThatTheSystemNeverHadIsNotGone) {
    watch.setPort("inside");
    EXPECT_EQ(watch.look(), Event::none);
    watch.setPort("");
    EXPECT_EQ(watch.look(), Event::none);
    devices[""] = "a";
    EXPECT_EQ(watch.look(), Event::none) << "no port is chosen, whatever the system says";
    devices.clear();
    EXPECT_EQ(watch.look(), Event::none);
    watch.setPort("ttyUSB0");
    plug("a");
    EXPECT_EQ(watch.look(), Event::none) << "it came, but it never went";
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
}

TEST_F(Watched, AnotherPortBeginsAnew) {
    plug("a");
    devices["ttyUSB1"] = "b";
    watch.setPort("ttyUSB0");
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    watch.setPort("ttyUSB1");
    EXPECT_EQ(watch.look(), Event::none);
    watch.setPort("ttyUSB0");
    EXPECT_EQ(watch.look(), Event::none) << "not there when it was chosen";
    plug("c");
    EXPECT_EQ(watch.look(), Event::none);
    unplug();
    EXPECT_EQ(watch.look(), Event::gone);
    plug("a");
    EXPECT_EQ(watch.look(), Event::replaced);
}

}  // namespace
}  // namespace tessavo::test
