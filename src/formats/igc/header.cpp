#include "formats/igc/header.h"

#include <algorithm>
#include <cstddef>

#include "core/text/printable.h"
#include "core/text/scan.h"

namespace skyhaul::igc {

namespace {

// Which text a header record fills, by its three-letter code.
struct HeaderSlot {
  std::string_view code;
  std::string Header::*text;
};
constexpr HeaderSlot kHeaderSlots[] = {
    {.code = "FTY", .text = &Header::recorder},
    {.code = "PLT", .text = &Header::pilot},
    {.code = "GTY", .text = &Header::glider_type},
    {.code = "GID", .text = &Header::glider_id},
    {.code = "SIT", .text = &Header::site},
    {.code = "CCL", .text = &Header::competition_class},
    {.code = "CID", .text = &Header::competition_id},
};

// "AXSH000 free text"
void ReadARecord(Header& header, std::string_view line) {
  if (!header.manufacturer.empty() || line.size() < 4) return;
  header.manufacturer = PrintableText(line.substr(1, 3));
  // Shown to a person as it stands: a serial of more than three characters is not cut.
  const size_t blank = std::min(line.find(' ', 4), line.size());
  header.serial = PrintableText(line.substr(4, blank - 4));
  header.remark = PrintableText(TrimBlanks(line.substr(blank)));
}

// "HFPLTPILOTINCHARGE:Name" and "HFPLTName": without a colon there is no long key before the value.
void ReadHRecord(Header& header, std::string_view line) {
  // A letter, the letter of the source and a three-letter code at least.
  if (line.size() < 5) return;
  const std::string_view code = line.substr(2, 3);
  const std::string_view rest = line.substr(5);
  const size_t colon = rest.find(':');
  const std::string_view value = colon == rest.npos ? rest : rest.substr(colon + 1);
  for (const HeaderSlot& slot : kHeaderSlots) {
    std::string& text = header.*slot.text;
    // The first record with a value counts; an empty one leaves room for it.
    if (slot.code == code && text.empty()) text = PrintableText(TrimBlanks(value));
  }
}

}  // namespace

Header ReadHeader(std::string_view text) {
  Header header;
  while (!text.empty()) {
    const size_t line_end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, line_end);
    // Files that went through an editor may end their lines with LF alone.
    line = line.substr(0, line.find('\r'));
    if (line.starts_with('A')) ReadARecord(header, line);
    if (line.starts_with('H')) ReadHRecord(header, line);
    text.remove_prefix(std::min(line_end + 1, text.size()));
  }
  return header;
}

}  // namespace skyhaul::igc
