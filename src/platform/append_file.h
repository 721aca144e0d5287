#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skyhaul {

// A file that grows while the program runs, unlike those of file.h, which are written whole.
using AppendHandle = intptr_t;
inline constexpr AppendHandle kNoAppendHandle = -1;

struct AppendOpening {
  AppendHandle handle = kNoAppendHandle;
  std::string reason;  // the system's own words; empty on success
};

// Opens a file to write behind what it holds, and makes it when there is none, for this user's eyes
// alone. A pipe that nobody reads is refused, and on Linux a terminal: an instrument may be behind
// it.
AppendOpening OpenToAppend(const std::string& path);

// Hands the whole text to the system, which keeps it also when the program dies. Never waits for
// the reader of a pipe. Returns the system's own words when not all of it was taken, else nothing.
std::string Append(AppendHandle file, std::string_view text);

// Waits until what was appended is on the disk and survives the computer's death. Does nothing
// where there is no disk behind the name.
void SettleAppended(AppendHandle file);

void CloseAppended(AppendHandle file);

}  // namespace skyhaul
