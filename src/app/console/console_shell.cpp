#include "app/console/console_shell.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "core/text/printable.h"
#include "core/time_scale.h"

namespace skyhaul {

namespace {

Console& Of(void* context) {
  return *static_cast<Console*>(context);
}

void EndProgressLine(Console& console) {
  if (console.progress_width == 0) return;
  std::fputc('\n', stderr);
  console.progress_width = 0;
}

// Line by line, because our own texts have line ends.
std::string Shown(std::string_view text) {
  std::string shown;
  for (;;) {
    const size_t end = text.find('\n');
    shown += PrintableText(text.substr(0, end));
    if (end == std::string_view::npos) return shown;
    shown += '\n';
    text.remove_prefix(end + 1);
  }
}

// In one write, which cannot tear a line, or on Windows a letter. Windows buffers what goes to a
// pipe.
void WriteError(const std::string& text) {
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

void PrintLine(Console& console, const std::string& line) {
  EndProgressLine(console);
  WriteError(Shown(line) + '\n');
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
  console.told_tenths = -1;
  PrintLine(console, text);
}

// A log file does not need every percent: a plain line is told for each tenth.
bool WorthALine(Console& console, int percent) {
  if (percent == kUnknownPercent) return true;
  if (percent / 10 == console.told_tenths) return false;
  console.told_tenths = percent / 10;
  return true;
}

void Progress(void* context, const char* text, int percent) {
  Console& console = Of(context);
  const std::scoped_lock lock(console.mutex);
  std::string line = Shown(text);
  if (percent != kUnknownPercent) line += " " + std::to_string(percent) + "%";
  if (!console.terminal) {
    if (WorthALine(console, percent)) PrintLine(console, line);
    return;
  }
  const size_t width = line.size();
  if (width < console.progress_width) line.append(console.progress_width - width, ' ');
  WriteError('\r' + line);
  console.progress_width = std::max(width, size_t{1});
}

uint32_t NewestTrack(const std::vector<TrackListEntry>& list) {
  const auto earlier = [](const auto& a, const auto& b) { return a.start_time < b.start_time; };
  return std::max_element(list.begin(), list.end(), earlier)->index;
}

bool Listed(const std::vector<TrackListEntry>& list, uint32_t index) {
  return std::any_of(list.begin(), list.end(),
                     [&](const TrackListEntry& entry) { return entry.index == index; });
}

int ChooseTracks(void* context, const std::vector<TrackListEntry>& list,
                 std::vector<uint32_t>& chosen) {
  Console& console = Of(context);
  if (list.empty()) return -1;
  chosen.clear();
  for (const uint32_t number : console.track_numbers) {
    if (Listed(list, number - 1)) {
      chosen.push_back(number - 1);
      continue;
    }
    const std::string text = "There is no track " + std::to_string(number) + " in the list";
    Message(context, text.c_str(), "Select track");
    chosen.clear();
    break;
  }
  if (console.track_numbers.empty()) chosen.push_back(NewestTrack(list));
  const std::scoped_lock lock(console.mutex);
  EndProgressLine(console);
  std::fputs(TrackListTable(list, chosen).c_str(), stdout);
  std::fflush(stdout);
  return chosen.empty() ? -1 : static_cast<int>(chosen.size());
}

}  // namespace

Shell ConsoleShell(Console& console) {
  return {.context = &console,
          .message = Message,
          .ask = AnswerNo,
          .status = Status,
          .progress = Progress,
          .choose_tracks = ChooseTracks};
}

void PrintResult(Console& console, const std::string& text) {
  const std::scoped_lock lock(console.mutex);
  EndProgressLine(console);
  std::fputs(Shown(text).c_str(), stdout);
  std::fflush(stdout);
}

void FinishProgressLine(Console& console) {
  const std::scoped_lock lock(console.mutex);
  EndProgressLine(console);
}

std::string TrackListTable(const std::vector<TrackListEntry>& list,
                           const std::vector<uint32_t>& chosen) {
  std::string table = "   No  Date        Start     Duration\n";
  for (const TrackListEntry& entry : list) {
    const bool is_chosen = std::find(chosen.begin(), chosen.end(), entry.index) != chosen.end();
    const CalendarTime start = CalendarFromTime(entry.start_time);
    char line[96];
    std::snprintf(line, sizeof line, "%c %3u  %04d-%02d-%02d  %02d:%02d:%02d  %02u:%02u:%02u\n",
                  is_chosen ? '*' : ' ', entry.index + 1, start.year, start.month, start.day,
                  start.hour, start.minute, start.second, entry.duration_s / 3600,
                  entry.duration_s / 60 % 60, entry.duration_s % 60);
    table += line;
  }
  return table;
}

}  // namespace skyhaul
