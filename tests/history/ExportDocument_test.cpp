// The examples of the page on exports are what is written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QString>

#include "tests/history/Exported.h"

namespace kestrix::history {
namespace {

using ::testing::HasSubstr;

class ExportDocument : public ::testing::Test {
  protected:
    ExportDocument() {
        storage::RecordData record = storage::testRecord();
        record.recordId = 3;
        record.startTime = "2026-03-04 05:06:07";
        record.endTime = "2026-03-04 ";
        record.dates = "05:06:07";
        record.samples = 2;
        all_ = {
            measure(17, "S_1", "EARTH", "", "18.5Ω,2.5mA", "2026-03-04 05:06:07"),
            measure(18, "S_2", "INSULATION", "VISO=500V,LIMIT=1.0MΩ", "199.9MΩ,528V", "2026-03-04 05:07:42")};
        record_ = {record, measurementsIn(all_), kStamp};
        const std::ifstream file(KESTRIX_SOURCE_DIR "/docs/export.md");
        std::ostringstream text;
        text << file.rdbuf();
        page_ = text.str();
    }

    static storage::MeasureData measure(std::int64_t dataId, const char* name, const char* function,
                                        const char* parameters, const char* result, const char* time) {
        storage::MeasureData measure = measureWith(result, dataId);
        measure.dataName = name;
        measure.function = function;
        measure.parameters = parameters;
        measure.dateTime = time;
        return measure;
    }

    std::vector<storage::MeasureData> all_;
    ExportedRecord record_;
    std::string page_;
};

TEST_F(ExportDocument, ItsTextIsWhatIsWritten) {
    const std::string bytes = written(kTextFormat, record_);
    const QString text = QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.data()),
                                            static_cast<qsizetype>(bytes.size() / 2));
    EXPECT_THAT(page_, HasSubstr("```text\n" + text.toStdString() + "```\n"));
}

TEST_F(ExportDocument, ItsCsvIsWhatIsWritten) {
    std::string csv = written(kCsvFormat, record_);
    std::erase(csv, '\r');
    EXPECT_THAT(page_, HasSubstr("```text\n" + csv + "```\n"));
}

TEST_F(ExportDocument, ItsJsonIsWhatIsWritten) {
    EXPECT_THAT(page_, HasSubstr("```json\n" + written(kJsonFormat, record_) + "```\n"));
}

}  // namespace
}  // namespace kestrix::history
