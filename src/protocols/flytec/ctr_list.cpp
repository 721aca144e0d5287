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

std::string Numbered(const char* text, int error) {
  return FormatCountMessage(text, static_cast<uint32_t>(-error));
}

void ShowOpened(const Job& job, const CtrReceiver& receiver) {
  ShowStatus(job.operation, "Receiving CTR list");
  const auto count = static_cast<uint32_t>(receiver.airspaces.size());
  ShowProgress(job.operation, FormatCountMessage("CTR %", count));
}

bool IsOfList(std::string_view sentence) {
  return sentence.starts_with("$PBRCTR,") || sentence.starts_with("$PBRANS,");
}

// Collects CTRs until the instrument closes the list. Returns as ReadCtrList() does.
int ReceiveCtrs(Job& job, uint32_t longest_silence_ms, CtrReceiver& receiver,
                std::string& problem) {
  SentenceRecogniser recogniser;
  int framing = 0;
  int content = 1;
  const auto feed = [&](uint8_t byte) {
    framing = FeedSentenceByte(recogniser, byte);
    if (framing != 0) return framing < 0 ? Feed::kDone : Feed::kMore;
    const size_t before = receiver.airspaces.size();
    // An answer to an earlier request may come late.
    if (before == 0 && !IsOfList(recogniser.text)) return Feed::kMore;
    content = TakeCtrSentence(receiver, recogniser.text);
    if (receiver.airspaces.size() > before) ShowOpened(job, receiver);
    return content == 1 ? Feed::kMore : Feed::kDone;
  };
  const int result =
      ReadWithDeadline(job.link, {.timeout_ms = longest_silence_ms, .since_last_byte = true}, feed);
  if (result == kPortFailed) problem = "E701 COM port read error";
  if (result == kTimedOut) problem = "The instrument did not close the list";
  if (result != 0) return result;
  // The frame first: what a broken frame holds says nothing.
  if (framing < 0) {
    problem = Numbered("E703 Format error %", framing);
  } else if (content < 0) {
    problem = Numbered("E702 Format error %", content);
  }
  return problem.empty() ? 0 : kTimedOut;
}

int ReadCtrs(Job& job) {
  std::vector<CtrRecord> airspaces;
  std::string problem;
  const int read = ReadCtrList(job, kNoLimit_ms, airspaces, problem);
  if (!problem.empty()) ShowMessage(job.operation, problem, "Read CTR list");
  if (read != 0) return read;
  const auto count = static_cast<uint32_t>(airspaces.size());
  job.data.airspaces = std::move(airspaces);
  ShowStatus(job.operation, FormatCountMessage("% CTR(s) received", count));
  return static_cast<int>(count);
}

}  // namespace

int ReadCtrList(Job& job, uint32_t longest_silence_ms, std::vector<CtrRecord>& airspaces,
                std::string& problem) {
  if (WriteSentence(job.link, kRequestCtrList) != 0) {
    problem = "E700 COM port write error";
    return kPortFailed;
  }
  CtrReceiver receiver;
  const int received = ReceiveCtrs(job, longest_silence_ms, receiver, problem);
  // What came before a fault is no list.
  if (received == 0) airspaces = std::move(receiver.airspaces);
  return received;
}

int ReadCtrJob(Job& job) {
  ProductData product;
  const int identified = ReadProductData(job, product);
  return identified != 0 ? identified : ReadCtrs(job);
}

}  // namespace skyhaul::flytec
