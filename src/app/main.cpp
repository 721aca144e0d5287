#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/command_line/from_arguments.h"
#include "app/command_line/help_text.h"
#include "app/command_line/long_options.h"
#include "app/command_line/parse.h"
#include "app/console/batch.h"
#include "app/console/console_shell.h"
#include "app/console/long_commands.h"
#include "platform/arguments.h"
#include "platform/file.h"
#include "platform/platform.h"
#include "platform/terminal.h"
#include "settings/run_defaults.h"

namespace {

using namespace skyhaul;

int RunLongOptions(const Operation& operation, const std::vector<std::string>& arguments) {
  LongOptions options;
  std::string message;
  if (ParseLongOptions(arguments, options, message) != 0) {
    ShowMessage(operation, message, kCommandLineTitle);
    return kExitBadCommandLine;
  }
  return RunLongCommand(NativePlatform(), operation, options);
}

int RunSwitches(const Operation& operation, const ProgramArguments& arguments, Console& console) {
  CommandLineBlock block;
  std::string message;
  const CommandLineHost host = {.is_port_name = IsPortName};
  const ArgumentText given = CommandTextFromArguments(arguments.words, arguments.text, FileExists);
  if (ParseArguments(given, host, block, message) != 0) {
    ShowMessage(operation, message, kCommandLineTitle);
    return kExitBadCommandLine;
  }
  if (!block.present) {
    std::fputs(HelpText().c_str(), stdout);
    return kExitDone;
  }
  // Opening a file has nothing to abort but itself.
  if (block.command != Command::kOpenFile) CountInterrupts(nullptr);
  const RunDefaults settings = LoadRunDefaults(NativePlatform(), operation);
  const BatchRun run = {.platform = &NativePlatform(),
                        .settings = &settings,
                        .console = &console,
                        .interrupts = Interrupts};
  return RunBatch(run, block);
}

// A result that did not reach its reader is no success, whatever it said.
int CheckOutput(const Operation& operation, int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  if (errno != EPIPE) ShowMessage(operation, std::strerror(errno), "Writing to standard output");
  return status == kExitDone ? kExitFailed : status;
}

}  // namespace

int main(int argc, char** argv) {
  SurviveBrokenPipes();
  WriteUtf8();
  const ProgramArguments arguments = ReadProgramArguments(argc, argv);
  Console console;
  console.terminal = ErrorIsTerminal();
  const Shell shell = ConsoleShell(console);
  Operation operation;
  operation.shell = &shell;
  const int status = HasLongOptions(arguments.words) ? RunLongOptions(operation, arguments.words)
                                                     : RunSwitches(operation, arguments, console);
  FinishProgressLine(console);
  return CheckOutput(operation, status);
}
