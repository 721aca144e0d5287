#include "formats/igc/header.h"

#include <algorithm>
#include <cstddef>

#include "core/text/printable.h"
#include "core/text/scan.h"

namespace skyhaul {

namespace {

// Which text a header record fills, by its three-letter code.
struct HeaderSlot {
  std::string_view code;
  std::string IgcHeader::*text;
};
constexpr HeaderSlot kHeaderSlots[] = {
    {.code = "FTY", .text = &IgcHeader::recorder},
    {.code = "PLT", .text = &IgcHeader::pilot},
    {.code = "GTY", .text = &IgcHeader::glider_type},
    {.code = "GID", .text = &IgcHeader::glider_id},
    {.code = "SIT", .text = &IgcHeader::site},
    {.code = "CCL", .text = &IgcHeader::competition_class},
    {.code = "CID", .text = &IgcHeader::competition_id},
};

void ReadARecord(IgcHeader& header, std::string_view line) {
  if (!header.manufacturer.empty() || line.size() < 4) return;
  header.manufacturer = PrintableText(line.substr(1, 3));
  const size_t blank = std::min(line.find(' ', 4), line.size());
  header.serial = PrintableText(line.substr(4, blank - 4));
  header.remark = PrintableText(TrimBlanks(line.substr(blank)));
}

// "HFPLTPILOT:Name" and "HFPLTName": without a colon there is no long key before the value.
void ReadHRecord(IgcHeader& header, std::string_view line) {
  if (line.size() < 5) return;
  const std::string_view code = line.substr(2, 3);
  const std::string_view rest = line.substr(5);
  const size_t colon = rest.find(':');
  const std::string_view value = colon == rest.npos ? rest : rest.substr(colon + 1);
  for (const HeaderSlot& slot : kHeaderSlots) {
    std::string& text = header.*slot.text;
    if (slot.code == code && text.empty()) text = PrintableText(TrimBlanks(value));
  }
}

}  // namespace

IgcHeader ReadIgcHeader(std::string_view text) {
  IgcHeader header;
  while (!text.empty()) {
    const size_t line_end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, line_end);
    line = line.substr(0, line.find('\r'));
    if (line.starts_with('A')) ReadARecord(header, line);
    if (line.starts_with('H')) ReadHRecord(header, line);
    text.remove_prefix(std::min(line_end + 1, text.size()));
  }
  return header;
}

}  // namespace skyhaul
