#include "platform/posix/port_list.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "tests/platform/posix/scratch.h"

namespace skyhaul {
namespace {

namespace fs = std::filesystem;

// A made-up sysfs.
class PortList : public ::testing::Test {
 protected:
  void SetUp() override { fs::create_directories(tty); }

  static void WriteAttributes(const fs::path& at,
                              const std::map<std::string, std::string>& values) {
    fs::create_directories(at);
    for (const auto& [name, value] : values) std::ofstream(at / name) << value << "\n";
  }

  // An entry whose device is the folder at `device` below devices/, as the kernel links it.
  void AddPort(const std::string& name, const std::string& device,
               const std::map<std::string, std::string>& attributes = {}) {
    const fs::path real = root / "devices" / device / "tty" / name;
    WriteAttributes(real, attributes);
    fs::create_directory_symlink(fs::path("../.."), real / "device");
    fs::create_directory_symlink(real, tty / name);
  }

  void AddUsbPort(const std::string& name, const std::string& bus,
                  const std::map<std::string, std::string>& attributes) {
    WriteAttributes(root / "devices/usb1" / bus, attributes);
    AddPort(name, "usb1/" + bus + "/" + bus + ":1.0/" + name);
  }

  std::vector<PortInfo> List() {
    std::vector<PortInfo> ports(3);
    EXPECT_EQ(ListPorts(root.string(), "/dev", ports), 0);
    return ports;
  }

  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const PortInfo& port : List()) names.push_back(port.name);
    return names;
  }

  ScratchFolder scratch;
  fs::path root = scratch.path;
  fs::path tty = root / "class/tty";
};

TEST_F(PortList, ListsHardwareOnly) {
  fs::create_directories(tty / "tty0");
  fs::create_directories(tty / "ptmx");
  fs::create_directories(tty / "ttyS9");
  fs::create_directory_symlink("nowhere", tty / "ttyS9/device");
  AddPort("ttyS0", "pnp0/00:01", {{"type", "4"}});
  AddPort("ttyS1", "platform/serial8250", {{"type", "0"}});
  AddPort("ttyACM0", "platform/gadget");
  EXPECT_EQ(Names(), (std::vector<std::string>{"/dev/ttyACM0", "/dev/ttyS0"}));
}

TEST_F(PortList, UsbComesFirstAndNumbersSortByValue) {
  AddPort("ttyS2", "pnp0/00:01", {{"type", "4"}});
  AddPort("ttyS10", "pnp0/00:02", {{"type", "4"}});
  AddUsbPort("ttyUSB10", "1-1", {{"idVendor", "0403"}, {"product", "Adapter"}});
  AddUsbPort("ttyUSB2", "1-2", {{"idVendor", "0403"}, {"product", "Adapter"}});
  AddUsbPort("ttyACM11", "1-3", {{"idVendor", "0403"}, {"product", "Adapter"}});
  EXPECT_EQ(Names(), (std::vector<std::string>{"/dev/ttyACM11", "/dev/ttyUSB2", "/dev/ttyUSB10",
                                               "/dev/ttyS2", "/dev/ttyS10"}));
  const std::vector<PortInfo> ports = List();
  for (size_t i = 0; i < ports.size(); ++i) EXPECT_EQ(ports[i].number, i + 1);
  EXPECT_EQ(PortName(root.string(), "/dev", 3), "/dev/ttyUSB10");
  EXPECT_EQ(PortName(root.string(), "/dev", 6), "COM6");
  EXPECT_EQ(PortName(root.string(), "/dev", 0), "COM0");
}

TEST_F(PortList, DescribesWhatIsBehindAPort) {
  AddUsbPort("ttyUSB0", "1-1",
             {{"idVendor", "0403"}, {"manufacturer", "FTDI"}, {"product", "Serial cable"}});
  AddUsbPort("ttyUSB1", "1-2",
             {{"idVendor", "0403"}, {"manufacturer", "Acme"}, {"product", "Acme cable"}});
  AddUsbPort("ttyUSB2", "1-3", {{"idVendor", "0403"}, {"manufacturer", "Acme"}});
  AddUsbPort("ttyUSB3", "1-4", {{"idVendor", "0403"}, {"product", " \x1b[31mRed\n\x07 "}});
  AddUsbPort("ttyUSB4", "1-5", {{"idVendor", "0403"}});
  AddPort("rfcomm0", "pci/hci0:11");
  AddPort("ttyS0", "pnp0/00:01", {{"type", "4"}});
  std::vector<std::string> descriptions;
  for (const PortInfo& port : List()) descriptions.push_back(port.description);
  EXPECT_EQ(descriptions, (std::vector<std::string>{"FTDI Serial cable", "Acme cable", "Acme",
                                                    "[31mRed", "", "Bluetooth", ""}));
}

TEST_F(PortList, StopsAtFifty) {
  for (int i = 0; i < 60; ++i) AddPort("ttyX" + std::to_string(i), "bus/" + std::to_string(i));
  const std::vector<std::string> names = Names();
  ASSERT_EQ(names.size(), kMaxPorts);
  EXPECT_EQ(names.back(), "/dev/ttyX49");
}

TEST_F(PortList, EmptyIsNotUnreadable) {
  EXPECT_TRUE(List().empty());
  std::vector<PortInfo> ports(1);
  EXPECT_EQ(ListPorts(scratch.path + "/none", "/dev", ports), -1);
  EXPECT_TRUE(ports.empty());
  EXPECT_EQ(PortName(scratch.path + "/none", "/dev", 1), "COM1");
}

}  // namespace
}  // namespace skyhaul
