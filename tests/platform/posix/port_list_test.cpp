#include "platform/posix/port_list.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

namespace fs = std::filesystem;

// A made-up sysfs.
struct PortList : testing::Test {
  void SetUp() override { fs::create_directories(tty); }

  // An entry whose device is the folder at `device` below devices/, as the kernel links it.
  void AddPort(const std::string& name, const std::string& device, const std::string& type = {}) {
    const fs::path real = root / "devices" / device / "tty" / name;
    fs::create_directories(real);
    if (!type.empty()) WriteText(real / "type", type + "\n");
    fs::create_directory_symlink(fs::path("../.."), real / "device");
    fs::create_directory_symlink(real, tty / name);
  }

  void AddUsbPort(const std::string& name, const std::string& bus,
                  const std::map<std::string, std::string>& attributes) {
    AddPort(name, "usb1/" + bus + "/" + bus + ":1.0/" + name);
    WriteText(root / "devices/usb1" / bus / "idVendor", "0403\n");
    for (const auto& [attribute, value] : attributes) {
      WriteText(root / "devices/usb1" / bus / attribute, value + "\n");
    }
  }

  // "number name (description)" of each port, in order.
  std::vector<std::string> List() {
    std::vector<PortInfo> ports(3);
    EXPECT_EQ(ListPorts(root.string(), "/dev", ports), 0);
    std::vector<std::string> texts;
    for (const PortInfo& port : ports) {
      texts.push_back(std::to_string(port.number) + " " + port.name + " (" + port.description +
                      ")");
    }
    return texts;
  }

  ScratchFolder scratch;
  fs::path root = scratch.path;
  fs::path tty = root / "class/tty";
};

TEST_F(PortList, ListsHardwareOnly) {
  fs::create_directories(tty / "tty0");
  fs::create_directories(tty / "ttyS9");
  fs::create_directory_symlink("nowhere", tty / "ttyS9/device");
  AddPort("ttyS0", "pnp0/00:01", "4");
  AddPort("ttyS1", "platform/serial8250", "0");
  AddPort("ttyACM0", "platform/gadget");
  EXPECT_EQ(List(), (std::vector<std::string>{"1 /dev/ttyACM0 ()", "2 /dev/ttyS0 ()"}));
}

TEST_F(PortList, UsbComesFirstAndNumbersSortByValue) {
  AddPort("rfcomm0", "pci/hci0:11");
  AddPort("ttyS2", "pnp0/00:01");
  AddPort("ttyS10", "pnp0/00:02");
  AddUsbPort("ttyUSB10", "1-1", {{"manufacturer", "FTDI"}, {"product", "Serial cable"}});
  AddUsbPort("ttyUSB2", "1-2", {{"manufacturer", "Acme"}, {"product", "Acme cable"}});
  AddUsbPort("ttyUSB3", "1-3", {{"manufacturer", "Acme"}});
  AddUsbPort("ttyUSB4", "1-4", {{"product", " \x1b[31mRed\n\x07 "}});
  AddUsbPort("ttyACM11", "1-5", {});
  EXPECT_EQ(List(),
            (std::vector<std::string>{
                "1 /dev/ttyACM11 ()", "2 /dev/ttyUSB2 (Acme cable)", "3 /dev/ttyUSB3 (Acme)",
                "4 /dev/ttyUSB4 ([31mRed)", "5 /dev/ttyUSB10 (FTDI Serial cable)",
                "6 /dev/rfcomm0 (Bluetooth)", "7 /dev/ttyS2 ()", "8 /dev/ttyS10 ()"}));
  EXPECT_EQ(PortName(root.string(), "/dev", 3), "/dev/ttyUSB3");
  EXPECT_EQ(PortName(root.string(), "/dev", 9), "COM9");
}

TEST_F(PortList, StopsAtFifty) {
  for (int i = 0; i < 60; ++i) AddPort("ttyX" + std::to_string(i), "bus/" + std::to_string(i));
  ASSERT_EQ(List().size(), kMaxPorts);
  EXPECT_EQ(List().back(), "50 /dev/ttyX49 ()");
}

TEST_F(PortList, EmptyIsNotUnreadable) {
  EXPECT_TRUE(List().empty());
  std::vector<PortInfo> ports(1);
  EXPECT_EQ(ListPorts(scratch.File("none"), "/dev", ports), -1);
  EXPECT_TRUE(ports.empty());
}

}  // namespace
}  // namespace skyhaul
