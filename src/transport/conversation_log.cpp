#include "transport/conversation_log.h"

#include "core/text/digits.h"
#include "core/text/printable.h"
#include "core/text/scan.h"

namespace skyhaul {

namespace {

constexpr uint64_t kPause_ns = 5'000'000;
constexpr uint64_t kMillisecond_ns = 1'000'000;
constexpr size_t kLongestLine = 100;
constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kSpeakerNames[] = {"host", "instrument"};  // in the order of Speaker
constexpr std::string_view kRemark = "remark";

//   "  12.345 host       "
std::string LineStart(uint64_t time_ms, std::string_view who) {
  constexpr size_t kSecondsWidth = 4;
  constexpr size_t kWhoWidth = 11;
  std::string seconds = std::to_string(time_ms / 1000);
  if (seconds.size() < kSecondsWidth) seconds.insert(0, kSecondsWidth - seconds.size(), ' ');
  std::string start = seconds + '.' + PaddedNumber(time_ms % 1000, 3) + ' ' + std::string(who);
  start.append(kWhoWidth - who.size(), ' ');
  return start;
}

// The bytes as the last column shows them.
std::string ShownText(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) text += c >= ' ' && c <= '~' ? c : '.';
  return text;
}

uint64_t Rounded_ms(uint64_t time_ns) {
  return (time_ns + kMillisecond_ns / 2) / kMillisecond_ns;
}

void Finish(ConversationLog& log) {
  if (log.bytes.empty()) return;
  log.write(log.context,
            FormatSpokenLine(
                {.time_ms = Rounded_ms(log.first_ns), .speaker = log.speaker, .bytes = log.bytes}));
  log.bytes.clear();
}

// "12.345" in milliseconds. Returns false for any other text.
bool ReadTime(std::string_view word, uint64_t& time_ms) {
  const size_t point = word.find('.');
  if (point == std::string_view::npos || word.size() - point != 4) return false;
  const int seconds = ReadWholeNumber(word.substr(0, point));
  const int milliseconds = ReadDigits(word, point + 1, 3);
  if (seconds < 0 || milliseconds < 0) return false;
  time_ms = static_cast<uint64_t>(seconds) * 1000 + static_cast<uint64_t>(milliseconds);
  return true;
}

// Takes the hexadecimal column. Returns false when a word of it is no byte.
bool TakeBytes(std::string_view& rest, std::string& bytes) {
  // The text column begins with its bar; blanks are part of it from there on.
  for (SkipBlanks(rest); !rest.empty() && rest.front() != '|'; SkipBlanks(rest)) {
    const std::string_view word = TakeWord(rest);
    const size_t high = word.size() == 2 ? kHexDigits.find(word[0]) : std::string_view::npos;
    const size_t low = word.size() == 2 ? kHexDigits.find(word[1]) : std::string_view::npos;
    if (high == std::string_view::npos || low == std::string_view::npos) return false;
    bytes += static_cast<char>(high * kHexDigits.size() + low);
  }
  return !bytes.empty();
}

// Reads what follows the speaker's name:
//   24 50 42 52 54 4C 2C 2A 37 34 0D 0A  |$PBRTL,*74..|
// Returns what is wrong, null when nothing is.
const char* ReadColumns(std::string_view rest, SpokenLine& line) {
  if (!TakeBytes(rest, line.bytes)) return "its bytes cannot be read";
  // A name that was blanked by hand in the text alone would still stand in the bytes.
  if (rest != '|' + ShownText(line.bytes) + '|') return "its text is not that of its bytes";
  return nullptr;
}

// True for what begins with a job's first line.
bool BeginsJob(std::string_view rest) {
  std::string_view line = TakeLine(rest);
  return TakeWord(line) == "0.000" && TakeWord(line) == kRemark;
}

// Reads one line; a remark or an empty line leaves no bytes. Returns what is wrong, null when
// nothing is.
const char* ReadLine(std::string_view rest, SpokenLine& line) {
  const std::string_view time = TakeWord(rest);
  if (time.empty()) return nullptr;
  if (!ReadTime(time, line.time_ms)) return "it does not begin with seconds like 12.345";
  const std::string_view who = TakeWord(rest);
  if (who == kRemark) return nullptr;
  for (const Speaker speaker : {Speaker::kHost, Speaker::kInstrument}) {
    line.speaker = speaker;
    if (who == kSpeakerNames[static_cast<size_t>(speaker)]) return ReadColumns(rest, line);
  }
  return "it is neither the host's, the instrument's nor a remark";
}

}  // namespace

void LogBytes(ConversationLog& log, Speaker speaker, std::string_view bytes, uint64_t now_ns) {
  FlushLog(log, now_ns);
  // A read that brought nothing does not end what the other side is saying.
  if (bytes.empty()) return;
  if (speaker != log.speaker) Finish(log);
  log.speaker = speaker;
  for (const char c : bytes) {
    if (log.bytes.empty()) log.first_ns = now_ns;
    log.bytes += c;
    log.last_ns = now_ns;
    // A flight has lines of its own, so that a long answer reads like the file.
    if (c == '\n' || log.bytes.size() == kLongestLine) Finish(log);
  }
}

void LogRemark(ConversationLog& log, std::string_view text, uint64_t now_ns) {
  Finish(log);
  log.write(log.context, LineStart(Rounded_ms(now_ns), kRemark) + ' ' + OneLine(text) + '\n');
}

void FlushLog(ConversationLog& log, uint64_t now_ns) {
  if (now_ns > log.last_ns + kPause_ns) Finish(log);
}

std::string FormatSpokenLine(const SpokenLine& line) {
  std::string text = LineStart(line.time_ms, kSpeakerNames[static_cast<size_t>(line.speaker)]);
  for (const char c : line.bytes) {
    const auto byte = static_cast<uint8_t>(c);
    text += ' ';
    text += kHexDigits[byte / 16U];
    text += kHexDigits[byte % 16U];
  }
  text.append("  |").append(ShownText(line.bytes)).append("|\n");
  return text;
}

bool IsRemark(std::string_view line) {
  SpokenLine spoken;
  return ReadLine(line, spoken) == nullptr && spoken.bytes.empty();
}

int ReadConversation(std::string_view text, std::vector<SpokenLine>& lines, std::string& message) {
  lines.clear();
  message.clear();
  const bool last_is_whole = text.ends_with('\n') || text.ends_with('\r');
  std::string_view rest = text;
  for (size_t number = 1; !rest.empty(); ++number) {
    SpokenLine line{.line_number = number};
    const char* problem = ReadLine(TakeLine(rest), line);
    if (problem != nullptr && rest.empty() && !last_is_whole) break;
    // Where a run died in the middle of a line the next one began on a new line.
    if (problem != nullptr && BeginsJob(rest)) continue;
    if (problem != nullptr) {
      message = "Line " + std::to_string(number) + " cannot be read: " + problem;
      lines.clear();
      return -1;
    }
    if (!line.bytes.empty()) lines.push_back(std::move(line));
  }
  if (lines.empty()) message = "It holds no conversation";
  return lines.empty() ? -1 : static_cast<int>(lines.size());
}

}  // namespace skyhaul
