#include "instruments/flytec/airspace_memory.h"

#include <algorithm>
#include <cstdio>

#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

constexpr size_t kNameWidth = 17;
constexpr size_t kNumberDigits = 3;  // of total and line number
constexpr size_t kPositionFields = 4;

// What an element consists of beside its type and position, and what may be before it.
struct ElementKind {
  char type;
  char follows;  // the element that must be right before it; 0: anything but an open arc
  size_t fields;
};

constexpr ElementKind kElementKinds[] = {
    {.type = 'P', .follows = 0, .fields = 0},   {.type = 'C', .follows = 0, .fields = 1},
    {.type = 'X', .follows = 0, .fields = 0},   {.type = 'T', .follows = 'X', .fields = 1},
    {.type = 'Z', .follows = 'T', .fields = 1},
};

const ElementKind* KindOf(std::string_view type) {
  const auto* found = std::find_if(
      std::begin(kElementKinds), std::end(kElementKinds),
      [&](const ElementKind& kind) { return type.size() == 1 && type[0] == kind.type; });
  return found == std::end(kElementKinds) ? nullptr : found;
}

// The last element's type while its arc is not whole, else 0.
char OpenArc(const StoredAirspace& airspace) {
  const char last = airspace.elements.empty() ? '\0' : airspace.elements.back()[0];
  return last == 'X' || last == 'T' ? last : '\0';
}

char CheckLastField(char type, std::string_view field) {
  if (type == 'C') {
    const int radius_m = WholeNumber(field, 5);
    if (radius_m < 0) return kAirspaceSyntax;
    return radius_m == 0 ? kAirspaceImplausible : '\0';
  }
  return field == "+" || field == "-" ? '\0' : kAirspaceSyntax;
}

char TakeElement(StoredAirspace& airspace, std::string_view element) {
  // P,4710.001,N,01104.700,E   or with a further field: C,...,12345 and T,...,+
  const std::vector<std::string_view> fields = CutFields(element);
  const ElementKind* kind = KindOf(fields[0]);
  if (kind == nullptr || fields.size() != 1 + kPositionFields + kind->fields) {
    return kAirspaceSyntax;
  }
  const PositionCheck position = CheckPosition(fields, 1);
  if (position == PositionCheck::kMalformed) return kAirspaceSyntax;
  if (kind->fields > 0) {
    if (const char fault = CheckLastField(kind->type, fields.back()); fault != 0) return fault;
  }
  if (position == PositionCheck::kImpossible || kind->follows != OpenArc(airspace)) {
    return kAirspaceImplausible;
  }
  if (airspace.elements.size() == kMaxElements) return kAirspaceNoMemory;
  airspace.elements.emplace_back(element);
  return 0;
}

char TakeName(StoredAirspace& airspace, std::string_view text) {
  const std::vector<std::string_view> fields = CutFields(text);
  if (fields.size() != 2 || fields[0].size() != kNameWidth || WholeNumber(fields[1], 4) < 0) {
    return kAirspaceSyntax;
  }
  airspace.name = fields[0];
  airspace.number = fields[1];
  return 0;
}

char TakeContent(StoredAirspace& airspace, int line, std::string_view text) {
  if (line == 0) return TakeName(airspace, text);
  if (line > 1) return TakeElement(airspace, text);
  airspace.remark = text;
  return text.size() == kNameWidth ? '\0' : kAirspaceSyntax;
}

void KeepFault(AirspaceUpload& upload, char fault) {
  if (upload.fault == 0) upload.fault = fault;
}

size_t ElementsOf(const StoredAirspace& airspace) {
  return kAirspaceHead + airspace.elements.size();
}

size_t ElementsIn(const std::vector<StoredAirspace>& memory) {
  size_t sum = 0;
  for (const StoredAirspace& airspace : memory) sum += ElementsOf(airspace);
  return sum;
}

std::string Line(size_t total, size_t line, const std::string& text) {
  char start[24];
  (void)std::snprintf(start, sizeof start, "PBRCTR,%03zu,%03zu,", total, line);
  return start + text;
}

}  // namespace

UploadLine TakeUploadLine(AirspaceUpload& upload, std::string_view fields) {
  constexpr size_t kStart = 2 * (kNumberDigits + 1);
  if (fields.size() < kStart || fields[kNumberDigits] != ',' || fields[kStart - 1] != ',') {
    return UploadLine::kNotOne;
  }
  const int total = LeadingNumber(fields, kNumberDigits);
  const int line = LeadingNumber(fields.substr(kNumberDigits + 1), kNumberDigits);
  if (total < 0 || line < 0) return UploadLine::kNotOne;
  // A new first line forgets what an upload that broke off has left.
  if (line == 0) upload = {.total = total};
  if (line != upload.next || total != upload.total || line >= total) {
    KeepFault(upload, kAirspaceSyntax);
  }
  if (upload.fault == 0) {
    KeepFault(upload, TakeContent(upload.airspace, line, fields.substr(kStart)));
  }
  upload.next = line + 1;
  // A faulty airspace is still received to its last line, which is the only one with an answer.
  if (upload.next < total) return UploadLine::kMore;
  if (OpenArc(upload.airspace) != 0 || upload.airspace.elements.empty()) {
    KeepFault(upload, kAirspaceImplausible);
  }
  return UploadLine::kLast;
}

bool StoreAirspace(std::vector<StoredAirspace>& memory, const StoredAirspace& airspace, size_t room,
                   size_t element_room) {
  const auto has_name = [&](const StoredAirspace& known) { return known.name == airspace.name; };
  const auto known = std::find_if(memory.begin(), memory.end(), has_name);
  const bool replaces = known != memory.end();
  // What is overwritten gives its elements back first.
  const size_t others = ElementsIn(memory) - (replaces ? ElementsOf(*known) : 0);
  if (others + ElementsOf(airspace) > element_room) return false;
  if (replaces) {
    *known = airspace;
    return true;
  }
  if (memory.size() >= room) return false;
  memory.push_back(airspace);
  return true;
}

std::string AirspaceRoomBody(const std::vector<StoredAirspace>& memory, size_t room,
                             size_t element_room) {
  // PBRCTRI,002,500,999
  const size_t used = ElementsIn(memory);
  const size_t free = element_room - std::min(used, element_room);
  char body[80];
  (void)std::snprintf(body, sizeof body, "PBRCTRI,%03zu,%03zu,%03zu", memory.size(), room,
                      std::min<size_t>(free, 999));
  return body;
}

std::vector<std::string> AirspaceListBodies(const std::vector<StoredAirspace>& memory) {
  std::vector<std::string> bodies;
  for (const StoredAirspace& airspace : memory) {
    const size_t total = 2 + airspace.elements.size();
    bodies.push_back(Line(total, 0, airspace.name + "," + airspace.number));
    bodies.push_back(Line(total, 1, airspace.remark));
    for (size_t i = 0; i < airspace.elements.size(); ++i) {
      bodies.push_back(Line(total, 2 + i, airspace.elements[i]));
    }
  }
  bodies.emplace_back("PBRANS,1");
  return bodies;
}

}  // namespace skyhaul::flytec_simulator
