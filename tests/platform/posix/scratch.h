#pragma once

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace skyhaul {

// A folder of a test's own, removed with everything in it.
struct ScratchFolder {
  ScratchFolder() {
    std::string pattern = std::filesystem::temp_directory_path().string() + "/platform_test.";
    pattern.append(6, 'X');  // for mkdtemp() to fill
    if (mkdtemp(pattern.data()) != nullptr) path = pattern;
  }
  ~ScratchFolder() {
    std::error_code error;
    if (!path.empty()) std::filesystem::remove_all(path, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string path;
};

// Runs a function in a child process and returns its result, 0..255, or -1 when it died otherwise.
template <typename Function>
int InChild(Function run) {
  const pid_t child = fork();
  if (child == 0) _exit(run());
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

}  // namespace skyhaul
