#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "platform/file.h"

namespace skyhaul {

// How a file in the making is kept apart from finished ones: it has no name at all, and goes with
// the program however that ends; or it has a temporary one, where the file system has no unnamed
// files (FAT, most network folders).
enum class Making { kUnnamed, kTemporaryName };

struct NewFile {
  std::string path;            // links followed
  std::optional<mode_t> mode;  // the permissions to have; else the user's usual ones
  IfExists if_exists = IfExists::kRefuse;
};

// Writes a regular file whole or not at all, and removes from its folder what killed programs have
// left there. What cannot be made unnamed is made under a temporary name. Returns 0 or an errno
// value.
int MakeFile(const NewFile& wanted, const std::string& text, Making making);

// Writes all of a text. Returns 0 or an errno value; then a part may have been written.
int WriteAll(int fd, const std::string& text);

}  // namespace skyhaul
