#include "analysis/exact/progress.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace skyhaul {

namespace {

constexpr std::chrono::seconds kInterval{2};

void Show(ExactProgress& progress, std::chrono::steady_clock::time_point now) {
  progress.next = now + kInterval;
  std::string text = progress.step;
  // Whole metres: a promise of 1 m is all that is proved.
  const double open_m = progress.bound_m - progress.floor_m;
  if (progress.first_bound_m > 0 && open_m >= 0) {
    text += ", at most " + std::to_string(std::llround(open_m)) + " m more";
  }
  ShowProgress(*progress.operation, text, PercentOf(progress));
}

}  // namespace

void BeginStep(ExactProgress& progress, const char* step) {
  ++progress.begun;
  progress.step = step;
  progress.first_bound_m = 0;
  progress.bound_m = 0;
  progress.floor_m = 0;
  if (IsShown(progress)) Show(progress, std::chrono::steady_clock::now());
}

void ShowWhenDue(ExactProgress& progress, std::chrono::steady_clock::time_point now) {
  if (IsShown(progress) && now >= progress.next) Show(progress, now);
}

int PercentOf(const ExactProgress& progress) {
  if (progress.steps == 0 || progress.begun == 0) return 0;
  const double whole_m = progress.first_bound_m - progress.floor_m;
  const double closed_m = progress.first_bound_m - progress.bound_m;
  const double share = whole_m > 0 ? std::clamp(closed_m / whole_m, 0.0, 1.0) : 0;
  const double steps_done = progress.begun - 1 + share;
  return std::min(99, static_cast<int>(100 * steps_done / progress.steps));
}

}  // namespace skyhaul
