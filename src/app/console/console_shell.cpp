#include "app/console/console_shell.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "core/text/printable.h"
#include "device/job_runner.h"
#include "platform/terminal.h"
#include "report/flight_table.h"

namespace skyhaul {

namespace {

Console& Of(void* context) {
  return *static_cast<Console*>(context);
}

void EndProgressLine(Console& console) {
  // The cursor stands at the end of the progress line only while its width is not 0.
  if (console.progress_width == 0) return;
  std::fputc('\n', stderr);
  console.progress_width = 0;
}

// In one write, which cannot tear a line, or on Windows a letter. Windows buffers what goes to a
// pipe.
void WriteError(const std::string& text) {
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

void PrintLine(Console& console, const std::string& line) {
  EndProgressLine(console);
  WriteError(PrintableLines(line) + '\n');
}

void Message(void* context, const char* text, const char* title) {
  Console& console = Of(context);
  const std::scoped_lock lock(console.mutex);
  PrintLine(console, std::string(title) + ": " + text);
}

bool AnswerNo(void* context, const char* text, const char* title) {
  Console& console = Of(context);
  const std::scoped_lock lock(console.mutex);
  PrintLine(console, std::string(title) + ": " + text + " No.");
  return false;
}

void Status(void* context, const char* text) {
  Console& console = Of(context);
  const std::scoped_lock lock(console.mutex);
  // A new step begins with its own lines of progress, even at the tenth where the last one ended.
  console.shown_tenths = -1;
  PrintLine(console, text);
}

// A log file does not need every percent: each tenth gets a plain line.
bool WorthALine(Console& console, int percent) {
  if (percent == kUnknownPercent) return true;
  if (percent / 10 == console.shown_tenths) return false;
  console.shown_tenths = percent / 10;
  return true;
}

void Progress(void* context, const char* text, int percent) {
  Console& console = Of(context);
  const std::scoped_lock lock(console.mutex);
  std::string line = PrintableLines(text);
  if (percent != kUnknownPercent) line += " " + std::to_string(percent) + "%";
  if (!console.terminal) {
    if (WorthALine(console, percent)) PrintLine(console, line);
    return;
  }
  const size_t width = line.size();
  // Blanks wipe out the end of a longer line before it.
  if (width < console.progress_width) line.append(console.progress_width - width, ' ');
  WriteError('\r' + line);
  // An empty text still has its carriage return, so that the line counts as begun.
  console.progress_width = std::max(width, size_t{1});
}

// A batch run has nobody to ask: its requests say which flights they want.
int ChooseNothing(void* /*context*/, const std::vector<TrackListEntry>& /*list*/,
                  std::vector<uint32_t>& /*chosen*/) {
  return -1;
}

void TracksChosen(void* context, const std::vector<TrackListEntry>& list,
                  const std::vector<uint32_t>& chosen) {
  PrintResult(Of(context), FlightTable(list, chosen));
}

void RunOnOwner(void* context, void (*routine)(void* argument), void* argument) {
  // The main thread owns the document and waits for this queue in RunOneForOwner().
  PostToOwner(Of(context).owner, routine, argument);
}

// On a thread of its own, see OnInterrupt().
void AbortOnInterrupt(void* context) {
  // Set before the abort: a job that starts between the two is then aborted by the owner.
  Of(context).interrupted = true;
  AbortJob(nullptr);  // silent when the job has ended by itself meanwhile
}

}  // namespace

Shell ConsoleShell(Console& console) {
  return {.context = &console,
          .message = Message,
          .ask = AnswerNo,
          .status = Status,
          .progress = Progress,
          .choose_tracks = ChooseNothing,
          .tracks_chosen = TracksChosen,
          .run_on_owner = RunOnOwner};
}

void PrintResult(Console& console, const std::string& text) {
  const std::scoped_lock lock(console.mutex);
  EndProgressLine(console);
  // Under the same lock as messages, so that a progress line is ended before a result on the same
  // terminal.
  errno = 0;
  const bool written =
      std::fputs(PrintableLines(text).c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  // Kept at once: whatever the program does next may leave an error of its own in errno.
  if (!written && console.output_error == 0) console.output_error = errno == 0 ? EIO : errno;
}

void FinishProgressLine(Console& console) {
  const std::scoped_lock lock(console.mutex);
  EndProgressLine(console);
}

void RunOneForOwner(Console& console) {
  if (console.aborts_on_interrupt && !console.watching) {
    console.watching = true;
    OnInterrupt(AbortOnInterrupt, &console);
  }
  RunNextRoutine(console.owner);
  // The routine may have started another job, which the interrupt came too early for.
  if (console.interrupted) AbortJob(nullptr);
}

void StopWatching(Console& console) {
  if (console.watching) OnInterrupt(nullptr, nullptr);
  console.watching = false;
  FinishProgressLine(console);
}

}  // namespace skyhaul
