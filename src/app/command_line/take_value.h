#pragma once

#include <string>
#include <string_view>

#include "app/command_line/keywords.h"

namespace skyhaul {

// The ways in which keywords take their values: see TakeValueFunction. Nothing is stored when a
// message is returned.

// Sets Keyword::flag, if there is one; a value is ignored.
std::string_view TakeFlag(const Keyword& keyword, const std::string& value,
                          const CommandLineHost& host, CommandLineBlock& block);
// Sets Keyword::text, cut to Keyword::max_characters.
std::string_view TakeText(const Keyword& keyword, const std::string& value,
                          const CommandLineHost& host, CommandLineBlock& block);
// Set Keyword::number and Keyword::signed_number; see NumberFromText.
std::string_view TakeNumber(const Keyword& keyword, const std::string& value,
                            const CommandLineHost& host, CommandLineBlock& block);
std::string_view TakeSignedNumber(const Keyword& keyword, const std::string& value,
                                  const CommandLineHost& host, CommandLineBlock& block);
// A port number 1..kMaxPort or a device's own name of up to kMaxPortText characters.
std::string_view TakePort(const Keyword& keyword, const std::string& value,
                          const CommandLineHost& host, CommandLineBlock& block);
// A name of GpsTypes() in any case.
std::string_view TakeGpsType(const Keyword& keyword, const std::string& value,
                             const CommandLineHost& host, CommandLineBlock& block);
// "KML" or "IGC".
std::string_view TakeCompetitionFormat(const Keyword& keyword, const std::string& value,
                                       const CommandLineHost& host, CommandLineBlock& block);
// "0" hidden, "1" minimised, "2" normal.
std::string_view TakeShowCode(const Keyword& keyword, const std::string& value,
                              const CommandLineHost& host, CommandLineBlock& block);
// A time of day, refused when start and stop are both given and in the wrong order; the messages
// name the one that was given first.
std::string_view TakeFilterStart(const Keyword& keyword, const std::string& value,
                                 const CommandLineHost& host, CommandLineBlock& block);
std::string_view TakeFilterStop(const Keyword& keyword, const std::string& value,
                                const CommandLineHost& host, CommandLineBlock& block);
// See TimeoutFromText and TrackListFromText.
std::string_view TakeTimeout(const Keyword& keyword, const std::string& value,
                             const CommandLineHost& host, CommandLineBlock& block);
std::string_view TakeTracks(const Keyword& keyword, const std::string& value,
                            const CommandLineHost& host, CommandLineBlock& block);

}  // namespace skyhaul
