#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {

using FileExistsFunction = std::function<bool(const std::string& path)>;

// What a program's arguments come to.
struct ArgumentText {
  std::vector<std::string> files;  // arguments that are existing files, whatever they look like
  std::string text;                // the rest as a command line to parse
  std::optional<std::string> warning = {};  // the value of --warning; filled in by the caller

  friend bool operator==(const ArgumentText&, const ArgumentText&) = default;
};

// The command line of a program that was called with these words, whose quotes the system or a
// shell has taken away. typed is the same before it was split, empty where the system does not keep
// it; it is preferred when it can be parsed as it stands: switches with quotes around values only,
// or with one pair of quotes around all of them. Otherwise every word is a file that exists or one
// switch, so '/PILOT=First Last' becomes /PILOT="First Last"; a single word may hold all switches.
// A value that holds a double quote stays as it is: quotes in quotes cannot be written. Words that
// do not begin with a switch are the words of one file name.
ArgumentText CommandTextFromArguments(std::span<const std::string> words, const std::string& typed,
                                      const FileExistsFunction& file_exists);

}  // namespace skyhaul
