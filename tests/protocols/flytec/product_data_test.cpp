#include "protocols/flytec/product_data.h"

#include "protocols/flytec/models.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

TEST(ProductData, TextsAreNormalisedAndCut) {
  const std::pair<const char*, const char*> cases[] = {
      {"$PBRSNP,5030,JIMI HENDRIX     ,01001,2.00*hh", "5030|JIMI HENDRIX|01001|2.00"},
      {"$PBRSNP, 6030 ,  A   B  ,  01 ,3.30", "6030|A B|01|3.30"},
      {"$PBRSNP,123456789012345 7,P,12345678,1234567,x*00", "123456789012345|P|1234567|123456"},
      {"$PBRSNP,6030,P,01001", ""},
      {"$PBRTL,6030,P,01001,3.30", ""},
  };
  for (const auto& [line, texts] : cases) {
    ProductData data;
    EXPECT_EQ(ParseProductData(line, data), *texts == 0 ? -1 : 0) << line;
    const std::string all =
        data.device_name + "|" + data.pilot_name + "|" + data.serial_number + "|" + data.software;
    EXPECT_EQ(all, *texts == 0 ? "|||" : texts) << line;
  }
}

TEST(ProductData, ModelsAndTheTrackListGate) {
  using enum TrackListGate;
  const std::tuple<const char*, const char*, const char*, TrackListGate> cases[] = {
      {"5030", "5030", "2.19", kOldSoftware},     {"5030", "5030", "2.2", kOpen},
      {"COMPEO", "Compeo", "2.19", kOldSoftware}, {"COMPEO+", "Compeo+", "", kOpen},
      {"IQ 6030", "6030", "9.99", kUnknownModel}, {"7000", "none", "9.99", kUnknownModel},
  };
  for (const auto& [device, model_name, software, gate] : cases) {
    const Model* model = FindModel(device);
    EXPECT_STREQ(model == nullptr ? "none" : model->model_name, model_name) << device;
    EXPECT_EQ(GateOf(device, software), gate) << device << software;
  }
}

TEST(ProductData, IsReadAndShown) {
  FlytecBench b("COMPEO+", "3.15");
  ProductData data;
  ASSERT_EQ(ReadProductData(b.job, data), 0);
  EXPECT_EQ(b.bench.settings.baud, 57600U);
  EXPECT_TRUE(b.bench.settings.xon_xoff);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n");
  EXPECT_EQ((Texts{b.job.device_name, b.job.model_name, b.job.description, b.job.owner}),
            (Texts{"COMPEO+", "Compeo+", "COMPEO+ SN01001 SW3.15", "Compeo+: JIMI HENDRIX"}));
  EXPECT_EQ(b.recorder.statuses, Texts{"Product data read"});
  EXPECT_EQ(b.recorder.progress,
            (Texts{"Requesting product info (15)", "COMPEO+, SN01001, SW3.15"}));
  EXPECT_GE(b.Waited_ms(), 1190) << "the instrument needs a second";
}

TEST(ProductData, EachFailureHasItsMessage) {
  const std::string nobody = Sentence("PBRSNP,6030,  ,01001,3.30");
  const std::tuple<std::string, Fault, uint32_t, size_t, const char*> cases[] = {
      {"", {}, 30, 15, "Get GPS product data: No valid response from GPS"},
      {"", {}, 3, 2, "Get GPS product data: No valid response from GPS"},
      {nobody, {}, 30, 1, "Get GPS product data: Bad/missing user name"},
      {"", FailWrite(1), 30, 1, "Requesting GPS product data: COM port write error"},
      {"$PBRSNP,60", Unplug(5), 30, 1, "Reading product data: COM port read error"},
  };
  for (const auto& [answer, fault, attempts, requests, message] : cases) {
    FlytecBench b;
    b.script.answers["$PBRSNP,"] = {answer};
    b.bench.fault = fault;
    b.job.link.attempts = attempts;
    ProductData data;
    EXPECT_LT(ReadProductData(b.job, data), 0) << message;
    EXPECT_EQ(b.recorder.messages, Texts{message});
    EXPECT_EQ(b.script.requests.size(), requests) << message;
    EXPECT_LE(b.Waited_ms(), 200 + 2051.0 * static_cast<double>(requests)) << message;
  }
}

TEST(ProductData, AChangedNameIsAskedForOnceMore) {
  const std::string good = Sentence("PBRSNP,6030,P,01001,3.30");
  const std::string bent = "$PBRSNP,6130" + good.substr(12);
  const std::string other = "$PBRSNP,6230" + good.substr(12);
  const std::tuple<Texts, const char*, size_t> cases[] = {{{bent, good}, "6030", 2},
                                                          {{bent}, "6130", 2},
                                                          {{bent, other, bent}, nullptr, 3},
                                                          {{"$PBRSNP,6130,P,1,2\r\n"}, "6130", 1}};
  for (const auto& [answers, name, requests] : cases) {
    FlytecBench b;
    b.script.answers["$PBRSNP,"] = answers;
    ProductData data;
    ASSERT_EQ(ReadProductData(b.job, data), name != nullptr ? 0 : -1);
    EXPECT_EQ(b.script.requests.size(), requests);
    if (name != nullptr) {
      EXPECT_EQ(data.device_name, name);
    }
  }
}

TEST(ProductData, ALateOrSecondAnswerIsTaken) {
  FlytecBench b;
  const std::string good = b.script.answers["$PBRSNP,"][0];
  b.script.answers["$PBRSNP,"] = {"", "\x13garbage$PBRSNP,60\r\n" + good + "\x11"};
  ProductData data;
  ASSERT_EQ(ReadProductData(b.job, data), 0);
  EXPECT_EQ(b.script.requests.size(), 2U);
  EXPECT_EQ(b.recorder.progress[1], "Requesting product info (14)");
  EXPECT_EQ(data.device_name, "6030");
}

}  // namespace
}  // namespace skyhaul::flytec
