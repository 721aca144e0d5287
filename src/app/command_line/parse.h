#pragma once

#include <string>

#include "app/command_line/command_line_block.h"
#include "app/command_line/from_arguments.h"
#include "app/command_line/keywords.h"

namespace skyhaul {

// The title under which the messages of ParseCommandLine are shown.
inline constexpr char kCommandLineTitle[] = "Parsing command line";

// Parses the program's command line: the text after the program's name, which ends at its first
// zero or at its end. A text that begins with a double quote is what lies between it and the next
// one; a text that does not begin with a slash is one file to open. Nothing is carried out.
// Returns 0 with the block filled (block.present is false when the text is empty), or -1 with the
// message to show and the block empty.
int ParseCommandLine(const std::string& text, const CommandLineHost& host, CommandLineBlock& block,
                     std::string& message);

// Parses what a shell's arguments came to: their switches, with --warning if /WR_CTR is among them,
// and at most one file to open, which no command may stand beside. Values that the text form would
// cut are refused. The file's name is kept whole: it is known to exist, so no limit of the text
// form applies. Returns as ParseCommandLine.
int ParseArguments(const ArgumentText& arguments, const CommandLineHost& host,
                   CommandLineBlock& block, std::string& message);

}  // namespace skyhaul
