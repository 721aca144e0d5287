#include "protocols/flytec/read_back.h"

#include <algorithm>
#include <cmath>

#include "core/count_message.h"
#include "core/units.h"

namespace skyhaul::flytec {

namespace {

constexpr size_t kNamesTold = 5;

// "12 waypoints sent"
std::string Sent(const ReadBackTerms& terms) {
  return std::to_string(terms.sent) + ' ' + terms.records + " sent";
}

// After an abort, or a failure that has had its message.
int EndUnverified(Job& job, const ReadBackTerms& terms, int result) {
  // What an earlier list said may have changed since.
  job.data.verified.reset();
  ShowStatus(job.operation, Sent(terms) + ", not verified");
  return result;
}

int FailToRead(Job& job, const ReadBackTerms& terms, const ReadBack& back) {
  // What an earlier list said may have changed since.
  job.data.verified.reset();
  const std::string text = Sent(terms) +
                           ", but the instrument's list could not be read back to verify them\n" +
                           back.problem;
  ShowMessage(job.operation, text, terms.title);
  return -1;
}

// "2 of 200 waypoints are missing or different in the instrument: Sion, Niesen"
int FailToVerify(const Job& job, const ReadBackTerms& terms, const ReadBack& back) {
  const size_t count = back.wrong.size();
  std::string text = std::to_string(count) + " of " + std::to_string(terms.sent) + ' ' +
                     terms.records + " are missing or different in the instrument: ";
  for (size_t i = 0; i < std::min(count, kNamesTold); ++i) {
    text.append(i == 0 ? "" : ", ").append(terms.name(back.wrong[i]));
  }
  if (count > kNamesTold) text += " and " + std::to_string(count - kNamesTold) + " more";
  // What it had before counts too, so less than its room may have been sent.
  if (back.held >= terms.room) {
    text += "\nIt is full: it holds " + std::to_string(back.held) + ' ' + terms.records;
  }
  ShowMessage(job.operation, text, terms.title);
  return -1;
}

int Verified(const Job& job, const ReadBackTerms& terms) {
  const auto count = static_cast<uint32_t>(terms.sent);
  ShowStatus(job.operation, FormatCountMessage("% of % verified", count, count));
  return 0;
}

bool SameSegment(const AirspaceSegment& sent, const AirspaceSegment& read) {
  if (sent.type != read.type || !SamePlace(sent.point, read.point)) return false;
  if (sent.type == SegmentType::kCircle) return SameOnWire(sent.radius_m, read.radius_m);
  if (sent.type == SegmentType::kPoint) return true;
  return SamePlace(sent.start, read.start) && SamePlace(sent.end, read.end) &&
         sent.direction == read.direction;
}

}  // namespace

int VerifyUpload(Job& job, const ReadBackTerms& terms) {
  bool may_ask_again = true;
  bool may_send_again = true;
  ShowStatus(job.operation, std::string("Reading the ") + terms.records + " back to verify them");
  for (;;) {
    ReadBack back;
    const int read = terms.read(back);
    if (read < 0 && back.problem.empty()) return EndUnverified(job, terms, read);
    if (read == kTimedOut && may_ask_again) {
      may_ask_again = false;
      continue;
    }
    // An empty list, after asking twice, is not worth sending all of it again.
    if (read < 0 || !back.problem.empty()) return FailToRead(job, terms, back);
    job.data.verified = static_cast<uint32_t>(terms.sent - back.wrong.size());
    if (back.wrong.empty()) return Verified(job, terms);
    if (!may_send_again) return FailToVerify(job, terms, back);
    may_send_again = false;
    ShowStatus(job.operation, FormatCountMessage("% of % did not arrive, sending them once more",
                                                 static_cast<uint32_t>(back.wrong.size()),
                                                 static_cast<uint32_t>(terms.sent)));
    const int sent = terms.send_again(back.wrong);
    if (sent != 0) return EndUnverified(job, terms, sent);
  }
}

bool SameOnWire(double a, double b) {
  return std::fabs(a - b) <= 1;
}

bool SamePlace(const AirspacePosition& a, const AirspacePosition& b) {
  return SameOnWire(SemicirclesToMilliminutes(a.lat), SemicirclesToMilliminutes(b.lat)) &&
         SameOnWire(SemicirclesToMilliminutes(a.lon), SemicirclesToMilliminutes(b.lon));
}

bool SameCtr(const CtrRecord& sent, const CtrRecord& read) {
  return sent.name == read.name && sent.remark == read.remark && sent.warning_m == read.warning_m &&
         std::equal(sent.segments.begin(), sent.segments.end(), read.segments.begin(),
                    read.segments.end(), SameSegment);
}

}  // namespace skyhaul::flytec
