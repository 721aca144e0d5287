#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace skyhaul {

// A program that was started, its output going to files in a scratch folder. Its settings are below
// "config" there, those of the system below "system".
struct Program {
  ScratchFolder folder;
  pid_t pid = -1;

  ~Program();
  std::string Out() const { return ReadText(folder.File("out")); }
  std::string Err() const { return ReadText(folder.File("err")); }
};

// Starts a program; arguments[0] is its path.
void Start(Program& program, const std::vector<std::string>& arguments);

// Waits for the program's end. Returns its exit status, or -1 when a signal ended it.
int WaitForEnd(Program& program);

// Starts the program and waits for its end. Returns its exit status.
int RunToEnd(Program& program, const std::vector<std::string>& arguments);

// Waits until a text has appeared in one of the program's output files, at most a minute.
bool WaitForText(const Program& program, const std::string& file, const std::string& text);

// A simulated instrument with its terminal linked to a path of its own.
struct Instrument {
  ScratchFolder folder;
  Program program;
  std::string port;
};

// Starts skyhaul-instrument flytec with more arguments and waits until its terminal is there.
void StartInstrument(Instrument& instrument, const std::vector<std::string>& more);

// A flight as an instrument delivers it: fixes of every second, with header and security record.
std::string FlightText(uint32_t fixes, uint32_t start_time = 1'200'000'000);

}  // namespace skyhaul
