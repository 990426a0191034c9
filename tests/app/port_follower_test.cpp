#include "app/port_follower.h"

#include <QElapsedTimer>
#include <QTest>
#include <map>

#include "app/status_line.h"
#include "support/frame_fixture.h"

// The chosen port goes and comes, on a machine that the test makes up.

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;
using ::testing::StartsWith;
using Light = TargetStatus::Light;

class PortThatGoes : public FrameTest {
 protected:
    PortThatGoes() {
        portSystem = {[this](const std::string& name) { return devices.contains(name); },
                      [this](const std::string& name) { return devices.at(name); }};
        devices["ttyUSB0"] = "a";
        link.setPortName("ttyUSB0");
        makeFrame();
        settle();
    }
    ~PortThatGoes() override { frame.reset(); }

    /// Waits for the words as a person does, two seconds at most.
    bool saysInTime(const std::string& start) {
        QElapsedTimer timer;
        timer.start();
        return QTest::qWaitFor([&] { return words().starts_with(start); }, 2000) && timer.elapsed() <= 2000;
    }
    void replug(const std::string& identity) {
        devices.erase("ttyUSB0");
        ASSERT_TRUE(saysInTime("port gone "));
        devices["ttyUSB0"] = identity;
    }
    [[nodiscard]] std::string words() const { return frame->statusLine().target().state.toStdString(); }
    [[nodiscard]] Light light() const { return frame->statusLine().target().light; }

    std::map<std::string, std::string> devices;  ///< identities by the names that are there
};

TEST_F(PortThatGoes, TheLightIsRedWithinTwoSecondsAndTellsTheReturn) {
    EXPECT_EQ(words(), "");
    for (int round = 0; round < 2; ++round) {
        devices.erase("ttyUSB0");
        ASSERT_TRUE(saysInTime("port gone ")) << words();
        EXPECT_EQ(light(), Light::trouble);
        EXPECT_THAT(frame->statusLine().paneText(0).toStdString(),
                    StartsWith("ttyUSB0, Live Mode off, port gone "));
        devices["ttyUSB0"] = "a";
        ASSERT_TRUE(saysInTime("port back ")) << words();
        EXPECT_EQ(light(), Light::off);
    }
    EXPECT_FALSE(tuning.updatePending()) << "with Live Mode off nothing is sent";
    EXPECT_THAT(shown, IsEmpty()) << "nothing was opened";
}

TEST_F(PortThatGoes, InLiveModeTheImageIsSentAgain) {
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(tuning.takeUpdate());
    replug("a");
    EXPECT_FALSE(tuning.updatePending()) << "not before it is there again";
    ASSERT_TRUE(saysInTime("port back "));
    EXPECT_TRUE(tuning.updatePending());
    EXPECT_EQ(light(), Light::sending);
    EXPECT_TRUE(words().ends_with(", waiting")) << words();
}

TEST_F(PortThatGoes, AnotherDeviceOfItsNameGetsNothingByItself) {
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    ASSERT_TRUE(tuning.takeUpdate());
    replug("b");
    ASSERT_TRUE(saysInTime("another device ")) << words();
    EXPECT_EQ(light(), Light::trouble);
    EXPECT_FALSE(tuning.updatePending());
    replug("a");
    ASSERT_TRUE(saysInTime("port back "));
    EXPECT_TRUE(tuning.updatePending());
}

TEST_F(PortThatGoes, AnotherPortHasNoPartInIt) {
    devices.erase("ttyUSB0");
    ASSERT_TRUE(saysInTime("port gone "));
    devices["ttyUSB1"] = "b";
    link.setPortName("ttyUSB1");
    EXPECT_EQ(words(), "");
    EXPECT_EQ(light(), Light::off);
    devices.erase("ttyUSB1");
    ASSERT_TRUE(saysInTime("port gone "));
}

TEST_F(PortThatGoes, ANarrowBarStillTellsTheWholeLineToAScreenReader) {
    frame->fitInto({640, 480});
    devices.erase("ttyUSB0");
    ASSERT_TRUE(saysInTime("port gone "));
    EXPECT_EQ(frame->statusLine().accessibleDescription(), frame->statusLine().paneText(0));
}

}  // namespace
}  // namespace tessavo::test
