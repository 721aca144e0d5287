#include <cerrno>
#include <cstring>
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

int RunLongOptions(Session& session, Console& console, const std::vector<std::string>& arguments) {
  LongOptions options;
  std::string message;
  if (ParseLongOptions(arguments, options, message) != 0) {
    ShowMessage(Operation{.shell = session.shell}, message, kCommandLineTitle);
    return kExitBadCommandLine;
  }
  return RunLongCommand(session, console, options);
}

int RunSwitches(Session& session, Console& console, const ProgramArguments& arguments) {
  CommandLineBlock block;
  std::string message;
  const CommandLineHost host = {.is_port_name = IsPortName};
  // On Linux an absolute path looks like a switch, so a word that names an existing file is not
  // one.
  const ArgumentText given = CommandTextFromArguments(arguments.words, arguments.text, FileExists);
  if (ParseArguments(given, host, block, message) != 0) {
    ShowMessage(Operation{.shell = session.shell}, message, kCommandLineTitle);
    return kExitBadCommandLine;
  }
  // Called with nothing at all: the help is the answer, and no failure.
  if (!block.present) {
    PrintResult(console, HelpText());
    return kExitDone;
  }
  // Opening a file has nothing to abort but itself.
  console.aborts_on_interrupt = block.command != Command::kOpenFile;
  if (console.aborts_on_interrupt) CountInterrupts(nullptr);
  return RunBatch(session, console, block);
}

int RunTraced(Session& session, Console& console, ProgramArguments arguments) {
  const Operation operation = {.shell = session.shell};
  std::string option;
  std::string message;
  if (TakeTraceOption(arguments.words, option, message) != 0) {
    ShowMessage(operation, message, kCommandLineTitle);
    return kExitBadCommandLine;
  }
  // The text as it was typed still holds the option.
  if (!option.empty()) arguments.text.clear();
  TraceFile trace;
  const std::string path = option.empty() ? EnvironmentVariable("SKYHAUL_TRACE") : option;
  if (StartTracing(trace, path, operation) != 0) return kExitFailed;
  // The option alone is not the call without arguments that the help answers.
  const bool alone = !option.empty() && arguments.words.empty();
  const int status = HasLongOptions(arguments.words) || alone
                         ? RunLongOptions(session, console, arguments.words)
                         : RunSwitches(session, console, arguments);
  StopTracing(trace, operation);
  return status;
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
  const int status = RunTraced(session, console, ReadProgramArguments(argc, argv));
  // So that the shell's prompt does not stand behind the last percentage.
  FinishProgressLine(console);
  return CheckOutput(Operation{.shell = &shell}, console.output_error, status);
}
