#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace skyhaul {

// Parts of a text, one after the other.
inline std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

// Reads a text that has something to read in it and must not be refused.
template <typename File>
File ReadGood(int (*read)(std::string_view, File&, std::string&), std::string_view text) {
  File file;
  std::string message = "left over";
  const int count = read(text, file, message);
  EXPECT_EQ(message, "");
  if constexpr (requires { file.waypoints; }) {
    EXPECT_EQ(count, static_cast<int>(file.waypoints.size()));
  } else {
    EXPECT_EQ(count, static_cast<int>(file.airspaces.size()));
  }
  return file;
}

// Reads a text that must be refused, and what was there before must go. Returns the message.
template <typename File>
std::string ReadBad(int (*read)(std::string_view, File&, std::string&), std::string_view text) {
  File file = {{{}}, {"old"}};
  std::string message;
  EXPECT_EQ(read(text, file, message), -1) << text;
  const auto& [found, notes] = file;
  EXPECT_TRUE(found.empty() && notes.empty()) << text;
  return message;
}

}  // namespace skyhaul
