#include "protocols/flytec/ctr_upload.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/count_message.h"
#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/product_data.h"
#include "protocols/flytec/read_back.h"
#include "protocols/sentence/recogniser.h"
#include "protocols/sentence/write_sentence.h"

namespace skyhaul::flytec {

namespace {

// The instrument checks and stores a whole airspace before it answers.
constexpr uint32_t kAnswer_ms = 20000;
constexpr uint32_t kBeforeNextCtr_ms = 300;
constexpr uint32_t kBeforeList_ms = 1000;
// The list itself has no limit; a person who only waits for its verdict needs one.
constexpr uint32_t kListSilence_ms = 20000;
constexpr const char* kTitle = "CTR upload";
constexpr const char* kAnswerTitle = "CTR upload acknowledge status";

// How far an upload has come.
struct CtrProgress {
  uint32_t total = 0;  // airspaces
  uint32_t taken = 0;  // of them
  uint32_t segments = 0;
};

// The airspace is named below the text, so that its owner knows which one to look at.
int Fail(const Job& job, const std::string& text, const std::string& name) {
  ShowMessage(job.operation, text + "\n" + name, kAnswerTitle);
  return -1;
}

std::string SegmentsSent(const CtrProgress& progress) {
  return FormatCountMessage("% CTR segments sent", progress.segments);
}

int FailWrite(const Job& job, size_t line, const CtrProgress& progress) {
  ShowMessage(job.operation, "COM port write error", kTitle);
  const std::string segments = SegmentsSent(progress);
  // The sentence that failed is the last one that may have arrived.
  const std::string statuses[] = {"CTR name sent", "CTR remark sent", segments};
  ShowStatus(job.operation, statuses[line < 2 ? line : 2]);
  return -1;
}

// Returns 0 or a negative number after its message or status.
int SendLines(Job& job, const std::vector<CtrLine>& lines, CtrProgress& progress) {
  for (size_t i = 0; i < lines.size(); ++i) {
    // Asked before each sentence: the pauses of a long outline add up to minutes.
    if (StopRequested(job.operation)) {
      ShowStatus(job.operation, SegmentsSent(progress));
      return kAborted;
    }
    if (WriteWhenTaken(job.link, lines[i].sentence) != 0) return FailWrite(job, i, progress);
    Pause(job.link, lines[i].pause_ms);
    if (!lines[i].ends_segment) continue;
    ++progress.segments;
    ShowStatus(job.operation, SegmentsSent(progress));
  }
  return 0;
}

// Waits for the acknowledgement. Returns 0 when the airspace was taken, or a negative number after
// its message.
int AwaitAnswer(Job& job, const std::string& name) {
  ShowStatus(job.operation, "Waiting for CTR transfer ack.");
  // $PBRANS,1*01
  PrefixRecogniser recogniser{.prefix = "$PBRANS,"};
  int error = 0;
  const auto feed = [&](uint8_t byte) {
    error = FeedPrefixedSentenceByte(recogniser, byte);
    return error == 1 ? Feed::kMore : Feed::kDone;
  };
  const int result =
      ReadWithDeadline(job.link, {.timeout_ms = kAnswer_ms, .since_last_byte = true}, feed);
  if (result == kPortFailed) return Fail(job, "E601 COM port read error", name);
  if (result == kTimedOut) return Fail(job, "Missing CTR upload ack.", name);
  if (result != 0) return result;
  if (error < 0) {
    return Fail(job, FormatCountMessage("E600 Format error %", static_cast<uint32_t>(-error)),
                name);
  }
  if (recogniser.status != '1') return Fail(job, CtrAnswerText(recogniser.status), name);
  ShowStatus(job.operation, CtrAnswerText('1'));
  return 0;
}

void ShowUploadProgress(const Job& job, const char* text, uint32_t number,
                        const CtrProgress& progress, const std::string& name) {
  ShowProgress(job.operation, FormatCountMessage(text, number, progress.total) + name,
               static_cast<int>(uint64_t{progress.taken} * 100 / std::max(progress.total, 1U)));
}

int SendCtr(Job& job, const CtrRecord& record, const std::string& field, CtrProgress& progress) {
  ShowUploadProgress(job, "Sending CTR %/%: ", progress.taken + 1, progress, record.name);
  const int sent = SendLines(job, CtrLines(record, field), progress);
  if (sent != 0) return sent;
  const int answered = AwaitAnswer(job, record.name);
  if (answered != 0) {
    ShowStatus(job.operation, SegmentsSent(progress));
    return answered;
  }
  ++progress.taken;
  ShowUploadProgress(job, "CTR %/% taken: ", progress.taken, progress, record.name);
  Pause(job.link, kBeforeNextCtr_ms);
  return 0;
}

// The selected airspaces that the instrument can hold; each of the others is named in a message.
std::vector<const CtrRecord*> Sendable(const Job& job) {
  std::vector<const CtrRecord*> records;
  for (const CtrRecord& record : job.data.airspaces) {
    if (!record.selected) continue;
    const std::string obstacle = CtrObstacle(record);
    if (obstacle.empty()) records.push_back(&record);
    if (!obstacle.empty()) ShowMessage(job.operation, obstacle, kTitle);
  }
  return records;
}

// One airspace on its way to the instrument.
struct Outgoing {
  const CtrRecord* record = nullptr;
  std::string field;  // its name
};

// Says how many names are not sent as they are.
std::vector<Outgoing> Named(const Job& job, const std::vector<const CtrRecord*>& records) {
  std::vector<std::string> names;
  for (const CtrRecord* record : records) names.push_back(record->name);
  uint32_t changed = 0;
  std::vector<std::string> fields = NameFields(names, changed);
  if (changed > 0) {
    ShowStatus(job.operation,
               FormatCountMessage("% names were changed to fit % characters", changed, kNameWidth));
  }
  std::vector<Outgoing> outgoing;
  for (size_t i = 0; i < records.size(); ++i) {
    outgoing.push_back({.record = records[i], .field = std::move(fields[i])});
  }
  return outgoing;
}

int SendAll(Job& job, const std::vector<Outgoing>& airspaces) {
  CtrProgress progress{.total = static_cast<uint32_t>(airspaces.size())};
  for (const Outgoing& outgoing : airspaces) {
    const int sent = SendCtr(job, *outgoing.record, outgoing.field, progress);
    if (sent != 0) return sent;
    job.data.sent = progress.taken;
  }
  return static_cast<int>(progress.taken);
}

int SendAgain(Job& job, const std::vector<Outgoing>& airspaces, const std::vector<size_t>& which) {
  CtrProgress progress{.total = static_cast<uint32_t>(which.size())};
  for (const size_t i : which) {
    const int sent = SendCtr(job, *airspaces[i].record, airspaces[i].field, progress);
    if (sent != 0) return sent;
  }
  return 0;
}

int ReadBackCtrs(Job& job, const std::vector<Outgoing>& airspaces, ReadBack& back) {
  if (const int rested = BringToRest(job.link, kBeforeList_ms); rested != 0) return rested;
  std::vector<CtrRecord> held;
  const int read = ReadCtrList(job, kListSilence_ms, held, back.problem);
  if (read != 0) return read;
  back.held = held.size();
  for (size_t i = 0; i < airspaces.size(); ++i) {
    const CtrRecord sent = CtrAsSent(*airspaces[i].record, airspaces[i].field);
    const auto same = [&](const CtrRecord& record) { return SameCtr(sent, record); };
    if (std::none_of(held.begin(), held.end(), same)) back.wrong.push_back(i);
  }
  return 0;
}

int Verify(Job& job, const std::vector<Outgoing>& airspaces) {
  return VerifyUpload(
      job, {.records = "airspaces",
            .title = kTitle,
            .sent = airspaces.size(),
            .room = kCtrRoom,
            .read = [&](ReadBack& back) { return ReadBackCtrs(job, airspaces, back); },
            .send_again =
                [&](const std::vector<size_t>& which) { return SendAgain(job, airspaces, which); },
            .name = [&](size_t i) { return airspaces[i].record->name; }});
}

}  // namespace

const char* CtrAnswerText(char answer) {
  switch (answer) {
    case '1':
      return "CTR transfer ok";
    case '2':
      return "Plausibility error";
    case '3':
      return "No further memory";
    case '4':
      return "No more writing allowed";
    case '5':
      return "NMEA syntax error";
    default:
      return "Unknown ack. status";
  }
}

int WriteCtrJob(Job& job) {
  const std::vector<const CtrRecord*> records = Sendable(job);
  // Each obstacle has had its message.
  if (records.empty()) return -1;
  if (records.size() > kCtrRoom) {
    ShowMessage(job.operation,
                FormatCountMessage("% airspaces, but the instrument holds %: nothing was sent",
                                   static_cast<uint32_t>(records.size()), kCtrRoom),
                kTitle);
    return -1;
  }
  ProductData product;
  const int identified = ReadProductData(job, product);
  if (identified != 0) return identified;
  const std::vector<Outgoing> airspaces = Named(job, records);
  const int sent = SendAll(job, airspaces);
  if (sent < 0 || !job.verify) return sent;
  const int verified = Verify(job, airspaces);
  return verified != 0 ? verified : sent;
}

}  // namespace skyhaul::flytec
