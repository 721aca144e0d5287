#pragma once

#include <cstddef>
#include <string>

namespace skyhaul {

// The syntax of the system's paths. Nothing here touches the disk.

// The longest paths of flights, measured by PathLength().
inline constexpr size_t kMaxReadPath = 256;
inline constexpr size_t kMaxWrittenPath = 259;

// The length of a path in characters as the system counts them: Unicode characters on Linux, 16-bit
// units on Windows. A path that is not UTF-8 has the length 0 on Windows, where no file has it.
size_t PathLength(const std::string& path);

// Where the file's own name begins: after the last separator. The path's size when it names no
// file, as "flights/" does.
size_t NameStart(const std::string& path);

// The folder part of a path with the separator at its end; "." for a path without one.
std::string FolderOf(const std::string& path);

// The path of a folder in the form that a file name can be appended to.
std::string AsFolder(const std::string& path);

}  // namespace skyhaul
