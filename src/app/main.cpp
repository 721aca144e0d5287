#include <cerrno>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/command_line/from_arguments.h"
#include "app/command_line/help_text.h"
#include "app/command_line/long_options.h"
#include "app/command_line/parse.h"
#include "app/console/console_shell.h"
#include "app/console/exit_status.h"
#include "app/console/long_commands.h"
#include "app/console/run_batch.h"
#include "app/console/trace_file.h"
#include "core/low_memory.h"
#include "platform/arguments.h"
#include "platform/file.h"
#include "platform/platform.h"
#include "platform/terminal.h"
#include "settings/run_defaults.h"

namespace {

using namespace skyhaul;

// The options that go with switches too.
struct CommonOptions {
  std::optional<std::string> trace;
  std::optional<std::string> warning;
};

int RefuseCommandLine(const Session& session, const std::string& message) {
  ShowMessage(Operation{.shell = session.shell}, message, kCommandLineTitle);
  return kExitBadCommandLine;
}

// Runs a command that has been understood, and writes down what it says to an instrument.
template <typename Function>
int RunTraced(const Session& session, const CommonOptions& common,
              std::span<const std::string> files, Function run) {
  const Operation operation = {.shell = session.shell};
  LogFile trace;
  const std::string path = common.trace ? *common.trace : EnvironmentVariable("SKYHAUL_TRACE");
  if (StartTracing(trace, path, files, operation) != 0) return kExitFailed;
  const int status = run();
  StopTracing(trace, operation);
  return status;
}

int RunLongOptions(Session& session, Console& console, const std::vector<std::string>& words,
                   const CommonOptions& common) {
  LongOptions options;
  std::string message;
  if (ParseLongOptions(words, options, message) != 0) return RefuseCommandLine(session, message);
  if (common.warning) return RefuseCommandLine(session, kWarningMisplaced);
  return RunTraced(session, common, options.files,
                   [&] { return RunLongCommand(session, console, options); });
}

int RunSwitches(Session& session, Console& console, const ProgramArguments& arguments,
                const CommonOptions& common) {
  CommandLineBlock block;
  std::string message;
  const CommandLineHost host = {.is_port_name = IsPortName};
  // On Linux an absolute path looks like a switch, so a word that names an existing file is not
  // one.
  ArgumentText given = CommandTextFromArguments(arguments.words, arguments.text, FileExists);
  given.warning = common.warning;
  if (ParseArguments(given, host, block, message) != 0) return RefuseCommandLine(session, message);
  // Called with nothing at all: the help is the answer, and no failure.
  if (!block.present) {
    PrintResult(console, HelpText());
    return kExitDone;
  }
  // Opening a file has nothing to abort but itself.
  console.aborts_on_interrupt = block.command != Command::kOpenFile;
  if (console.aborts_on_interrupt) CountInterrupts(nullptr);
  const std::string files[] = {block.file, block.waypoint_source, block.waypoint_destination};
  return RunTraced(session, common, files, [&] { return RunBatch(session, console, block); });
}

int RunProgram(Session& session, Console& console, ProgramArguments arguments) {
  CommonOptions common;
  std::string message;
  if (TakeOption(arguments.words, kTraceOption, common.trace, message) != 0 ||
      TakeOption(arguments.words, kWarningOption, common.warning, message) != 0) {
    return RefuseCommandLine(session, message);
  }
  // The text as it was typed still holds them.
  if (common.trace || common.warning) arguments.text.clear();
  // The trace alone is not the call without arguments that the help answers.
  const bool alone = common.trace && arguments.words.empty();
  return HasLongOptions(arguments.words) || alone
             ? RunLongOptions(session, console, arguments.words, common)
             : RunSwitches(session, console, arguments, common);
}

// A result that did not reach its reader is no success, whatever it said.
int CheckOutput(const Operation& operation, int error, int status) {
  if (error == 0) return status;
  // "skyhaul --settings | head" has read what it wanted: that needs no message.
  if (error != EPIPE) ShowMessage(operation, std::strerror(error), "Writing to standard output");
  // A failure that has its own status keeps it.
  return status == kExitDone ? kExitFailed : status;
}

}  // namespace

int main(int argc, char** argv) {
  // First of all, before anything is allocated; and pipes and the terminal's encoding are set
  // before the first text is written.
  EndWhenMemoryIsShort();
  SurviveFailedWrites();
  WriteUtf8();
  Console console;
  console.terminal = ErrorIsTerminal();
  const Shell shell = ConsoleShell(console);
  // Reads only: a run on a server leaves no settings file behind.
  const RunDefaults defaults = LoadRunDefaults(NativePlatform(), Operation{.shell = &shell});
  Document document;
  Session session = {
      .platform = &NativePlatform(), .shell = &shell, .defaults = &defaults, .document = &document};
  const int status = RunProgram(session, console, ReadProgramArguments(argc, argv));
  // So that the shell's prompt does not stand behind the last percentage.
  FinishProgressLine(console);
  return CheckOutput(Operation{.shell = &shell}, console.output_error, status);
}
