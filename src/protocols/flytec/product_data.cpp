#include "protocols/flytec/product_data.h"

#include <algorithm>
#include <vector>

#include "core/count_message.h"
#include "device/find_instrument.h"
#include "protocols/flytec/models.h"
#include "protocols/flytec/requests.h"
#include "protocols/sentence/checksum.h"
#include "protocols/sentence/fields.h"
#include "protocols/sentence/line_collector.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

constexpr uint32_t kAnswer_ms = 2000;
// The instrument needs a second before it takes the next command.
constexpr uint32_t kBeforeNextCommand_ms = 1000;
constexpr uint32_t kAttemptsPerRequest = 2;  // a request takes two of the one-second attempts
constexpr int kMostIdentifications = 3;
constexpr size_t kLongestLine = 80;
constexpr size_t kFields = 5;
constexpr const char* kTitle = "Get GPS product data";

// Beside the transport's own kTimedOut, kPortFailed and kAborted.
constexpr int kWriteFailed = -4;
constexpr int kNoPilotName = -5;

std::string Normalised(std::string_view text, size_t longest) {
  std::string result;
  for (const char c : text) {
    // The instrument pads its fields with blanks.
    if (c == ' ' && (result.empty() || result.back() == ' ')) continue;
    result += c;
  }
  result.resize(std::min(result.size(), longest));
  if (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

// bent: the answer contradicts its own checksum.
int AskOnce(Job& job, ProductData& data, bool& bent) {
  // The answer to the attempt before may have lost its XON.
  FreeOutput(job.link);
  if (WriteSentence(job.link, kRequestProductData) != 0) return kWriteFailed;
  LineCollector collector;
  collector.limit = kLongestLine;
  // Other lines may still be on their way from an earlier conversation, so they are passed over.
  const auto feed = [&](uint8_t byte) {
    if (!CollectLineByte(collector, byte)) return Feed::kMore;
    bent = ContradictsChecksum(collector.line);
    return ParseProductData(collector.line, data) == 0 ? Feed::kDone : Feed::kMore;
  };
  const int result = ReadWithDeadline(job.link, {.timeout_ms = kAnswer_ms}, feed);
  if (result != 0) return result;
  // An instrument without a pilot has not been set up: its flights would be nobody's.
  return data.pilot_name.empty() ? kNoPilotName : 0;
}

// Shows why a request failed. A time-out has no message here: the caller counts the attempts.
void ShowFailure(const Job& job, int failure) {
  switch (failure) {
    case kWriteFailed:
      return ShowMessage(job.operation, "COM port write error", "Requesting GPS product data");
    case kPortFailed:
      return ShowMessage(job.operation, "COM port read error", "Reading product data");
    case kNoPilotName:
      return ShowMessage(job.operation, "Bad/missing user name", kTitle);
    default:
      return;
  }
}

int Fail(const Job& job) {
  ShowMessage(job.operation, "No valid response from GPS", kTitle);
  return -1;
}

int AskWithAttempts(Job& job, ProductData& data, bool& bent) {
  const uint32_t attempts = job.link.attempts;
  // An odd number of attempts ends with a whole request.
  for (uint32_t used = 0; used < attempts; used += kAttemptsPerRequest) {
    ShowProgress(job.operation, FormatCountMessage("Requesting product info (%)",
                                                   (attempts - used) / kAttemptsPerRequest));
    const int result = AskOnce(job, data, bent);
    if (result == kTimedOut) continue;
    ShowFailure(job, result);
    return result;
  }
  return Fail(job);
}

// A byte that changed on the way may stand in the name, which decides what can be fetched, so an
// answer that contradicts its checksum is asked for again. One that comes twice alike is right: an
// instrument may have a sum of its own.
int Identify(Job& job, ProductData& data) {
  ProductData before;
  bool bent = false;
  for (int asked = 1; asked <= kMostIdentifications; ++asked) {
    const int result = AskWithAttempts(job, data, bent);
    if (result != 0 || !bent || (asked > 1 && data == before)) return result;
    before = data;
  }
  return Fail(job);
}

int AskOnCandidate(Job& job) {
  ProductData data;
  bool bent = false;
  const int result = AskOnce(job, data, bent);
  if (result == kNoPilotName) ShowFailure(job, result);
  // The search goes on to the next port after a failure to write, as after a failure to read.
  return result == kWriteFailed ? kPortFailed : result;
}

void FillIdentity(Job& job, const ProductData& data) {
  constexpr size_t kLongestOwner = 50;
  const Model* model = FindModel(data.device_name);
  job.device_name = data.device_name;
  job.pilot_name = data.pilot_name;
  job.model_name = model != nullptr ? model->model_name : "Unknown";
  job.description = data.device_name + " SN" + data.serial_number + " SW" + data.software;
  job.owner = (job.model_name + ": " + data.pilot_name).substr(0, kLongestOwner);
}

}  // namespace

int ParseProductData(std::string_view line, ProductData& data) {
  // $PBRSNP,5030,JIMI HENDRIX     ,01001,2.00*hh   device, pilot, serial number, software
  const std::vector<std::string_view> fields = SplitFields(line, kFields);
  if (fields.size() < kFields || fields[0] != "$PBRSNP") return -1;
  const std::string_view software = fields[4].substr(0, fields[4].find('*'));
  data.device_name = Normalised(fields[1], 16);
  data.pilot_name = Normalised(fields[2], 40);
  data.serial_number = Normalised(fields[3], 7);
  data.software = Normalised(software, 6);
  return 0;
}

int ReadProductData(Job& job, ProductData& data) {
  if (job.link.automatic) {
    if (FindInstrument(job, kPortSettings, AskOnCandidate) != 0) return -1;
  } else if (OpenPort(job.link, kPortSettings) != 0) {
    return -1;
  }
  const int result = Identify(job, data);
  if (result != 0) return result;
  ShowStatus(job.operation, "Product data read");
  ShowProgress(job.operation,
               data.device_name + ", SN" + data.serial_number + ", SW" + data.software);
  FillIdentity(job, data);
  // Every job goes on with a request.
  return BringToRest(job.link, kBeforeNextCommand_ms);
}

}  // namespace skyhaul::flytec
