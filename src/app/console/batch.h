#pragma once

#include "app/command_line/command_line_block.h"
#include "app/console/console_shell.h"
#include "platform/platform.h"
#include "settings/run_defaults.h"

namespace skyhaul {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitBadCommandLine = 2;

struct BatchRun {
  const Platform* platform = nullptr;
  const RunDefaults* settings = nullptr;
  Console* console = nullptr;
  int (*interrupts)() = nullptr;  // how often the person asked to stop; may be null
};

// Carries out the one command of a command line: runs its job, saves what it brought, tells the
// client. Returns the program's exit status.
int RunBatch(const BatchRun& run, const CommandLineBlock& block);

}  // namespace skyhaul
