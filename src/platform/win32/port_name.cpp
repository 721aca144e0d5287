#include "platform/win32/port_name.h"

#include <algorithm>
#include <iterator>

namespace skyhaul {

namespace {

constexpr std::string_view kComPrefix = "COM";
constexpr std::string_view kDevicePrefix = R"(\\.\)";
constexpr uint32_t kLastShortName = 9;
constexpr uint32_t kMaxNumber = 999'999'999;

struct Driver {
  std::string_view device_prefix;
  std::string_view description;
};

// Drivers of on-board ports and of some adapters all say "Serial", which does not tell them apart.
constexpr Driver kDrivers[] = {
    {R"(\Device\BthModem)", "Bluetooth"},
    {R"(\Device\ProlificSerial)", "USB, Prolific"},
    {R"(\Device\Silabser)", "USB, Silicon Labs"},
    {R"(\Device\USBSER)", "USB"},
    {R"(\Device\VCP)", "USB, FTDI"},
};

}  // namespace

std::string ComPortName(uint32_t number) {
  const std::string name = std::string(kComPrefix) + std::to_string(number);
  return number <= kLastShortName ? name : std::string(kDevicePrefix) + name;
}

uint32_t ComPortNumber(std::string_view text) {
  if (!text.starts_with(kComPrefix)) return 0;
  uint32_t number = 0;
  for (const char c : text.substr(kComPrefix.size())) {
    if (c < '0' || c > '9') continue;
    if (number > kMaxNumber / 10) return 0;
    number = number * 10 + static_cast<uint32_t>(c - '0');
  }
  return number;
}

bool IsDeviceName(std::string_view text) {
  return text.starts_with(kDevicePrefix) && text.size() > kDevicePrefix.size();
}

std::string_view PlainPortName(std::string_view name) {
  return IsDeviceName(name) ? name.substr(kDevicePrefix.size()) : name;
}

std::string_view DescribeDevice(std::string_view device) {
  const auto* const found =
      std::find_if(std::begin(kDrivers), std::end(kDrivers),
                   [&](const Driver& driver) { return device.starts_with(driver.device_prefix); });
  return found == std::end(kDrivers) ? std::string_view() : found->description;
}

}  // namespace skyhaul
