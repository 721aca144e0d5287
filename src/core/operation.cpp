#include "core/operation.h"

namespace skyhaul {

namespace {

bool Silent(const Operation& operation) {
  return operation.quiet || operation.shell == nullptr;
}

}  // namespace

void ShowMessage(const Operation& operation, const std::string& text, const std::string& title) {
  if (Silent(operation)) return;
  // The shell takes the text over before it returns, so its pointers need to live no longer.
  operation.shell->message(operation.shell->context, text.c_str(), title.c_str());
}

void ShowStatus(const Operation& operation, const std::string& text) {
  if (Silent(operation)) return;
  operation.shell->status(operation.shell->context, text.c_str());
}

void ShowProgress(const Operation& operation, const std::string& text, int percent) {
  if (Silent(operation)) return;
  operation.shell->progress(operation.shell->context, text.c_str(), percent);
}

bool StopRequested(const Operation& operation) {
  // The flag is set by another thread and stays set; the status is shown by the thread that does
  // the work.
  if (!operation.aborted) return false;
  ShowStatus(operation, "Transfer aborted");
  return true;
}

}  // namespace skyhaul
