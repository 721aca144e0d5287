#pragma once

#include <atomic>
#include <string>

#include "core/shell.h"

namespace skyhaul {

// What a long operation carries with it: the shell for its texts, and the abort flag. The flag may
// be set from any thread; everything else belongs to the thread that does the work.
struct Operation {
  const Shell* shell = nullptr;  // null: no texts are shown
  bool quiet = false;            // suppresses every message, status and progress text
  std::atomic<bool> aborted = false;
};

// The three texts of an operation; nothing is shown when it is quiet or has no shell.
void ShowMessage(const Operation& operation, const std::string& text, const std::string& title);
void ShowStatus(const Operation& operation, const std::string& text);
void ShowProgress(const Operation& operation, const std::string& text,
                  int percent = kUnknownPercent);

// True when the operation was aborted; then the status has become "Transfer aborted".
bool StopRequested(const Operation& operation);

}  // namespace skyhaul
