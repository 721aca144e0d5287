#include "instruments/anonymise.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "transport/conversation_log.h"

namespace skyhaul {

namespace {

// Fields of a sentence, counted from 1 after its name, as a set of bits.
constexpr uint32_t Fields(uint32_t first, uint32_t last) {
  return (uint32_t{2} << last) - (uint32_t{1} << first);
}

constexpr uint32_t kLastField = 30;  // that a set can hold

constexpr std::string_view kSentenceStart = "$P";

struct SentenceRow {
  std::string_view name;
  uint32_t fields = 0;
  bool is_hex = false;  // the fields hold bytes in hexadecimal, so only 0 fits them
};

// What tells who it was, in all families' sentences. A further one is a row here.
constexpr SentenceRow kSentences[] = {
    // Flytec and Brauniger: type, pilot, serial number, software
    //   $PBRSNP,6030,ANNA MUSTER      ,01001,3.30*0E
    {.name = "$PBRSNP", .fields = Fields(2, 3)},
    // and their settings memory: address, then eight bytes, behind their number when written
    //   $PBRMEMR,0000,41,4E,4E,41,20,4D,55,53*hh
    {.name = "$PBRMEMR", .fields = Fields(2, 9), .is_hex = true},
    {.name = "$PBRMEMW", .fields = Fields(3, 10), .is_hex = true},
};

// The subjects of a flight's H records that tell who it was: pilot, second pilot, glider's number,
// competition number, and the observer's.
//   HFPLTPILOTINCHARGE:ANNA MUSTER
constexpr std::string_view kHeaderSubjects[] = {"PLT", "CM2", "GID", "CID", "OOI"};

bool IsAlphanumeric(char c) {
  return IsDigit(c) || IsLetter(c);
}

void Blank(std::string& line, size_t from, size_t to, bool is_hex = false) {
  for (size_t i = from; i < to; ++i) {
    // Blanks that fill up a field are part of its form.
    if (line[i] == ' ') continue;
    line[i] = is_hex || IsDigit(line[i]) ? '0' : 'X';
  }
}

uint8_t ExclusiveOr(std::string_view text) {
  unsigned sum = 0;
  for (const char c : text) sum ^= static_cast<uint8_t>(c);
  return static_cast<uint8_t>(sum);
}

// Changes the checksum by as much as the text before it has changed.
void MendChecksum(std::string& line, size_t star, uint8_t change) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  const unsigned changes[] = {change / 16U, change % 16U};
  for (size_t i = 0; i < 2 && star + 1 + i < line.size(); ++i) {
    char& digit = line[star + 1 + i];
    const size_t value = kHexDigits.find(UpperLetter(digit));
    if (value != std::string_view::npos) digit = kHexDigits[value ^ changes[i]];
  }
}

// One sentence of a line, from its '$' on.
void AnonymiseSentence(std::string& line, size_t start, size_t end) {
  const size_t star = std::min(line.find('*', start), end);
  const size_t name_end = std::min(line.find(',', start), star);
  const std::string_view name = std::string_view(line).substr(start, name_end - start);
  const auto* const row =
      std::find_if(std::begin(kSentences), std::end(kSentences),
                   [&](const SentenceRow& known) { return known.name == name; });
  if (row == std::end(kSentences)) return;
  const std::string before = line.substr(start, star - start);
  size_t field_start = name_end + 1;
  for (uint32_t field = 1; field <= kLastField && field_start <= star; ++field) {
    const size_t field_end = std::min(line.find(',', field_start), star);
    if ((row->fields & Fields(field, field)) != 0) Blank(line, field_start, field_end, row->is_hex);
    field_start = field_end + 1;
  }
  if (star == end) return;  // cut off before its checksum
  const std::string_view after = std::string_view(line).substr(start, star - start);
  MendChecksum(line, star, ExclusiveOr(before) ^ ExclusiveOr(after));
}

// A record of a flight: A with the recorder's serial number, or H.
void AnonymiseRecord(std::string& line, size_t end) {
  constexpr size_t kMakerEnd = 4;    // AFLY01001
  constexpr size_t kSubjectEnd = 5;  // HFPLT
  if (line.starts_with('A') && end > kMakerEnd) {
    const auto start = line.begin() + kMakerEnd;
    const auto stop =
        std::find_if_not(start, line.begin() + static_cast<ptrdiff_t>(end), IsAlphanumeric);
    Blank(line, kMakerEnd, static_cast<size_t>(stop - line.begin()));
  }
  if (!line.starts_with('H') || end <= kSubjectEnd) return;
  const std::string_view subject = std::string_view(line).substr(2, 3);
  const bool named = std::find(std::begin(kHeaderSubjects), std::end(kHeaderSubjects), subject) !=
                     std::end(kHeaderSubjects);
  if (!named) return;
  // The older form has no colon: HPGIDD-1234
  const size_t colon = line.find(':');
  Blank(line, colon < end ? colon + 1 : kSubjectEnd, end);
}

// What one side sent, flow control left out, as places in the lines that it stands on.
using Stream = std::vector<char*>;

Stream StreamOf(std::vector<SpokenLine>& lines, Speaker speaker) {
  Stream stream;
  for (SpokenLine& line : lines) {
    if (line.speaker != speaker) continue;
    for (char& byte : line.bytes) {
      if (kFlowControlBytes.find(byte) == std::string_view::npos) stream.push_back(&byte);
    }
  }
  return stream;
}

void AnonymiseStream(const Stream& stream) {
  std::string line;
  for (size_t i = 0; i < stream.size(); ++i) {
    line += *stream[i];
    if (*stream[i] != '\n' && i + 1 < stream.size()) continue;
    const std::string anonymous = AnonymiseLine(line);
    for (size_t k = 0; k < line.size(); ++k) *stream[i + 1 - line.size() + k] = anonymous[k];
    line.clear();
  }
}

}  // namespace

std::string AnonymiseLine(std::string line) {
  const size_t end = std::min(line.find_first_of("\r\n"), line.size());
  // After an interrupted answer a sentence may stand behind the beginning of another, or of a
  // record.
  size_t start = std::min(line.find(kSentenceStart), end);
  AnonymiseRecord(line, start);
  while (start < end) {
    const size_t next = std::min(line.find(kSentenceStart, start + 1), end);
    AnonymiseSentence(line, start, next);
    start = next;
  }
  return line;
}

int AnonymiseConversation(std::string_view text, std::string& anonymous, std::string& message) {
  anonymous.clear();
  std::vector<SpokenLine> lines;
  if (ReadConversation(text, lines, message) < 0) return -1;
  const std::vector<SpokenLine> before = lines;
  for (const Speaker speaker : {Speaker::kHost, Speaker::kInstrument}) {
    AnonymiseStream(StreamOf(lines, speaker));
  }
  auto line = lines.begin();
  std::string_view rest = text;
  for (size_t number = 1; !rest.empty(); ++number) {
    const std::string_view was = TakeLine(rest);
    if (line != lines.end() && line->line_number == number) {
      anonymous += FormatSpokenLine(*line++);
    } else if (!rest.empty() || text.ends_with('\n')) {
      // Remarks and empty lines. A last line that is cut off is left out: half a name may be in it.
      anonymous.append(was).append("\n");
    }
  }
  int changed = 0;
  for (size_t i = 0; i < lines.size(); ++i) changed += lines[i] == before[i] ? 0 : 1;
  return changed;
}

}  // namespace skyhaul
