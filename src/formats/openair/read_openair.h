#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/airspace.h"

namespace skyhaul::openair {

// What a reader of an airspace file found. Notes name lines that were skipped and why; those that
// damage the outline of an airspace stand apart, because none of them may be overlooked.
struct AirspaceFile {
  std::vector<CtrRecord> airspaces;
  std::vector<std::string> damage;
  std::vector<std::string> notes;
};

// Reads an OpenAir file, UTF-8 or Windows-1252. Radii are nautical miles and become metres;
// bearings are degrees from true north, 0 to 360.
//
//   AC class       begins an airspace; clears the centre and sets the direction to clockwise
//   AN name, AH ceiling, AL floor
//   V X=position   the centre of what follows; V D=+ or V D=- the direction of arcs
//   DP position    a point
//   DA radius, bearing, bearing
//   DB position, position
//   DC radius      a circle
//   AY kind, AF frequency, AG station, AI id, AX transponder code, AA activation: kept as texts
//   *              a comment, also behind something else
//
// Text behind a complete position is a comment too: "DP 47:30:00 N 008:15:30 E ; the church"; but
// none that holds a position, "DC 5", "DA 10,", "V X=" or "V D=" (HasOutline() in fields.h).
// Behind a radius or a bearing it must begin with ; # / ( or ", because a word may be a unit.
//
// Any other line, and one of these that is broken, is skipped with a note such as
// "Line 12: position not understood: DP 47:99 N". A broken piece of an outline (DP, DA, DB, DC, DY,
// which is never read, a V X= or V D= that a later line needs, an unknown line with a position), a
// piece behind another record, a second AN behind an outline, and an outline of fewer than three
// different points without a circle or an arc damage their airspace: CtrRecord::damage holds the
// first such note.
// A limit that is not understood keeps its text and gets a note too. An airspace without any
// outline line is left out. The remark stays empty and the warning distance not given. TO and TC
// begin terrain, which is skipped up to the next AC. Returns the number of airspaces, or -1 when
// there are none with a message that names the line; then the file is empty.
int Read(std::string_view text, AirspaceFile& file, std::string& message);

// Whether the text has an AC line and some outline after it.
bool LooksLike(std::string_view text);

}  // namespace skyhaul::openair
