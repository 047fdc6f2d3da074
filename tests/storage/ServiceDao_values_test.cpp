// What a value holds comes back unchanged.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <utility>

#include "storage/ServiceDao.h"
#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {
namespace {

using namespace std::string_literals;

constexpr std::array kMeasureTexts{&MeasureData::dataName,  &MeasureData::function, &MeasureData::parameters,
                                   &MeasureData::result,    &MeasureData::dateTime, &MeasureData::comments,
                                   &MeasureData::recordName};
constexpr std::array kRecordTexts{&RecordData::projectName, &RecordData::company,   &RecordData::operators,
                                  &RecordData::addres,      &RecordData::startTime, &RecordData::endTime,
                                  &RecordData::dates,       &RecordData::serial};

std::vector<std::string> hostileTexts() {
    std::vector<std::string> all{
        "",
        " ",
        "  leading and trailing  ",
        "Smith's",
        "'",
        "''",
        "'''",
        "'); DROP TABLE measurefrom; --",
        "\"double\" `back` [square]",
        "100 % of %@, %d, %s, %q, %n, %%, %",
        "back\\slash \\' \\n \\",
        "line\nline\r\nline\ttab",
        "-- comment /* comment */ ;",
        "?1 :name @name $name",
        "0.12 MΩ \u2265 \u00b5A \u00b0",
        "🔌⚡👩‍🔧🇩🇪",
        "مقاومة العزل",
        "בדיקת בידוד \u202eabc\u202c",
        "e\u0301 and \u00e9 stay apart",
        "漢字かな交じり文",
        "\ufeffbyte order mark",
        "\x01\x02\x1b[31m\x7f",
        "not UTF-8: \xff\xfe\xc3\x28 \xed\xa0\x80",
        "a NUL \0 inside"s,
        "\0"s,
        "'\0'\0"s,
        "12",
        "012.50",
        "1e3",
        "NULL",
        "x'00'",
        std::string(102400, 'x'),
        std::string(102400, '\''),
        std::string(5'000'000, '%'),
    };
    std::string emoji;
    for (int i = 0; i < 25 * 1024; ++i) emoji += "🔌";
    all.push_back(emoji);
    return all;
}

class Values : public QuickStorageFixture {
  protected:
    ServiceDao dao_ = daoWithTables();
    std::int64_t measures_ = 0;
    std::int64_t records_ = 0;

    void expectUnchanged(MeasureData measure) {
        dao_.addMeasureForm(measure);
        measure.dataId = ++measures_;
        EXPECT_TRUE(ServiceDao(folder_).findMeasureofDataId(measures_) == std::vector{measure})
            << measure.dataName.substr(0, 200);
    }
    void expectUnchanged(RecordData record) {
        dao_.addRecordForm(record);
        record.recordId = ++records_;
        EXPECT_TRUE(ServiceDao(folder_).findRecordofId(records_) == std::vector{record})
            << record.company.substr(0, 200);
    }
};

TEST_F(Values, ASingleQuoteInACompanyIsStoredAsItIs) {
    RecordData record = testRecord();
    record.company = "Smith's";
    dao_.addRecordForm(record);
    EXPECT_EQ(dao_.findRecordForm().at(0).company, "Smith's");
}

TEST_F(Values, AnyTextInEveryFieldOfAMeasurementComesBack) {
    for (const std::string& text : hostileTexts()) {
        MeasureData measure;
        for (const auto field : kMeasureTexts) measure.*field = text;
        expectUnchanged(measure);
    }
}

TEST_F(Values, AnyTextInEveryFieldOfARecordComesBack) {
    for (const std::string& text : hostileTexts()) {
        RecordData record;
        for (const auto field : kRecordTexts) record.*field = text;
        expectUnchanged(record);
    }
}

TEST_F(Values, AnyRecordNameIsFiled) {
    dao_.addMeasureForm(measurement(1));
    for (const std::string& text : hostileTexts()) {
        dao_.updateMeasureForm(text, 3, 1);
        EXPECT_TRUE(dao_.findMeasureofId(3).at(0).recordName == text) << text.substr(0, 200);
        EXPECT_EQ(dao_.findMeasureForm(false).size(), text.empty() ? 1U : 0U);
    }
}

// Fields of random bytes; half of them those that mean something in SQL.
TEST_F(Values, RandomBytesComeBack) {
    std::mt19937 random(7);  // NOLINT(cert-msc51-cpp)
    const std::string special = "'\"%\\;-\0\n @d"s;
    const auto text = [&] {
        std::string bytes(random() % 40, ' ');
        for (char& byte : bytes)
            byte = random() % 2 == 0 ? special[random() % special.size()] : static_cast<char>(random());
        return bytes;
    };
    for (int round = 0; round < 100; ++round) {
        MeasureData measure;
        measure.recordId = static_cast<std::int32_t>(random());
        for (const auto field : kMeasureTexts) measure.*field = text();
        expectUnchanged(measure);
        RecordData record;
        record.samples = static_cast<std::int32_t>(random());
        for (const auto field : kRecordTexts) record.*field = text();
        expectUnchanged(record);
    }
}

TEST_F(Values, ColumnWidthsCutNothing) {
    MeasureData measure = measurement(1);
    measure.result = std::string(31, 'r');
    expectUnchanged(measure);
    RecordData record = testRecord();
    record.serial = std::string(21, 's');
    expectUnchanged(record);
}

TEST_F(Values, NumbersAreKeptInThirtyTwoBits) {
    for (const auto& [given, kept] : {std::pair<std::int64_t, std::int64_t>{0, 0},
                                      {-1, -1},
                                      {2147483647, 2147483647},
                                      {2147483648, -2147483648},
                                      {4294967301, 5}}) {
        MeasureData measure;
        measure.recordId = given;
        dao_.addMeasureForm(measure);
        EXPECT_EQ(dao_.findMeasureofDataId(++measures_).at(0).recordId, kept);
        RecordData record;
        record.samples = given;
        dao_.addRecordForm(record);
        EXPECT_EQ(dao_.findRecordofId(++records_).at(0).samples, kept);
    }
}

TEST_F(Values, NumbersAreStoredAsNumbers) {
    MeasureData measure;
    measure.recordId = 7;
    dao_.addMeasureForm(measure);
    dao_.addRecordForm(testRecord());
    Connection file(path_);
    EXPECT_EQ(file.value("SELECT typeof(recordId) FROM measurefrom"), "integer");
    EXPECT_EQ(file.value("SELECT typeof(samples) FROM recordfrom"), "integer");
}

}  // namespace
}  // namespace kestrix::storage
