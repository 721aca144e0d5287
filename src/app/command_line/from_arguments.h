#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace skyhaul {

using FileExistsFunction = std::function<bool(const std::string& path)>;

// What the arguments of a program say.
struct ArgumentText {
  std::vector<std::string> files;  // arguments that are existing files, whatever they look like
  std::string text;                // the rest as a command line to parse
};

// True for a command line that can be parsed as it was typed: switches, with quotes around values
// only. Splitting it first would do harm, because a value like "C:\My flights\" ends in what the
// system's rules take for an escaped quote. Some shells and programs put the quotes around whole
// switches; those have to be split.
bool ReadsAsSwitches(const std::string& text);

// The command line where a shell has split it and taken its quotes away. Every argument after the
// program's name is a file that exists or one switch, so '/PILOT=First Last' becomes
// /PILOT="First Last". A value that begins with a double quote or holds one is kept as it is:
// quotes in quotes cannot be written. Arguments that do not begin with a switch are the words of
// one file name.
ArgumentText CommandTextFromArguments(std::span<const std::string> arguments,
                                      const FileExistsFunction& file_exists);

}  // namespace skyhaul
