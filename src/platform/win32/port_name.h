#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// How Windows names serial ports. Nothing here asks the system.

// "COM9", and from 10 on "\\.\COM10": the short form ends at 9.
std::string ComPortName(uint32_t number);

// The number in a text that begins with "COM": its decimal digits, other characters skipped.
// Returns 0 when the text begins otherwise, has no digit but 0, or more than nine that count.
uint32_t ComPortNumber(std::string_view text);

// True for a name in the device namespace, "\\.\" and more.
bool IsDeviceName(std::string_view text);

// A port's name as a person knows it: without "\\.\".
std::string_view PlainPortName(std::string_view name);

// What is connected to a port, by the name that its driver gave the device ("\Device\VCP0"); empty
// when the name does not say.
std::string_view DescribeDevice(std::string_view device);

}  // namespace skyhaul
