#include "app/console/settings_options.h"

#include <iostream>
#include <utility>

#include "app/console/exit_status.h"
#include "commands/settings_commands.h"
#include "core/operation.h"
#include "report/settings_list.h"

namespace skyhaul {

namespace {

int Fail(const Operation& operation, const std::string& text) {
  ShowMessage(operation, text, "Settings");
  return -1;
}

// Asks for what an assignment leaves open.
int AskForValue(const Operation& operation, Assignment& assignment) {
  if (assignment.has_value) return 0;
  const std::string name(assignment.setting->name);
  // On standard error, so that standard output holds the result alone.
  ShowStatus(operation, "Type " + name + " and press Enter");
  std::string line;
  std::string message;
  if (!std::getline(std::cin, line)) return Fail(operation, name + " was not given");
  // A script written on Windows, or a pipe from there, ends its lines with CR LF.
  if (line.ends_with('\r')) line.pop_back();
  return TakeAssignedValue(line, assignment, message) == 0 ? 0 : Fail(operation, message);
}

int ParseAll(const Operation& operation, const std::vector<std::string>& texts,
             std::vector<Assignment>& assignments) {
  for (const std::string& text : texts) {
    Assignment assignment;
    std::string message;
    if (ParseAssignment(text, assignment, message) != 0) return Fail(operation, message);
    // Of several values for one setting the last counts.
    std::erase_if(assignments,
                  [&](const Assignment& earlier) { return earlier.setting == assignment.setting; });
    assignments.push_back(std::move(assignment));
  }
  // Asked only after all texts are known to be right: nobody should type a password in vain.
  for (Assignment& assignment : assignments) {
    if (AskForValue(operation, assignment) != 0) return -1;
  }
  return 0;
}

}  // namespace

int PrintSettings(const Session& session, Console& console, bool as_json) {
  const auto stored = ReadSettings(session);
  if (!stored.has_value()) return kExitFailed;
  PrintResult(console, as_json ? SettingsJson(stored->place, stored->values, stored->defaults)
                               : SettingsText(stored->place, stored->values, stored->defaults));
  return kExitDone;
}

int AssignSettings(const Session& session, Console& console,
                   const std::vector<std::string>& assignments) {
  std::vector<Assignment> parsed;
  if (ParseAll(Operation{.shell = session.shell}, assignments, parsed) != 0) {
    return kExitBadCommandLine;
  }
  const auto changed = ChangeSettings(session, parsed);
  if (!changed.has_value()) return kExitFailed;
  PrintResult(console,
              std::to_string(*changed) + " setting" + (*changed == 1 ? "" : "s") + " changed\n");
  return kExitDone;
}

}  // namespace skyhaul
