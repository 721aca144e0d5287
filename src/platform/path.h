#pragma once

#include <cstddef>
#include <string>

namespace skyhaul {

// What the system's paths look like. Nothing here touches the disk.

// Where the file's own name begins: behind the last separator. The path's size when it names no
// file, as "flights/" does.
size_t NameStart(const std::string& path);

// The folder part of a path with the separator at its end; "." for a path without one.
std::string FolderOf(const std::string& path);

// The path of a folder in the form that a file name can be put behind.
std::string AsFolder(const std::string& path);

}  // namespace skyhaul
