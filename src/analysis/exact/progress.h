#pragma once

#include <chrono>
#include <cstdint>

#include "core/operation.h"

namespace skyhaul {

// How far the searches on every fix are, for a person who waits. A step is a task, or the table of
// closing distances. Within a step the share is that of the gap between the first bound and the
// best score that has been closed: it moves fast at first and slowly at the end.
struct ExactProgress {
  const Operation* operation = nullptr;  // null: nobody is waiting
  uint32_t steps = 0;
  uint32_t begun = 0;  // steps
  const char* step = "";
  double first_bound_m = 0;  // 0: the step has no bound
  double bound_m = 0;        // no track of the step's task scores more
  double floor_m = 0;        // the step is proved when the bound has come down to this
  std::chrono::steady_clock::time_point next;
};

inline bool IsShown(const ExactProgress& progress) {
  return progress.operation != nullptr && progress.operation->shell != nullptr &&
         !progress.operation->quiet;
}

// Begins the next step and shows its name, a text that lives as long as the program.
void BeginStep(ExactProgress& progress, const char* step);

// Notes what the step has proved so far. The first bound of a step is what the others are measured
// against.
inline void NoteBound(ExactProgress& progress, double bound_m, double floor_m) {
  if (progress.first_bound_m == 0) progress.first_bound_m = bound_m;
  progress.bound_m = bound_m;
  progress.floor_m = floor_m;
}

// Shows the progress when two seconds have gone by since it was shown last. With one call per step
// that makes some forty calls for a search of a minute.
void ShowWhenDue(ExactProgress& progress, std::chrono::steady_clock::time_point now);

// How far the search is, 0..99: a search that has ended shows nothing.
int PercentOf(const ExactProgress& progress);

}  // namespace skyhaul
