#include "protocols/flytec/product_data.h"

#include "protocols/flytec/models.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

TEST(ProductData, TextsAreNormalisedAndCut) {
  const std::tuple<const char*, int, Texts> cases[] = {
      {"$PBRSNP,5030,JIMI HENDRIX     ,01001,2.00*hh",
       0,
       {"5030", "JIMI HENDRIX", "01001", "2.00"}},
      {"$PBRSNP, 6030 ,  A   B  ,  01 ,3.30", 0, {"6030", "A B", "01", "3.30"}},
      {"$PBRSNP,6030,,01001,3.30*00", 0, {"6030", "", "01001", "3.30"}},
      {"$PBRSNP,123456789012345 7,P,12345678,1234567,x*00",
       0,
       {"123456789012345", "P", "1234567", "123456"}},
      {"$PBRSNP,6030,P,01001", -1, {}},
      {"$PBRTL,6030,P,01001,3.30", -1, {}},
      {"", -1, {}},
  };
  for (const auto& [line, result, texts] : cases) {
    ProductData data;
    EXPECT_EQ(ParseProductData(line, data), result) << line;
    if (result != 0) continue;
    EXPECT_EQ((Texts{data.device_name, data.pilot_name, data.serial_number, data.software}), texts);
  }
}

TEST(ProductData, ModelsAndTheTrackListGate) {
  const struct {
    const char *device, *model, *last_without, *first_with;  // null: there is none
  } cases[] = {
      {"5020", "5020", "1.13", "1.14"},
      {"5030", "5030", "2.19", "2.2"},
      {"COMPEO", "Compeo", "2.19", "3.00"},
      {"COMPEO+", "Compeo+", nullptr, "0.01"},
      {"COMPETINO", "Competino", "1.13", "1.13a"},
      {"COMPETINO+", "Competino+", nullptr, ""},
      {"GALILEO", "Galileo", nullptr, "1.00"},
      {"6020", "6020", nullptr, "1.00"},
      {"6030", "6030", nullptr, "1.00"},
      {"IQ 6030", "6030", "9.99", nullptr},
      {"7000", nullptr, "9.99", nullptr},
  };
  for (const auto& c : cases) {
    const Model* model = FindModel(c.device);
    EXPECT_STREQ(model == nullptr ? nullptr : model->model_name, c.model) << c.device;
    EXPECT_FALSE(c.last_without != nullptr && HasTrackList(c.device, c.last_without)) << c.device;
    EXPECT_TRUE(c.first_with == nullptr || HasTrackList(c.device, c.first_with)) << c.device;
  }
}

TEST(ProductData, IsReadAndShown) {
  FlytecBench b("COMPEO+", "3.15");
  ProductData data;
  const uint64_t start_ns = b.bench.now_ns;
  ASSERT_EQ(ReadProductData(b.job, data), 0);
  EXPECT_EQ(b.bench.settings.baud, 57600U);
  EXPECT_TRUE(b.bench.settings.xon_xoff);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n");
  EXPECT_EQ(b.job.device_name, "COMPEO+");
  EXPECT_EQ(b.job.model_name, "Compeo+");
  EXPECT_EQ(b.job.description, "COMPEO+ SN01001 SW3.15");
  EXPECT_EQ(b.job.owner, "Compeo+: JIMI HENDRIX");
  EXPECT_EQ(b.recorder.statuses, Texts{"Product data read"});
  EXPECT_EQ(b.recorder.progress,
            (Texts{"Requesting product info (15)", "COMPEO+, SN01001, SW3.15"}));
  EXPECT_GE(Elapsed_ms(b.bench, start_ns), 1200U) << "the instrument needs a second";
}

TEST(ProductData, EachFailureHasItsMessage) {
  const struct {
    std::string answer;
    Fault fault;
    uint32_t attempts;
    size_t requests;
    const char* message;
  } cases[] = {
      {"", {}, 30, 15, "Get GPS product data: No valid response from GPS"},
      {"", {}, 3, 2, "Get GPS product data: No valid response from GPS"},
      {Sentence("PBRTL,0"), {}, 2, 1, "Get GPS product data: No valid response from GPS"},
      {Sentence("PBRSNP,6030,  ,01001,3.30"),
       {},
       30,
       1,
       "Get GPS product data: Bad/missing user name"},
      {"", FailWrite(1), 30, 1, "Requesting GPS product data: COM port write error"},
      {"$PBRSNP,60", Unplug(5), 30, 1, "Reading product data: COM port read error"},
  };
  for (const auto& c : cases) {
    FlytecBench b;
    b.script.answers["$PBRSNP,"] = {c.answer};
    b.bench.fault = c.fault;
    b.job.link.attempts = c.attempts;
    ProductData data;
    const uint64_t start_ns = b.bench.now_ns;
    EXPECT_LT(ReadProductData(b.job, data), 0) << c.message;
    EXPECT_EQ(b.recorder.messages, Texts{c.message});
    EXPECT_EQ(b.script.requests.size(), c.requests) << c.message;
    EXPECT_LE(Elapsed_ms(b.bench, start_ns), 200 + c.requests * 2051) << c.message;
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

TEST(ProductData, APortIsFoundAutomatically) {
  FlytecBench b;
  b.job.link.automatic = true;
  b.job.link.candidates = {"port9", "port1"};
  ProductData data;
  EXPECT_EQ(ReadProductData(b.job, data), 0);
  EXPECT_EQ(b.bench.open_port, "port1");
  EXPECT_EQ(data.device_name, "6030");
}

}  // namespace
}  // namespace skyhaul::flytec
