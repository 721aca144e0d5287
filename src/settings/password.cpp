#include "settings/password.h"

#include <algorithm>
#include <random>
#include <string_view>

namespace skyhaul {

namespace {

// "secret:", 32 hexadecimal digits, and one zero byte: 40 bytes.
constexpr std::string_view kPrefix = "secret:";
constexpr size_t kIdDigits = 32;
static_assert(kPrefix.size() + kIdDigits + 1 == std::tuple_size_v<SecretMarker>);

// "0f3c...", 32 digits, 128 bits: two ids never meet, so that no new secret overwrites one that a
// saved marker still leads to. 16 divides the range of the generator, so each digit is as likely.
std::string NewId() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device random;
  std::string id;
  while (id.size() < kIdDigits) id += kDigits[random() % kDigits.size()];
  return id;
}

// The id in a marker; empty when there is none.
std::string IdOfMarker(const SecretMarker& marker) {
  // "secret:0f3c..." without the zero at its end.
  const std::string_view text(marker.data(), marker.size() - 1);
  if (!text.starts_with(kPrefix)) return {};
  return std::string(text.substr(kPrefix.size()));
}

}  // namespace

bool PasswordIsSet(const SecretMarker& marker) {
  // Not only our own form: bytes that we cannot follow were still a password to somebody, and
  // saying "not set" would be wrong.
  return std::any_of(marker.begin(), marker.end(), [](char byte) { return byte != 0; });
}

SecretResult KeepPassword(const SecretFunctions& secrets, const std::string& name,
                          const std::string& password, SecretMarker& marker, std::string& reason) {
  const std::string id = NewId();
  // The marker is written only after the secret: one that led nowhere would look like a password.
  const SecretResult result = secrets.store(secrets.context, name, id, password, reason);
  if (result != SecretResult::kDone) return result;
  const std::string text = std::string(kPrefix) + id;
  marker.fill(0);
  std::copy(text.begin(), text.end(), marker.begin());
  return result;
}

SecretResult ReadPassword(const SecretFunctions& secrets, const std::string& name,
                          const SecretMarker& marker, std::string& password, std::string& reason) {
  const std::string id = IdOfMarker(marker);
  // A marker of another form is never passed to the system as an id.
  if (id.empty()) return SecretResult::kMissing;
  return secrets.load(secrets.context, name, id, password, reason);
}

void ForgetPassword(const SecretFunctions& secrets, const std::string& name,
                    const SecretMarker& marker) {
  const std::string id = IdOfMarker(marker);
  // A secret that cannot be erased does no harm: no marker leads to it any more.
  std::string ignored;
  if (!id.empty()) secrets.erase(secrets.context, name, id, ignored);
}

}  // namespace skyhaul
