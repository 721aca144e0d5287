#pragma once

#include "core/shell.h"
#include "document/document.h"
#include "platform/platform.h"
#include "settings/run_defaults.h"

namespace skyhaul {

// What every command works with. A face makes one at its start and keeps it to its end; commands
// are called on the thread that owns the document, and their ends arrive there too.
struct Session {
  const Platform* platform = nullptr;
  const Shell* shell = nullptr;
  const RunDefaults* defaults = nullptr;  // hold where a request leaves something open
  Document* document = nullptr;
};

}  // namespace skyhaul
