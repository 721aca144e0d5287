#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace skyhaul {

// One flight in an instrument's memory, as its flight list has it.
struct TrackListEntry {
  uint32_t index = 0;       // the instrument's own track index; the list number shown is one more
  uint32_t start_time = 0;  // seconds since 1989-12-31 00:00:00 UTC
  uint32_t duration_s = 0;
  std::string line;  // as the instrument wrote it, up to 100 characters
};

inline constexpr int kUnknownPercent = -1;

// What the program says to a person, whoever shows it: a terminal, a window, a test. All functions
// must be set and may be called from the job thread; each returns when the text has been taken
// over.
struct Shell {
  void* context = nullptr;

  // A message that the person must see, with the operation as its title.
  void (*message)(void* context, const char* text, const char* title) = nullptr;
  // A yes/no question; true for yes.
  bool (*ask)(void* context, const char* text, const char* title) = nullptr;
  // The status line: what is being done.
  void (*status)(void* context, const char* text) = nullptr;
  // The progress line: how far it is; percent is 0..100 or kUnknownPercent.
  void (*progress)(void* context, const char* text, int percent) = nullptr;
  // Lets the person pick flights. Fills chosen with indices (TrackListEntry::index) and returns
  // their number, or -1 when nothing is to be downloaded.
  int (*choose_tracks)(void* context, const std::vector<TrackListEntry>& list,
                       std::vector<uint32_t>& chosen) = nullptr;
  // Shows what the instrument's list holds and which flights are about to be fetched, as indices.
  void (*tracks_chosen)(void* context, const std::vector<TrackListEntry>& list,
                        const std::vector<uint32_t>& chosen) = nullptr;
  // Hands a routine over to the thread that owns the document and returns as soon as it has been
  // taken over, not when it has run: a job may end while the owner waits for the job. Routines run
  // in the order in which they were handed over. After the call the argument is the routine's.
  void (*run_on_owner)(void* context, void (*routine)(void* argument), void* argument) = nullptr;
};

}  // namespace skyhaul
