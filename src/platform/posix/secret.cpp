#include "platform/posix/secret.h"

#include <dlfcn.h>

#include <cstdint>

namespace skyhaul {

namespace {

constexpr const char* kLibrary = "libsecret-1.so.0";

// The part of the library's binary interface that is used; all of it is fixed for its version 1. It
// is loaded and not linked, so that the program runs on computers without a desktop.
struct Attribute {
  const char* name;
  int type;  // 0: text
};
struct Schema {
  const char* name;
  int flags;
  Attribute attributes[32];
  int reserved;
  void* more_reserved[7];
};
struct Error {
  uint32_t domain;
  int code;
  char* message;
};

using StoreFunction = int (*)(const Schema*, const char* collection, const char* label,
                              const char* password, void* cancellable, Error**, ...);
using LookupFunction = char* (*)(const Schema*, void* cancellable, Error**, ...);
using ClearFunction = int (*)(const Schema*, void* cancellable, Error**, ...);
using FreePasswordFunction = void (*)(char*);
using FreeErrorFunction = void (*)(Error*);

struct Library {
  StoreFunction store = nullptr;
  LookupFunction lookup = nullptr;
  ClearFunction clear = nullptr;
  FreePasswordFunction free_password = nullptr;
  FreeErrorFunction free_error = nullptr;
};

constexpr Schema kSchema = {.name = "skyhaul.Secret",
                            .flags = 0,
                            .attributes = {{"name", 0}, {"id", 0}},
                            .reserved = 0,
                            .more_reserved = {}};

template <typename Function>
bool Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

// It stays loaded for the run: the libraries below it cannot be taken away again. Null when it is
// not there, or not what it should be.
const Library* LoadLibrary() {
  static Library found;
  void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  const bool complete = Find(library, "secret_password_store_sync", found.store) &&
                        Find(library, "secret_password_lookup_sync", found.lookup) &&
                        Find(library, "secret_password_clear_sync", found.clear) &&
                        Find(library, "secret_password_free", found.free_password) &&
                        Find(library, "g_error_free", found.free_error);
  return complete ? &found : nullptr;
}

const Library* SecretLibrary() {
  static const Library* const library = LoadLibrary();
  return library;
}

SecretResult Failed(const Library& library, Error* error, std::string& reason) {
  reason = error->message;
  library.free_error(error);
  return SecretResult::kFailed;
}

SecretResult Store(void*, const std::string& name, const std::string& id, const std::string& secret,
                   std::string& reason) {
  const Library* library = SecretLibrary();
  if (library == nullptr) return SecretResult::kNoService;
  const std::string label = "Skyhaul " + name;
  // Without a collection's name it goes into the person's default one. The null ends the
  // attributes.
  Error* error = nullptr;
  library->store(&kSchema, nullptr, label.c_str(), secret.c_str(), nullptr, &error, "name",
                 name.c_str(), "id", id.c_str(), nullptr);
  return error == nullptr ? SecretResult::kDone : Failed(*library, error, reason);
}

SecretResult Load(void*, const std::string& name, const std::string& id, std::string& secret,
                  std::string& reason) {
  const Library* library = SecretLibrary();
  if (library == nullptr) return SecretResult::kNoService;
  Error* error = nullptr;
  char* const found =
      library->lookup(&kSchema, nullptr, &error, "name", name.c_str(), "id", id.c_str(), nullptr);
  if (error != nullptr) return Failed(*library, error, reason);
  // Null without an error: the service works and has no such secret.
  if (found == nullptr) return SecretResult::kMissing;
  secret = found;
  library->free_password(found);  // wipes it first
  return SecretResult::kDone;
}

SecretResult Erase(void*, const std::string& name, const std::string& id, std::string& reason) {
  const Library* library = SecretLibrary();
  if (library == nullptr) return SecretResult::kNoService;
  Error* error = nullptr;
  const int erased =
      library->clear(&kSchema, nullptr, &error, "name", name.c_str(), "id", id.c_str(), nullptr);
  if (error != nullptr) return Failed(*library, error, reason);
  return erased != 0 ? SecretResult::kDone : SecretResult::kMissing;
}

}  // namespace

SecretFunctions PosixSecret() {
  return {.store = Store, .load = Load, .erase = Erase};
}

}  // namespace skyhaul
