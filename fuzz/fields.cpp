// The field parsers over one arbitrary line: whatever is accepted lies in its range.

#include "protocols/sentence/fields.h"

#include <cmath>

#include "core/shell.h"
#include "fuzz/frame.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/track_list_line.h"
#include "protocols/sentence/positions.h"

namespace skyhaul {

void Fuzz(std::string_view line) {
  for (const std::string_view field : SplitFields(line, 10)) {
    uint32_t value = 0;
    if (ParseUintField(field, value) == 0) Require(value <= 2147483649U);
  }

  std::string_view rest = line;
  std::string_view digits;
  if (SplitField(rest, digits)) {
    double angle_rad = 0;
    if (ParseLatitude(digits, rest, angle_rad) == 0) Require(std::abs(angle_rad) < 1.6);
    if (ParseLongitude(digits, rest, angle_rad) == 0) Require(std::abs(angle_rad) < 3.2);
  }

  TrackListEntry entry;
  uint32_t announced = 0;
  if (flytec::ParseTrackListLine(line, entry, announced) == nullptr) {
    Require(entry.start_time >= 315532800 && entry.duration_s < 360000);
  }
  flytec::ProductData product;
  if (flytec::ParseProductData(line, product) == 0) {
    Require(product.device_name.size() <= 16 && product.pilot_name.size() <= 40);
    Require(product.serial_number.size() <= 7 && product.software.size() <= 6);
  }
}

}  // namespace skyhaul
