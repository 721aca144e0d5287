#pragma once

#include <memory>
#include <string>
#include <vector>

namespace skyhaul {

// A program that hears what the notifier sends. Each system has its own kind.
struct NotifiedClient {
  explicit NotifiedClient(const std::string& name);
  ~NotifiedClient();
  NotifiedClient(const NotifiedClient&) = delete;
  NotifiedClient& operator=(const NotifiedClient&) = delete;

  // Takes nothing in until TakeTexts() is called.
  void Hang();
  // The texts that have come since the last call; "(damaged)" for one that is not in its form.
  std::vector<std::string> TakeTexts();

  struct Own;  // each system's
  std::unique_ptr<Own> own;
};

// A name that no other client has.
std::string ClientName();

// Names by which nobody can be found.
std::vector<std::string> NobodysNames();

}  // namespace skyhaul
