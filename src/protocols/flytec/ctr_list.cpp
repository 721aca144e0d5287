#include "protocols/flytec/ctr_list.h"

#include <string>
#include <utility>

#include "core/count_message.h"
#include "protocols/flytec/ctr_sentence.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/requests.h"
#include "protocols/sentence/recogniser.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

// The list ends with a sentence of its own, not with a silence: an instrument may think for any
// time between two airspaces.
constexpr uint32_t kNoLimit_ms = UINT32_MAX;  // 49 days
constexpr const char* kTitle = "Read CTR list";

int Fail(const Job& job, const std::string& text) {
  ShowMessage(job.operation, text, kTitle);
  return -1;
}

int FailWithNumber(const Job& job, const char* text, int error) {
  return Fail(job, FormatCountMessage(text, static_cast<uint32_t>(-error)));
}

void ShowOpened(const Job& job, const CtrReceiver& receiver) {
  ShowStatus(job.operation, "Receiving CTR list");
  const auto count = static_cast<uint32_t>(receiver.airspaces.size());
  ShowProgress(job.operation, FormatCountMessage("CTR %", count));
}

// Collects CTRs until the instrument closes the list. Returns 0 or a negative number after its
// message.
int ReceiveCtrs(Job& job, CtrReceiver& receiver) {
  SentenceRecogniser recogniser;
  int framing = 0;
  int content = 1;
  const auto feed = [&](uint8_t byte) {
    framing = FeedSentenceByte(recogniser, byte);
    if (framing != 0) return framing < 0 ? Feed::kDone : Feed::kMore;
    const size_t before = receiver.airspaces.size();
    content = TakeCtrSentence(receiver, recogniser.text);
    if (receiver.airspaces.size() > before) ShowOpened(job, receiver);
    return content == 1 ? Feed::kMore : Feed::kDone;
  };
  const int result =
      ReadWithDeadline(job.link, {.timeout_ms = kNoLimit_ms, .since_last_byte = true}, feed);
  if (result == kPortFailed) return Fail(job, "E701 COM port read error");
  if (result != 0) return result;
  // The frame first: what a broken frame holds says nothing.
  if (framing < 0) return FailWithNumber(job, "E703 Format error %", framing);
  if (content < 0) return FailWithNumber(job, "E702 Format error %", content);
  return 0;
}

int ReadCtrs(Job& job) {
  if (WriteSentence(job.link, kRequestCtrList) != 0) return Fail(job, "E700 COM port write error");
  CtrReceiver receiver;
  const int received = ReceiveCtrs(job, receiver);
  if (received != 0) return received;
  const auto count = static_cast<uint32_t>(receiver.airspaces.size());
  job.data.airspaces = std::move(receiver.airspaces);
  ShowStatus(job.operation, FormatCountMessage("% CTR(s) received", count));
  return static_cast<int>(count);
}

}  // namespace

int ReadCtrJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : ReadCtrs(job);
}

}  // namespace skyhaul::flytec
