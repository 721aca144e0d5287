#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>

#include "core/owner_queue.h"
#include "core/shell.h"

namespace skyhaul {

// The shell without a window. Results go to standard output, everything that tells of the work to
// standard error: messages, status lines, and the progress on one line that is rewritten when
// standard error is a terminal.
struct Console {
  bool terminal = false;             // rewrite the progress line
  bool aborts_on_interrupt = false;  // Ctrl-C aborts the job that RunToEnd() waits for

  OwnerQueue owner;  // what the job's thread hands over to the one that waits

  std::mutex mutex;           // guards what follows
  size_t progress_width = 0;  // characters of the progress line that stands there unfinished
  int shown_tenths = -1;      // of the last progress shown as a plain line
  int output_error = 0;       // errno of the first result that could not be written

  std::atomic<bool> interrupted = false;
  bool watching = false;  // only for the thread that waits
};

// The shell that speaks through a console, which must outlive it. Its functions may be called from
// any thread. Questions are answered with no: nobody is there to ask in a batch run.
Shell ConsoleShell(Console& console);

// Ends an unfinished progress line, so that other output starts on a line of its own.
void FinishProgressLine(Console& console);

// Prints a result to standard output, and remembers in output_error why that failed. Here as in all
// texts above, what an instrument or a file said is shown with '?' for characters that would steer
// the terminal.
void PrintResult(Console& console, const std::string& text);

// For RunToEnd(): run the next routine that was handed over, and let an interrupt abort the job
// meanwhile; and end that.
void RunOneForOwner(Console& console);
void StopWatching(Console& console);

}  // namespace skyhaul
