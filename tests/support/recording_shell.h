#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/owner_queue.h"
#include "core/shell.h"

namespace skyhaul {

// A shell that remembers what it was told and answers what the test says.
struct RecordingShell {
  std::vector<std::string> messages;  // "title: text"
  std::vector<std::string> statuses;
  std::vector<std::string> progress;
  std::vector<int> percents;
  std::vector<uint32_t> choice = {0};  // what choose_tracks picks; empty: nothing
  std::vector<TrackListEntry> list;    // what tracks_chosen showed
  std::vector<uint32_t> chosen;        // of these flights
  // What run_on_owner was handed; elsewhere, so that a test can begin anew with an empty recorder.
  std::unique_ptr<OwnerQueue> owner = std::make_unique<OwnerQueue>();
};

inline RecordingShell& RecorderOf(void* context) {
  return *static_cast<RecordingShell*>(context);
}

inline Shell MakeShell(RecordingShell& recorder) {
  return {.context = &recorder,
          .message =
              [](void* context, const char* text, const char* title) {
                RecorderOf(context).messages.push_back(std::string(title) + ": " + text);
              },
          .ask = [](void*, const char*, const char*) { return false; },
          .status = [](void* context,
                       const char* text) { RecorderOf(context).statuses.push_back(text); },
          .progress =
              [](void* context, const char* text, int percent) {
                RecorderOf(context).progress.push_back(text);
                RecorderOf(context).percents.push_back(percent);
              },
          .choose_tracks =
              [](void* context, const std::vector<TrackListEntry>&, std::vector<uint32_t>& chosen) {
                chosen = RecorderOf(context).choice;
                return chosen.empty() ? -1 : static_cast<int>(chosen.size());
              },
          .tracks_chosen =
              [](void* context, const std::vector<TrackListEntry>& list,
                 const std::vector<uint32_t>& chosen) {
                RecorderOf(context).list = list;
                RecorderOf(context).chosen = chosen;
              },
          .run_on_owner =
              [](void* context, void (*routine)(void*), void* argument) {
                PostToOwner(*RecorderOf(context).owner, routine, argument);
              }};
}

inline bool Has(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace skyhaul
