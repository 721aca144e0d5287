#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/airspace.h"

namespace skyhaul::openair {

// What a reader of an airspace file found. Notes name lines that were skipped and why.
struct AirspaceFile {
  std::vector<CtrRecord> airspaces;
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
//   *              a comment, also behind something else
//
// Any other line, and one of these that is broken, is skipped with a note such as
// "Line 12: position not understood: DP 47:99 N", so an outline may lack a point: show the notes.
// A limit that is not understood keeps its text and gets a note too. An airspace without an outline
// is left out. The remark stays empty and the number 0. TO and TC begin terrain, which is skipped
// up to the next AC. Returns the number of airspaces, or -1 when there are none with a message that
// names the line; then the file is empty.
int Read(std::string_view text, AirspaceFile& file, std::string& message);

// Whether the text has an AC line and some outline after it.
bool LooksLike(std::string_view text);

}  // namespace skyhaul::openair
