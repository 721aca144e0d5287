#include "instruments/anonymise.h"

#include <algorithm>
#include <cstdint>
#include <set>
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
  std::string_view name;  // without its '$', which may be lost
  uint32_t fields = 0;
  bool is_hex = false;  // the fields hold bytes in hexadecimal, so only 0 fits them
};

// What tells who it was, in all families' sentences. A further one is a row here.
constexpr SentenceRow kSentences[] = {
    // Flytec and Brauniger: type, pilot, serial number, software
    //   $PBRSNP,6030,ANNA MUSTER      ,01001,3.30*0E
    {.name = "PBRSNP", .fields = Fields(2, 3)},
    // and their settings memory: address, then eight bytes, behind their number when written
    //   $PBRMEMR,0000,41,4E,4E,41,20,4D,55,53*hh
    {.name = "PBRMEMR", .fields = Fields(2, 9), .is_hex = true},
    {.name = "PBRMEMW", .fields = Fields(3, 10), .is_hex = true},
};

// The subjects of a flight's H records that tell who it was: pilot, second pilot, glider's number,
// competition number, and the observer's.
//   HFPLTPILOTINCHARGE:ANNA MUSTER
constexpr std::string_view kHeaderSubjects[] = {"PLT", "CM2", "GID", "CID", "OOI"};

// What was blanked, to be found again where a fault hides what it is.
using Names = std::set<std::string>;
constexpr size_t kShortestName = 3;

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

void BlankName(std::string& line, size_t from, size_t to, Names& names) {
  //   MUSTER, ANNA
  std::string_view rest = std::string_view(line).substr(from, to - from);
  while (!rest.empty()) {
    const std::string_view name = TrimBlanks(TakeField(rest, ','));
    if (name.size() >= kShortestName) names.emplace(name);
  }
  Blank(line, from, to);
}

// Blanks a name in a line wherever it stands between start and end of what was said there.
// Punctuation stays, and with it the fields of a sentence.
void BlankAgain(std::string& line, std::string_view said, size_t start, size_t end,
                const std::string& name) {
  for (size_t at = said.find(name, start); at < end; at = said.find(name, at + 1)) {
    const size_t behind = at + name.size();
    // A number within a longer one is another: 01001 within the position 0100112E of a fix.
    const bool within = (at > 0 && IsDigit(name.front()) && IsDigit(said[at - 1])) ||
                        (behind < said.size() && IsDigit(name.back()) && IsDigit(said[behind]));
    if (within) continue;
    for (size_t i = at; i < std::min(behind, end); ++i) {
      // The name of a sentence that stood in a damaged record, and is no person's.
      if (i > 0 && said[i - 1] == '$') break;
      if (IsAlphanumeric(said[i])) Blank(line, i, i + 1);
    }
  }
}

uint8_t ExclusiveOr(std::string_view text) {
  unsigned sum = 0;
  for (const char c : text) sum ^= static_cast<uint8_t>(c);
  return static_cast<uint8_t>(sum);
}

// Changes the checksum of what stands from start to end by as much as the text before it has
// changed.
void MendChecksum(std::string& line, const std::string& before, size_t start, size_t end) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  const size_t star = before.find('*', start);
  if (star >= end || line[star] != '*') return;
  const size_t length = star - start;
  const auto change =
      static_cast<uint8_t>(ExclusiveOr(std::string_view(before).substr(start, length)) ^
                           ExclusiveOr(std::string_view(line).substr(start, length)));
  const unsigned changes[] = {change / 16U, change % 16U};
  for (size_t i = 0; i < 2 && star + 1 + i < line.size(); ++i) {
    char& digit = line[star + 1 + i];
    const size_t value = kHexDigits.find(UpperLetter(digit));
    if (value != std::string_view::npos) digit = kHexDigits[value ^ changes[i]];
  }
}

// In how many letters a text begins otherwise than a name and a comma behind it; a bent comma is
// too much.
size_t Differences(std::string_view text, std::string_view name) {
  if (text.size() <= name.size() || text[name.size()] != ',') return name.size();
  size_t differences = 0;
  for (size_t i = 0; i < name.size(); ++i) differences += text[i] == name[i] ? 0 : 1;
  return differences;
}

// The row whose name the text begins with, one bent letter allowed; null when there is none.
const SentenceRow* FindSentence(std::string_view text) {
  const auto* const nearest =
      std::min_element(std::begin(kSentences), std::end(kSentences),
                       [&](const SentenceRow& left, const SentenceRow& right) {
                         return Differences(text, left.name) < Differences(text, right.name);
                       });
  return Differences(text, nearest->name) <= 1 ? nearest : nullptr;
}

