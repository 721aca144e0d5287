#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace skyhaul {

struct FakeValue {
  ValueKind kind = ValueKind::kText;
  std::string bytes;

  bool operator==(const FakeValue&) const = default;
};

// A registry in memory, with the user's key and the template's, either of which may be missing.
struct FakeRegistry {
  using Values = std::map<std::string, FakeValue>;

  bool has_user = false;
  bool has_template = false;
  Values user;
  Values template_values;
  std::string open_reason;           // not empty: the user's key cannot be opened
  std::string failing_set;           // the value that cannot be written
  std::vector<std::string> written;  // names, in the order in which they were written
  std::vector<std::string> notes;
  int open_keys = 0;
  std::string documents = "/home/anna/Documents";
};

inline FakeRegistry& FakeOf(void* context) {
  return *static_cast<FakeRegistry*>(context);
}

inline RegistryOpening OpenFake(void* context, RegistryKey which) {
  FakeRegistry& fake = FakeOf(context);
  const bool is_template = which == RegistryKey::kTemplate;
  if (!is_template && !fake.open_reason.empty()) return {.reason = fake.open_reason};
  const bool there = is_template ? fake.has_template : fake.has_user;
  if (!there && which != RegistryKey::kUser) return {.missing = true, .reason = {}};
  if (!is_template) fake.has_user = true;
  ++fake.open_keys;
  return {
      .handle = is_template ? &fake.template_values : &fake.user, .created = !there, .reason = {}};
}

inline QueryResult QueryFake(void*, RegistryHandle key, const std::string& name, ValueKind kind,
                             size_t capacity, std::string& bytes) {
  const auto& values = *static_cast<const FakeRegistry::Values*>(key);
  const auto found = values.find(name);
  if (found == values.end()) return QueryResult::kMissing;
  if (found->second.kind != kind || found->second.bytes.size() > capacity) {
    return QueryResult::kUnfit;
  }
  bytes = found->second.bytes;
  return QueryResult::kFound;
}

inline int SetFake(void* context, RegistryHandle, const std::string& name, ValueKind kind,
                   const std::string& bytes, IfSet if_set, std::string& reason) {
  FakeRegistry& fake = FakeOf(context);
  if (name == fake.failing_set) {
    reason = "Disk full";
    return -1;
  }
  if (if_set == IfSet::kKeep && fake.user.contains(name)) return 0;
  fake.user[name] = {.kind = kind, .bytes = bytes};
  fake.written.push_back(name);
  return 0;
}

inline RegistryFunctions MakeRegistry(FakeRegistry& fake) {
  return {.context = &fake,
          .open = OpenFake,
          .query = QueryFake,
          .set = SetFake,
          .flush = [](void*, RegistryHandle, std::string&) { return 0; },
          .take_notes = [](void* context, RegistryHandle) { return FakeOf(context).notes; },
          .close = [](void* context, RegistryHandle) { --FakeOf(context).open_keys; },
          .place = [](void*) { return std::string("the fake registry"); },
          .documents_folder = [](void* context) { return FakeOf(context).documents; }};
}

// Secrets in memory, by "name id".
struct FakeSecrets {
  std::map<std::string, std::string> kept;
  SecretResult answer = SecretResult::kDone;  // what storing answers
};

inline SecretFunctions MakeSecrets(FakeSecrets& fake) {
  return {.context = &fake,
          .store =
              [](void* context, const std::string& name, const std::string& id,
                 const std::string& secret, std::string& reason) {
                auto& secrets = *static_cast<FakeSecrets*>(context);
                reason = "The service is locked";
                if (secrets.answer == SecretResult::kDone) secrets.kept[name + " " + id] = secret;
                return secrets.answer;
              },
          .load =
              [](void* context, const std::string& name, const std::string& id, std::string& secret,
                 std::string&) {
                const auto& kept = static_cast<FakeSecrets*>(context)->kept;
                const auto found = kept.find(name + " " + id);
                if (found == kept.end()) return SecretResult::kMissing;
                secret = found->second;
                return SecretResult::kDone;
              },
          .erase =
              [](void* context, const std::string& name, const std::string& id, std::string&) {
                const size_t erased =
                    static_cast<FakeSecrets*>(context)->kept.erase(name + " " + id);
                return erased > 0 ? SecretResult::kDone : SecretResult::kMissing;
              }};
}

}  // namespace skyhaul
