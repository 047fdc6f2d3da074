#include "history/CsvExport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "history/ExportColumns.h"
#include "tests/history/Exported.h"
#include "tests/history/OtherReaders.h"

namespace kestrix::history {
namespace {

using nlohmann::json;

const std::string kHeader =
    "recordId,projectname,company,addres,operators,startTime,endTime,dates,serial,samples,dataId,dataName,"
    "function,parameters,result,dateTime,comments,recordName\r\n";

// The rows as Python's csv module reads them: an object for each, under the columns' names.
json rowsOf(const ExportedRecord& record) {
    return json::parse(
        readByPython("import csv, json, sys\n"
                     "csv.field_size_limit(1 << 30)\n"
                     "with open(sys.argv[1], newline='', encoding='utf-8') as file:\n"
                     "    print(json.dumps(list(csv.DictReader(file, strict=True))))\n",
                     written(kCsvFormat, record)));
}

TEST(CsvExport, IsATableWithTheRecordsFieldsInFront) {
    std::vector<storage::MeasureData> all{measureWith("18.5Ω", 17), measureWith("1,5", 18)};
    const std::string record =
        "3,House 7,Volt & Sons,7 Main Street,Jo,2024-06-03T09:08:07,\"2024-06-03 \",09:08:07,SN 1,3,";
    EXPECT_EQ(written(kCsvFormat, exportOf(all)),
              kHeader + record + "17,S_1,Low Ohm,200mA,18.5Ω,2024-06-03T09:08:07,\" \",House 7\r\n" + record +
                  "18,S_1,Low Ohm,200mA,\"1,5\",2024-06-03T09:08:07,\" \",House 7\r\n");
}

TEST(CsvExport, ARecordWithoutMeasurementsIsARowWithNothingInTheirColumns) {
    const auto none = measurements(0);
    ExportedRecord record = exportOf(none);
    record.record->recordId = 3;
    EXPECT_EQ(
        written(kCsvFormat, record),
        kHeader +
            "3,House 7,Volt & Sons,7 Main Street,Jo,2024-06-03T09:08:07,\"2024-06-03 \",09:08:07,SN 1,3,"
            ",,,,,,,\r\n");
}

TEST(CsvExport, MeasurementsWithoutARecordHaveNothingInItsColumns) {
    const std::vector<storage::MeasureData> all{measureWith("18.5Ω")};
    EXPECT_EQ(written(kCsvFormat, {std::nullopt, measurementsIn(all), kStamp}),
              kHeader + "3,,,,,,,,,,17,S_1,Low Ohm,200mA,18.5Ω,2024-06-03T09:08:07,\" \",House 7\r\n");
    const auto none = measurements(0);
    EXPECT_EQ(written(kCsvFormat, {std::nullopt, measurementsIn(none), kStamp}), kHeader);
}

TEST(CsvExport, EveryValueComesBackFromAnotherReader) {
    std::vector<storage::MeasureData> all;
    const std::vector<std::string> texts{"plain",
                                         "",
                                         " ",
                                         " both ends ",
                                         "\"",
                                         "\"\"",
                                         "say \"hello\"",
                                         ",",
                                         ",,",
                                         "a,b",
                                         "first\nsecond",
                                         "first\r\nsecond",
                                         "\r",
                                         "\n",
                                         "\t",
                                         "=1+1",
                                         "+1",
                                         "-1",
                                         "@SUM(A1)",
                                         "\t=1+1",
                                         "'",
                                         "; semicolons;",
                                         "%@ %d %n %%",
                                         "Ω ° µ",
                                         "中文，测试",
                                         "😀 👨‍👩‍👧",
                                         "مرحبا, \"שלום\"",
                                         "\uFEFFmark",
                                         std::string(100 * 1024, ',')};
    for (const std::string& text : texts) {
        storage::MeasureData& measure = all.emplace_back(measureWith(text));
        measure.dataName = text;
        measure.comments = text;
    }
    ExportedRecord record = exportOf(all);
    record.record->projectName = "House, \"7\"\r\n=1";
    const json rows = rowsOf(record);
    ASSERT_EQ(rows.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        for (const char* column : {"result", "dataName", "comments"})
            EXPECT_TRUE(rows[i][column] == texts[i]) << column << ": " << texts[i].substr(0, 40);
        EXPECT_EQ(rows[i]["projectname"], record.record->projectName);
        EXPECT_EQ(rows[i]["dataId"], "17");
        EXPECT_EQ(rows[i]["samples"], "3");
        EXPECT_EQ(rows[i]["recordName"], "House 7");
    }
}

TEST(CsvExport, OnlyTimesAreIsoTimes) {
    std::vector<storage::MeasureData> all{measureWith("2024-06-03 09:08:07")};
    all[0].dateTime = "(null)";
    EXPECT_EQ(rowsOf(exportOf(all))[0]["result"], "2024-06-03 09:08:07");
    EXPECT_EQ(rowsOf(exportOf(all))[0]["dateTime"], "(null)");
    EXPECT_EQ(rowsOf(exportOf(all))[0]["startTime"], "2024-06-03T09:08:07");
}

TEST(CsvExport, BytesThatAreNoUtf8AreReplaced) {
    const std::vector<storage::MeasureData> all{
        measureWith("a\xff"
                    "b")};
    EXPECT_EQ(rowsOf(exportOf(all))[0]["result"], "a\uFFFDb");
}

TEST(IsoTime, ATimeAsItIsStoredHasATInPlaceOfTheBlank) {
    EXPECT_EQ(isoTime("2026-03-04 05:06:07"), "2026-03-04T05:06:07");
    EXPECT_EQ(isoTime("0001-12-31 23:59:60"), "0001-12-31T23:59:60") << "with a leap second";
}

TEST(IsoTime, AnyOtherTextIsLeftAsItIs) {
    for (const char* text :
         {"", " ", "(null)", "2026-03-04", "2026-03-04 05:06", "2026-03-04 05:06:07 ", "2026-03-04  5:06:07",
          "2026-13-04 05:06:07", "2026-00-04 05:06:07", "2026-03-32 05:06:07", "2026-03-04 24:06:07",
          "2026-03-04 05:60:07", "2026-03-04 05:06:61", "20x6-03-04 05:06:07", "2026/03/04 05:06:07",
          "2026-03-04T05:06:07"})
        EXPECT_EQ(isoTime(text), text);
}

}  // namespace
}  // namespace kestrix::history
