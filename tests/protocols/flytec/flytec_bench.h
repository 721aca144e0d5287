#pragma once

#include <gtest/gtest.h>

#include "protocols/sentence/checksum.h"
#include "tests/support/job_bench.h"

namespace skyhaul::flytec {

using Texts = std::vector<std::string>;

// A sentence with its checksum, CR and LF.
inline std::string Sentence(const std::string& body) {
  std::string sentence = "$" + body;
  AppendNmeaChecksum(sentence, 200);
  return sentence;
}

// A line of the list of so many flights: one of 27 April 2017.
inline std::string ListLine(uint32_t index, const char* start = "12:30:00",
                            const char* duration = "00:00:04", uint32_t total = 1) {
  return Sentence("PBRTL," + std::to_string(total) + "," + std::to_string(index) + ",27.04.17," +
                  start + "," + duration);
}

// A line of the waypoint list.
inline std::string WaypointLine(int n = 0) {
  return Sentence("PBRWPS,4743.564,N,01121.571,E,URT" + std::to_string(100 + n) +
                  ",Urthaler Hof     ,0620");
}

// The airspace list's last line, which also acknowledges an uploaded airspace.
inline const std::string kListEnd = Sentence("PBRANS,1");
inline const std::string kCtrName = Sentence("PBRCTR,003,000,abcdefghijklmnopq,0001");
inline const std::string kOneCtr = kCtrName + Sentence("PBRCTR,003,001,Remark           ") +
                                   Sentence("PBRCTR,003,002,C,4710.001,N,01104.700,E,12345");

// A job on a bench with a scripted instrument that names itself as given, with one flight aboard.
struct FlytecBench : ScriptedBench {
  explicit FlytecBench(const std::string& device = "6030", const std::string& software = "3.30") {
    script.answers["$PBRSNP,"] = {
        Sentence("PBRSNP," + device + ",JIMI HENDRIX     ,01001," + software)};
    script.answers["$PBRTL,"] = {ListLine(0)};
  }

  // How long the run took without what its bytes took on the wire.
  double Waited_ms() const {
    const double wire_ms = static_cast<double>(bench.received) * 10'000 / 57600;
    return static_cast<double>(Elapsed_ms(bench, start_ns)) - wire_ms;
  }

  const uint64_t start_ns = bench.now_ns;
};

}  // namespace skyhaul::flytec
