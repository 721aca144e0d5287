#pragma once

#include <string>
#include <string_view>

namespace skyhaul::igc {

// What a person wants to know from an IGC file's header; texts are empty where the file says
// nothing.
struct Header {
  std::string manufacturer;  // 3 characters of the A record
  std::string serial;        // what follows them, up to the first blank
  std::string remark;        // of the A record: what follows the first blank
  std::string recorder;      // the HFFTY record's text: maker and type of the recorder
  std::string pilot;
  std::string glider_type;
  std::string glider_id;
  std::string site;
  std::string competition_class;
  std::string competition_id;
};

// Reads the header leniently: any letter may name the source ("HFPLT...", "HOPLT..."), the key may
// be long or short ("HFPLTPILOT:", "HFPLTPILOTINCHARGE:", "HFPLT"), blanks around values are
// dropped, and lines may have any length. Of several records with one code the first that says
// something counts. UTF-8 and ISO 8859-1 both come out as UTF-8; what does not print becomes '?'.
Header ReadHeader(std::string_view text);

}  // namespace skyhaul::igc
