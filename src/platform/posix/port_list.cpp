#include "platform/posix/port_list.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/file.h"

namespace skyhaul {

namespace {

namespace fs = std::filesystem;

struct FoundPort {
  bool is_usb = false;
  std::string entry;  // its name in class/tty and in the device folder
  std::string description;
};

// The text of a sysfs attribute on one line; empty when there is no such attribute. Whoever built
// the adapter chose it, so nothing in it may steer a terminal.
std::string ReadAttribute(const fs::path& path) {
  std::string text;
  ReadWholeFile(path.string(), text);
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
  text.erase(std::remove_if(text.begin(), text.end(), is_control), text.end());
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// A USB interface's folder lies in that of its device, which alone has an idVendor.
fs::path UsbDeviceAbove(fs::path folder) {
  for (; folder.has_relative_path(); folder = folder.parent_path()) {
    if (FileExists((folder / "idVendor").string())) return folder;
  }
  return {};
}

std::string DescribeUsb(const fs::path& device) {
  std::string maker = ReadAttribute(device / "manufacturer");
  std::string product = ReadAttribute(device / "product");
  if (product.empty()) return maker;
  // Many products begin with their maker's name.
  if (maker.empty() || product.find(maker) != std::string::npos) return product;
  return maker + " " + product;
}

// Consoles and pseudo-terminals have no device. The kernel makes entries for on-board ports that
// the board may not have; their chip type is 0, unknown.
bool HasHardware(const fs::path& entry) {
  std::error_code error;
  return fs::exists(entry / "device", error) && ReadAttribute(entry / "type") != "0";
}

// The entry of a USB adapter is a link, and the folders above its device say which:
//   /sys/class/tty/ttyUSB0/device -> /sys/devices/pci0000:00/0000:00:14.0/usb1/1-2/1-2:1.0/ttyUSB0
FoundPort Describe(const fs::path& entry) {
  FoundPort port;
  port.entry = entry.filename().string();
  std::error_code error;
  const fs::path device = fs::canonical(entry / "device", error);
  const fs::path usb = error ? fs::path() : UsbDeviceAbove(device);
  port.is_usb = !usb.empty();
  if (port.is_usb) {
    port.description = DescribeUsb(usb);
  } else if (port.entry.starts_with("rfcomm")) {
    port.description = "Bluetooth";
  }
  return port;
}

// Takes a number off the front of a text, without its leading zeros.
std::string_view TakeDigits(std::string_view& text) {
  const size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
  std::string_view digits = text.substr(0, end);
  text.remove_prefix(end);
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

// Compares runs of digits by their value and everything else by character.
bool NaturalLess(std::string_view left, std::string_view right) {
  const auto is_digit = [](std::string_view text) { return text[0] >= '0' && text[0] <= '9'; };
  while (!left.empty() && !right.empty()) {
    if (is_digit(left) && is_digit(right)) {
      const std::string_view a = TakeDigits(left);
      const std::string_view b = TakeDigits(right);
      // Without leading zeros the longer number is the larger, whatever its size.
      if (a.size() != b.size()) return a.size() < b.size();
      if (a != b) return a < b;
    } else {
      if (left[0] != right[0]) return left[0] < right[0];
      left.remove_prefix(1);
      right.remove_prefix(1);
    }
  }
  return left.size() < right.size();
}

}  // namespace

int ListPorts(const std::string& sysfs_root, const std::string& dev_root,
              std::vector<PortInfo>& ports) {
  ports.clear();
  std::error_code error;
  std::vector<FoundPort> found;
  fs::directory_iterator entry(fs::path(sysfs_root) / "class" / "tty", error);
  // Errors come back as codes: an adapter may be pulled out while its entry is looked at.
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (HasHardware(entry->path())) found.push_back(Describe(entry->path()));
  }
  if (error) return -1;
  std::sort(found.begin(), found.end(), [](const FoundPort& a, const FoundPort& b) {
    return a.is_usb != b.is_usb ? a.is_usb : NaturalLess(a.entry, b.entry);
  });
  found.resize(std::min(found.size(), kMaxPorts));
  for (FoundPort& port : found) {
    ports.push_back({.number = static_cast<uint32_t>(ports.size()) + 1,
                     .name = dev_root + "/" + port.entry,
                     .description = std::move(port.description)});
  }
  return 0;
}

std::string PortName(const std::string& sysfs_root, const std::string& dev_root, uint32_t number) {
  std::vector<PortInfo> ports;
  if (ListPorts(sysfs_root, dev_root, ports) == 0 && number >= 1 && number <= ports.size()) {
    return ports[number - 1].name;
  }
  return "COM" + std::to_string(number);
}

}  // namespace skyhaul