// The fields of all sentences between start and end; more than one when a '$' was lost.
void AnonymiseSentences(std::string& line, size_t start, size_t end, Names& names) {
  for (size_t at = start; at < end; ++at) {
    const SentenceRow* const row = FindSentence(std::string_view(line).substr(at, end - at));
    if (row == nullptr) continue;
    const size_t star = std::min(line.find('*', at), end);
    size_t field_start = at + row->name.size() + 1;
    for (uint32_t field = 1; field <= kLastField && field_start <= star; ++field) {
      const size_t field_end = std::min(line.find(',', field_start), star);
      const bool tells = (row->fields & Fields(field, field)) != 0;
      if (tells && row->is_hex) Blank(line, field_start, field_end, true);
      if (tells && !row->is_hex) BlankName(line, field_start, field_end, names);
      field_start = field_end + 1;
    }
  }
}

bool TellsWhoItWas(std::string_view subject) {
  return std::find(std::begin(kHeaderSubjects), std::end(kHeaderSubjects), subject) !=
         std::end(kHeaderSubjects);
}

// Records of a flight: A with the recorder's serial number, behind whatever noise, or H, also
// behind another record whose line end was lost.
//   HFDTE240526HFGIDGLIDERID:D-1234
void AnonymiseRecords(std::string& line, size_t start, size_t end, Names& names) {
  constexpr size_t kMakerEnd = 4;    // AFLY01001
  constexpr size_t kSubjectEnd = 5;  // HFPLT
  while (start < end && (line[start] < ' ' || line[start] > '~')) ++start;
  if (start + kMakerEnd < end && line[start] == 'A') {
    size_t stop = start + kMakerEnd;
    while (stop < end && IsAlphanumeric(line[stop])) ++stop;
    BlankName(line, start + kMakerEnd, stop, names);
  }
  for (size_t at = start; at + kSubjectEnd < end; ++at) {
    if (line[at] != 'H' || !TellsWhoItWas(std::string_view(line).substr(at + 2, 3))) continue;
    // The older form has no colon: HPGIDD-1234
    const size_t colon = line.find_first_of(":,", at + kSubjectEnd);
    const bool has_title = colon < end && line[colon] == ':';
    BlankName(line, has_title ? colon + 1 : at + kSubjectEnd, end, names);
    return;
  }
}

// Calls change(start, end) for each part of a line: what stands before the first sentence, and each
// sentence. After an interrupted answer one may stand behind the beginning of another, or of a
// record.
template <typename Function>
void ChangeParts(std::string& line, Function change) {
  const size_t end = std::min(line.find_first_of("\r\n"), line.size());
  for (size_t start = 0; start < end;) {
    const size_t next = std::min(line.find(kSentenceStart, start + 1), end);
    const std::string before = line;
    change(start, next);
    MendChecksum(line, before, start, next);
    start = next;
  }
}

// Blanks what is recognised in a line, and adds it to the names.
void BlankKnownFields(std::string& line, Names& names) {
  ChangeParts(line, [&](size_t start, size_t end) {
    AnonymiseRecords(line, start, end, names);
    AnonymiseSentences(line, start, end, names);
  });
}

void BlankNames(std::string& line, const Names& names) {
  // One name may be part of another, which must still be found.
  const std::string said = line;
  ChangeParts(line, [&](size_t start, size_t end) {
    for (const std::string& name : names) BlankAgain(line, said, start, end, name);
  });
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

// Changes what one side sent line by line. A CR alone may be a line end whose LF was lost.
template <typename Function>
void ChangeLines(const Stream& stream, Function change) {
  std::string line;
  for (size_t i = 0; i < stream.size(); ++i) {
    line += *stream[i];
    if (*stream[i] != '\n' && *stream[i] != '\r' && i + 1 < stream.size()) continue;
    change(line);
    for (size_t k = 0; k < line.size(); ++k) *stream[i + 1 - line.size() + k] = line[k];
    line.clear();
  }
}

}  // namespace

std::string AnonymiseLine(std::string line) {
  Names names;
  BlankKnownFields(line, names);
  return line;
}

int AnonymiseConversation(std::string_view text, std::string& anonymous, std::string& message) {
  anonymous.clear();
  std::vector<SpokenLine> lines;
  if (ReadConversation(text, lines, message) < 0) return -1;
  const std::vector<SpokenLine> before = lines;
  const Stream streams[] = {StreamOf(lines, Speaker::kHost), StreamOf(lines, Speaker::kInstrument)};
  Names names;
  for (const Stream& stream : streams) {
    ChangeLines(stream, [&](std::string& line) { BlankKnownFields(line, names); });
  }
  for (const Stream& stream : streams) {
    ChangeLines(stream, [&](std::string& line) { BlankNames(line, names); });
  }
  auto line = lines.begin();
  std::string_view rest = text;
  for (size_t number = 1; !rest.empty(); ++number) {
    const std::string_view was = TakeLine(rest);
    if (line != lines.end() && line->line_number == number) {
      anonymous += FormatSpokenLine(*line++);
    } else if (IsRemark(was)) {
      // A line that is cut off is left out: half a name may be in it.
      anonymous.append(was).append("\n");
    }
  }
  int changed = 0;
  for (size_t i = 0; i < lines.size(); ++i) changed += lines[i] == before[i] ? 0 : 1;
  return changed;
}

}  // namespace skyhaul
