#include "tests/end_to_end/program.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "formats/igc/write_igc.h"
#include "instruments/flight_generator.h"

namespace skyhaul {

namespace {

void RedirectTo(const std::string& path, int descriptor) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dup2(file, descriptor);
}

// The program finds neither the settings nor the passwords of whoever runs the tests, and leaves
// nothing in the home folder.
void HideTheUser(const ScratchFolder& folder) {
  setenv("HOME", folder.path.c_str(), 1);
  setenv("XDG_CONFIG_HOME", folder.File("config").c_str(), 1);
  setenv("XDG_CONFIG_DIRS", folder.File("system").c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder.File("none")).c_str(), 1);
}

}  // namespace

Program::~Program() {
  if (pid <= 0) return;
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
}

void Start(Program& program, const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  const std::string out = program.folder.File("out");
  const std::string err = program.folder.File("err");
  program.pid = fork();
  if (program.pid != 0) return;
  RedirectTo(out, STDOUT_FILENO);
  RedirectTo(err, STDERR_FILENO);
  HideTheUser(program.folder);
  execv(argv[0], argv.data());
  _exit(127);
}

int WaitForEnd(Program& program) {
  int status = 0;
  waitpid(program.pid, &status, 0);
  program.pid = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int RunToEnd(Program& program, const std::vector<std::string>& arguments) {
  Start(program, arguments);
  return WaitForEnd(program);
}

bool WaitForText(const Program& program, const std::string& file, const std::string& text) {
  constexpr int kTries = 3000;
  for (int i = 0; i < kTries; ++i) {
    if (ReadText(program.folder.File(file)).find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return false;
}

void StartInstrument(Instrument& instrument, const std::vector<std::string>& more) {
  instrument.port = instrument.folder.File("port");
  std::vector<std::string> arguments = {SKYHAUL_INSTRUMENT, "flytec", "--link", instrument.port};
  arguments.insert(arguments.end(), more.begin(), more.end());
  Start(instrument.program, arguments);
  WaitForText(instrument.program, "out", "\n");
}

std::string FlightText(uint32_t fixes, uint32_t start_time) {
  const GeneratedFlight flight = GenerateFlight({.start_time = start_time, .max_fixes = fixes});
  std::string text;
  igc::Write(flight.points, {.pilot = "ANNA MUSTER"},
             {.sign = true, .may_be_signed = true, .serial = "000", .free_text = "6030"}, text);
  return text;
}

}  // namespace skyhaul
