#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "core/shell.h"

namespace skyhaul {

// The shell without a window. Results go to standard output, everything that tells of the work to
// standard error: messages, status lines, and the progress on one line that is rewritten when
// standard error is a terminal.
struct Console {
  bool terminal = false;                // rewrite the progress line
  std::vector<uint32_t> track_numbers;  // list numbers to choose; empty: the newest flight

  std::mutex mutex;           // guards what follows
  size_t progress_width = 0;  // characters of the progress line that stands there unfinished
  int told_tenths = -1;       // of the last progress told as a plain line
};

// The shell that speaks through a console, which must outlive it. Its functions may be called from
// any thread. Questions are answered with no: nobody is there to ask in a batch run.
Shell ConsoleShell(Console& console);

// Ends an unfinished progress line, so that other output starts on a line of its own.
void FinishProgressLine(Console& console);

// Prints a result to standard output. Here as in all texts above, what an instrument or a file said
// is shown with '?' for characters that would steer the terminal.
void PrintResult(Console& console, const std::string& text);

// The flight list as a table, one line per flight; a mark stands before the chosen ones.
std::string TrackListTable(const std::vector<TrackListEntry>& list,
                           const std::vector<uint32_t>& chosen);

}  // namespace skyhaul
