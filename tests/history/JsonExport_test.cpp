#include "history/JsonExport.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/history/Exported.h"
#include "tests/history/OtherReaders.h"

namespace kestrix::history {
namespace {

using nlohmann::json;

// As Python's json module reads it, which is stricter and another one.
json objectOf(const ExportedRecord& record) {
    return json::parse(
        readByPython("import json, sys\n"
                     "with open(sys.argv[1], encoding='utf-8') as file:\n"
                     "    print(json.dumps(json.load(file)))\n",
                     written(kJsonFormat, record)));
}

TEST(JsonExport, IsTheRecordWithItsMeasurementsALineEach) {
    const std::vector<storage::MeasureData> all{measureWith("18.5Ω", 17), measureWith("1,5", 18)};
    ExportedRecord record = exportOf(all);
    record.record->recordId = 3;
    EXPECT_EQ(
        written(kJsonFormat, record),
        "{\"dataId\":3,\"projectname\":\"House 7\",\"company\":\"Volt & Sons\",\"addres\":\"7 Main Street\","
        "\"operators\":\"Jo\",\"startTime\":\"2024-06-03T09:08:07\",\"endTime\":\"2024-06-03 \","
        "\"dates\":\"09:08:07\",\"serial\":\"SN 1\",\"samples\":3,\n\"measurements\":[\n"
        "{\"recordId\":3,\"dataId\":17,\"dataName\":\"S_1\",\"function\":\"Low "
        "Ohm\",\"parameters\":\"200mA\","
        "\"result\":\"18.5Ω\",\"dateTime\":\"2024-06-03T09:08:07\",\"comments\":\" \",\"recordName\":\"House "
        "7\",\"evidence\":null},\n"
        "{\"recordId\":3,\"dataId\":18,\"dataName\":\"S_1\",\"function\":\"Low "
        "Ohm\",\"parameters\":\"200mA\","
        "\"result\":\"1,5\",\"dateTime\":\"2024-06-03T09:08:07\",\"comments\":\" \",\"recordName\":\"House "
        "7\",\"evidence\":null}\n"
        "]}\n");
}

TEST(JsonExport, WithoutARecordThereIsOnlyTheArray) {
    const auto none = measurements(0);
    EXPECT_EQ(objectOf({std::nullopt, measurementsIn(none), kStamp}), json::parse("{\"measurements\":[]}"));
    EXPECT_EQ(objectOf(exportOf(none))["measurements"], json::array());
}

TEST(JsonExport, EveryValueComesBackFromAnotherReader) {
    std::vector<storage::MeasureData> all;
    const std::vector<std::string> texts{"plain",
                                         "",
                                         " ",
                                         "\"",
                                         "\\",
                                         "\\\"",
                                         "first\nsecond\r\n\t",
                                         "</script>",
                                         std::string("nul\0inside", 10),
                                         "\x01\x1f\x7f",
                                         "%@ %d %n",
                                         "Ω ° µ",
                                         "中文",
                                         "😀 👨‍👩‍👧",
                                         "مرحبا שלום",
                                         "\uFEFF\u2028\u2029",
                                         std::string(100 * 1024, '"')};
    for (const std::string& text : texts) all.push_back(measureWith(text));
    const json measured = objectOf(exportOf(all))["measurements"];
    ASSERT_EQ(measured.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_TRUE(measured[i]["result"] == texts[i]) << texts[i].substr(0, 40);
}

TEST(JsonExport, BytesThatAreNoUtf8AreReplaced) {
    const std::vector<storage::MeasureData> all{
        measureWith("a\xff"
                    "b")};
    EXPECT_EQ(objectOf(exportOf(all))["measurements"][0]["result"], "a\uFFFDb");
}

TEST(JsonExport, NumbersBeyond32BitsAreExact) {
    const std::vector<storage::MeasureData> all{measureWith("", 9'007'199'254'740'993)};
    EXPECT_EQ(objectOf(exportOf(all))["measurements"][0]["dataId"], 9'007'199'254'740'993);
}

}  // namespace
}  // namespace kestrix::history
