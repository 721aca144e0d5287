#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/airspace.h"

namespace skyhaul::flytec {

// Why a sentence of the CTR list ends it. The driver shows the number. "Missing" means that no
// comma ends the field where another one must follow.
enum CtrError : int {
  kCtrNoField = 1,          // no comma in the sentence
  kCtrBadEnd = 2,           // $PBRANS with anything but 1
  kCtrUnknownSentence = 3,  // neither $PBRCTR nor, between CTRs, $PBRANS
  kCtrTotalMissing = 4,
  kCtrBadTotal = 5,
  kCtrIndexMissing = 6,
  kCtrBadIndex = 7,
  kCtrTotalTooSmall = 8,  // below 3
  kCtrNotAtStart = 9,     // the first sentence of a CTR is not number 0
  kCtrWarningMissing = 10,
  kCtrBadWarning = 11,  // not a number of at most four digits
  kCtrMemory = 12,      // more CTRs than any instrument holds
  kCtrNoRemark = 13,    // the second sentence is not number 1
  kCtrOutOfSequence = 14,
  kCtrTypeMissing = 15,
  kCtrBadType = 16,  // none of P, X, C, T and Z
  kCtrLatitudeMissing = 17,
  kCtrLatitudeTooLarge = 18,  // degrees and minutes above 8999
  kCtrLatitudeNoPoint = 19,
  kCtrBadLatitudeFraction = 20,
  kCtrLatitudeHemisphereMissing = 21,
  kCtrBadLatitudeHemisphere = 22,  // neither N nor S
  kCtrLongitudeMissing = 23,
  kCtrLongitudeTooLarge = 24,  // degrees and minutes above 18000
  kCtrLongitudeNoPoint = 25,
  kCtrBadLongitudeFraction = 26,
  kCtrLongitudeHemisphereMissing = 27,  // only of C, T and Z, where a field follows it
  kCtrBadLongitudeHemisphere = 28,      // neither E nor W, or a further field after a P or an X
  kCtrOffTheEarth = 29,                 // beyond 90 degrees of latitude or 180 of longitude
  kCtrBadRadius = 30,                   // of a circle: not a number of metres, or above 99999
  kCtrBadDirection = 31,                // of an arc: neither + nor -
  kCtrArcOutOfOrder = 32,  // X, T and Z do not follow each other, or the CTR ends before Z
  kCtrTotalChanged = 33,   // a sentence has another total than the first one of its CTR
};

// The CTR list while its sentences arrive.
struct CtrReceiver {
  std::vector<CtrRecord> airspaces;  // the last one is not whole while next_index is not 0

  uint32_t total = 0;       // sentences of the CTR being received
  uint32_t next_index = 0;  // 0: between CTRs
  char arc_piece = 0;       // the last of X and T whose arc is not whole; 0: none
};

// Takes one sentence from '$' to before '*'. Names and remarks lose the blanks at their end and are
// cut to 50 bytes. X, T and Z make one segment kArcByPoints, with the direction that comes with T.
// Returns 1 (the list goes on), 0 (it has ended), or -n with n a CtrError.
int TakeCtrSentence(CtrReceiver& receiver, std::string_view sentence);

}  // namespace skyhaul::flytec
