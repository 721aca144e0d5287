#include "transport/trace_log.h"

#include <gtest/gtest.h>

#include <string>

namespace skyhaul {
namespace {

// A sentence that stops in its middle, as a hanging instrument's does, and another job after it.
TEST(TraceLog, PutsALineThatHangsOnTheDiskWithinASecond) {
  std::string text;
  const auto write = [](void* context, std::string_view line) {
    *static_cast<std::string*>(context) += line;
  };
  StartTraceLog({.context = &text, .write = write, .settle = [](void* context) {
                   *static_cast<std::string*>(context) += "settled\n";
                 }});
  LogTracedJob("first", 50'000);
  LogTraced(Speaker::kInstrument, "$PBR", 50'200);
  LogTracedTime(50'250);
  EXPECT_TRUE(text.ends_with("$PBR|\n")) << text;
  LogTracedTime(50'950);
  EXPECT_TRUE(text.ends_with("$PBR|\n")) << text;
  LogTracedTime(51'000);
  EXPECT_TRUE(text.ends_with("$PBR|\nsettled\n")) << text;
  LogTraced(Speaker::kHost, "x", 51'100);
  LogTracedJob("second\nline", 61'000);
  LogTraced(Speaker::kHost, "y", 61'001);
  EndTraceLog();
  LogTraced(Speaker::kHost, "unheard\n", 61'002);
  EXPECT_EQ(text,
            "   0.000 remark      first\nsettled\n"
            "   0.200 instrument  24 50 42 52  |$PBR|\nsettled\n"
            "   1.100 host        78  |x|\n   0.000 remark      second line\nsettled\n"
            "   0.001 host        79  |y|\nsettled\n");
}

}  // namespace
}  // namespace skyhaul
