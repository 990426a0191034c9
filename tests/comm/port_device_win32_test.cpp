#include "comm/port_device_win32.h"

#include <gtest/gtest.h>
#include <string>

#include "comm/own_ports.h"

namespace tessavo::test {
namespace {

const std::wstring tree = L"Software\\Tessavo-test-of-ports";
const std::wstring classKey = L"\\Control\\DeviceClasses\\{86e0d1e0-8089-11d0-9ce4-08003e301f73}\\";

/// A part of a registry that the test makes up, in the user's own.
class RegistryOfPorts : public testing::Test {
 protected:
    RegistryOfPorts() { remove(); }
    ~RegistryOfPorts() override { remove(); }

    static void remove() { RegDeleteTreeW(HKEY_CURRENT_USER, tree.c_str()); }
    static void value(const std::wstring& key, const wchar_t* name, DWORD type, const void* bytes,
                      std::size_t size) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, (tree + key).c_str(), name, type, bytes,
                                  static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }
    static void text(const std::wstring& key, const wchar_t* name, const std::wstring& content) {
        value(key, name, REG_SZ, content.c_str(), (content.size() + 1) * sizeof(wchar_t));
    }
    /// A device that had this port at some time; one that is connected has it now.
    static void device(const std::wstring& entry, const std::wstring& instance, const std::wstring& port,
                       const std::wstring& name, bool connected) {
        text(classKey + entry, L"DeviceInstance", instance);
        const DWORD linked = connected ? 1 : 0;
        value(classKey + entry + L"\\#\\Control", L"Linked", REG_DWORD, &linked, sizeof linked);
        text(L"\\Enum\\" + instance, L"FriendlyName", name);
        text(L"\\Enum\\" + instance + L"\\Device Parameters", L"PortName", port);
    }
    static PortDevice found(std::string_view port) {
        return ports::registryDevice(HKEY_CURRENT_USER, tree, port);
    }
};

TEST_F(RegistryOfPorts, ThePortsDeviceIsFoundAmongOthers) {
    device(L"a", L"ACPI\\PNP0501\\1", L"COM1", L"Communications Port (COM1)", true);
    device(L"b", L"USB\\VID_10C4&PID_EA60\\0001", L"COM3", L"CP2102 USB to UART (COM3)", true);
    EXPECT_EQ(found("COM3"), (PortDevice{"CP2102 USB to UART", "USB\\VID_10C4&PID_EA60\\0001"}));
    EXPECT_EQ(found("com3").identity, "USB\\VID_10C4&PID_EA60\\0001");
    EXPECT_EQ(found("COM1"), (PortDevice{"Communications Port", ""}));
    EXPECT_EQ(found("COM33"), PortDevice{});
    EXPECT_EQ(found(""), PortDevice{});
}

TEST_F(RegistryOfPorts, TheConnectedOneOfSeveralWithOneNameCounts) {
    for (const bool first : {true, false}) {
        remove();
        device(L"a", L"USB\\VID_0001&PID_0001\\A", L"COM3", L"A", first);
        device(L"b", L"USB\\VID_0002&PID_0002\\B", L"COM3", L"B", !first);
        EXPECT_EQ(found("COM3").description, first ? "A" : "B");
    }
}

TEST_F(RegistryOfPorts, AnOddRegistryTellsNothing) {
    EXPECT_EQ(found("COM3"), PortDevice{});
    text(classKey + L"a", L"DeviceInstance", L"USB\\GONE\\1");
    text(classKey + L"b", L"DeviceInstance", L"");
    const DWORD number = 3;
    value(classKey + L"c", L"DeviceInstance", REG_DWORD, &number, sizeof number);
    text(classKey + L"d", L"DeviceInstance", std::wstring(5000, L'x'));
    text(classKey + L"e", L"Other", L"");
    EXPECT_EQ(found("COM3"), PortDevice{});
    text(classKey + L"f", L"DeviceInstance", L"USB\\VID_1&PID_1\\1");
    text(L"\\Enum\\USB\\VID_1&PID_1\\1", L"DeviceDesc", L"@oem1.inf,%x%;USB Serial Port");
    // As a driver may write it, without a zero at its end.
    value(L"\\Enum\\USB\\VID_1&PID_1\\1\\Device Parameters", L"PortName", REG_SZ, L"COM3", 8);
    EXPECT_EQ(found("COM3").description, "USB Serial Port");
    text(L"\\Enum\\USB\\VID_1&PID_1\\1", L"FriendlyName", std::wstring(5000, L'x'));
    EXPECT_EQ(found("COM3").description, "USB Serial Port") << "too long to be a name";
}

TEST(PortDevice, APortIsThereWhileItsNameIs) {
    EXPECT_FALSE(portIsThere(""));
    EXPECT_FALSE(portIsThere("COM251"));
    EXPECT_TRUE(portIsThere("NUL"));
    ASSERT_TRUE(DefineDosDeviceW(0, L"Q:", L"C:\\windows")) << GetLastError();
    EXPECT_TRUE(portIsThere("Q:"));
    EXPECT_TRUE(portIsThere("\\\\.\\Q:"));
    DefineDosDeviceW(DDD_REMOVE_DEFINITION, L"Q:", nullptr);
    EXPECT_FALSE(portIsThere("Q:"));
}

TEST(PortDevice, ASimulatedTargetIsThereWhileItLives) {
    EXPECT_FALSE(portIsThere("demo"));
    {
        const OwnPort port("demo");
        EXPECT_TRUE(portIsThere("demo"));
        EXPECT_EQ(portDevice("demo").description, "simulated target");
    }
    EXPECT_FALSE(portIsThere("demo"));
    EXPECT_EQ(portDevice("demo"), PortDevice{});
}

}  // namespace
}  // namespace tessavo::test
