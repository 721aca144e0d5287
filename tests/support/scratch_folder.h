#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace skyhaul {

// A folder of its own for one test, removed at its end.
struct ScratchFolder {
  ScratchFolder() {
    // In memory where the system has such a place: whole files are flushed to the disk, which takes
    // a sweep over thousands of them minutes.
    const std::filesystem::path memory = "/dev/shm";
    path =
        (std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
        ("skyhaul-test-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directories(path);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  // The path of a file in it; with an empty name the folder itself, ended by a slash.
  std::string File(const std::string& name) const { return path.string() + "/" + name; }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  std::filesystem::path path;
};

inline std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace skyhaul
