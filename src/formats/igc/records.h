#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/track_point.h"

namespace skyhaul::igc {

// One record of a file each, held to the format: what the strict and the lenient file reader both
// take for a good record. Lines come without their line ends.

// Columns, counted from 1 as the I record counts them; start 0: no such extension.
struct ExtensionColumns {
  size_t start = 0;
  size_t end = 0;
};

// Reads the date of a line that begins with "HFDTE". Returns its midnight (see core/time_scale.h),
// or 0 when it has none in one of the two forms of the format.
uint32_t ReadDateRecord(std::string_view line);

// Reads an I record; fraction becomes the columns of the fraction of the second (code TDS), if the
// record names it. Returns whether all announced entries are there and right.
bool ReadExtensionRecord(std::string_view line, ExtensionColumns& fraction);

// An I record that ReadExtensionRecord() takes, cut to as many entries as that length has room for:
// the first ones, that of TDS among them in any case.
std::string ShortenExtensionRecord(std::string_view line, size_t max_length);

// Reads a B record into everything of the point but its time and segment. Returns the time of day
// in seconds, or -1 when a field is wrong or the line too short.
int ReadFixRecord(std::string_view line, const ExtensionColumns& fraction, TrackPoint& point);

// Whether a B record is marked A. V is 2D, or no GPS data at all, and any other mark is damaged and
// promises no more. The line must be a whole fix.
bool IsMarkedValid(std::string_view line);

}  // namespace skyhaul::igc
