#include "history/TextExport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QString>

#include <cstring>

#include "storage/TestRecords.h"
#include "tests/history/Exported.h"

namespace kestrix::history {
namespace {

using ::testing::ElementsAre;

// The characters of a file, as they are in the machine's byte order; the byte-order mark is among them.
std::u16string unitsOf(const std::string& bytes) {
    EXPECT_EQ(bytes.size() % 2, 0U);
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), bytes.size());
    return units;
}

// As it is: other ways to a QString take the mark away.
QString characters(const std::u16string& units) {
    return QString(reinterpret_cast<const QChar*>(units.data()), static_cast<qsizetype>(units.size()));
}

// The text of the file behind its byte-order mark, as UTF-8.
std::string textOf(const ExportedRecord& record) {
    const std::u16string units = unitsOf(written(kTextFormat, record));
    EXPECT_EQ(units.substr(0, 1), u"\uFEFF");
    return characters(units).mid(1).toStdString();
}

std::vector<std::string> linesOf(const ExportedRecord& record) {
    std::vector<std::string> lines;
    const std::string text = textOf(record);
    EXPECT_TRUE(text.ends_with('\n'));
    std::string line;
    for (std::istringstream stream(text); std::getline(stream, line);) lines.push_back(line);
    return lines;
}

constexpr const char* kRecordTitleLine =
    "Name          Company          Address          Operator          Date          "
    "Serial_Number          Samples";
constexpr const char* kMeasureTitleLine =
    "NO          Data Name          Function          Parameters          Result          Date Time";

// The result in the file of a measurement with this one.
std::string exported(const std::string& result) {
    const std::vector<storage::MeasureData> all{measureWith(result)};
    const std::string text = textOf({std::nullopt, measurementsIn(all), kStamp});
    const std::string before = std::string(kMeasureTitleLine) + "\n17     S_1     Low Ohm     200mA     ";
    const std::string behind = "     2024-06-03 09:08:07\n";
    EXPECT_TRUE(text.starts_with(before) && text.ends_with(behind)) << text;
    return text.substr(before.size(), text.size() - before.size() - behind.size());
}

TEST(TextExport, LinesAndSeparatorsAreAsTold) {
    storage::RecordData record;
    record.recordId = 3;
    record.projectName = "Plant A";
    record.company = "---";
    record.addres = "7 Main Street";
    record.operators = "Jo";
    record.startTime = "2015-03-02 14:05:33";
    record.serial = "SN 1";
    record.samples = 2;
    std::vector<storage::MeasureData> all{measureWith("18.5Ω,2.5mA", 17), measureWith("199.9MΩ", 18)};
    all[0].comments = "is not exported";
    EXPECT_THAT(linesOf({record, measurementsIn(all), kStamp}),
                ElementsAre(kRecordTitleLine,
                            "Plant A     ---     7 Main Street     Jo     2015-03-02 14:05:33     SN 1     2",
                            kMeasureTitleLine,
                            "17     S_1     Low Ohm     200mA     18.5Ω,2.5mA     2024-06-03 09:08:07",
                            "18     S_1     Low Ohm     200mA     199.9MΩ     2024-06-03 09:08:07"));
}

TEST(TextExport, ItIsUtf16InTheMachinesOrderWithItsMarkAndLineFeeds) {
    const std::vector<storage::MeasureData> none;
    const std::u16string units = unitsOf(written(kTextFormat, {std::nullopt, measurementsIn(none), kStamp}));
    EXPECT_EQ(characters(units),
              QStringLiteral("\uFEFF") + QLatin1String(kMeasureTitleLine) + QLatin1Char('\n'));
}

TEST(TextExport, WithoutARecordItBeginsWithTheTitlesOfTheMeasurements) {
    const auto all = measurements(1);
    EXPECT_THAT(linesOf({std::nullopt, measurementsIn(all), kStamp}),
                ElementsAre(kMeasureTitleLine, ::testing::StartsWith("1     S_1     ")));
}

TEST(TextExport, ARecordWithoutMeasurementsHasThreeLines) {
    const auto none = measurements(0);
    EXPECT_THAT(linesOf(exportOf(none)),
                ElementsAre(kRecordTitleLine, ::testing::StartsWith("House 7     Volt & Sons     "),
                            kMeasureTitleLine));
}

TEST(TextExport, FieldsLeftEmptyInTheFormAreDashesAndTheNameASingleBlank) {
    const auto none = measurements(0);
    storage::RecordData typed;
    typed.samples = 1;
    const storage::RecordData saved = storage::completed(typed, "2026-03-04 05:06:07");
    EXPECT_EQ(linesOf({saved, measurementsIn(none), kStamp}).at(1),
              "      ---     ---     ---     2026-03-04 05:06:07     ---     1");
}

TEST(TextExport, AValueWithThePlaceOfTheTimeStampGetsIt) {
    EXPECT_EQ(exported("%@"), kStamp);
    EXPECT_EQ(exported("at %@, 5%%"), std::string("at ") + kStamp + ", 5%");
}

TEST(TextExport, OtherDirectivesInAValueAreDropped) {
    EXPECT_EQ(exported("%n"), "");
    EXPECT_EQ(exported("a%s%s%sb"), "ab");
    EXPECT_EQ(exported("%5.3d|%1$@"), "|");
}

TEST(TextExport, APercentSignAtTheEndOfAValueLeavesTheNextOneAsItIs) {
    EXPECT_EQ(exported("99%"), "99%");
    EXPECT_EQ(exported("99%\n"), "99%\n");
}

TEST(TextExport, ThePatternPassAlsoConcernsTheRecord) {
    const auto none = measurements(0);
    ExportedRecord record = exportOf(none);
    record.record->projectName = "%@";
    record.record->serial = "%d%";
    EXPECT_EQ(linesOf(record).at(1),
              std::string(kStamp) +
                  "     Volt & Sons     7 Main Street     Jo     2024-06-03 09:08:07     "
                  "%     3");
}

TEST(TextExport, AnyTextStaysAsItIs) {
    for (const std::string& text :
         {std::string("\"quoted\" 'single' back\\slash"), std::string("first\nsecond\r\nthird\t."),
          std::string("😀 👨‍👩‍👧 é"), std::string("مرحبا שלום"), std::string("中文，测试"),
          std::string("a,b;c"), std::string("\uFEFFmark"), std::string("nul\0inside", 10),
          std::string(100 * 1024, 'x')})
        EXPECT_EQ(exported(text), text);
}

TEST(TextExport, AMarkAtTheBeginningOfALineIsKept) {
    const auto none = measurements(0);
    ExportedRecord record = exportOf(none);
    record.record->projectName = "\uFEFFHouse";
    EXPECT_TRUE(linesOf(record).at(1).starts_with("\uFEFFHouse     "));
}

TEST(TextExport, BytesThatAreNoUtf8AreReplaced) {
    EXPECT_EQ(exported("a\xff"
                       "b"),
              "a\uFFFDb");
    for (const char* text : {"cut off \xe4\xb8", "\xed\xa0\x80", "\xc0\xaf", "\xf8\x88\x80\x80\x80"})
        EXPECT_EQ(exported(text), QString::fromUtf8(text).toStdString());
}

// Longer and longer, so that every place in a piece is some line's end.
TEST(TextExport, LinesOfEveryLengthPassThePiecesWhole) {
    std::vector<storage::MeasureData> all;
    std::string expected = std::string(kMeasureTitleLine) + '\n';
    for (int i = 0; i < 700; ++i) {
        std::string result(static_cast<std::size_t>(i), 'r');
        result += "中😀";
        expected +=
            std::to_string(i) + "     S_1     Low Ohm     200mA     " + result + "     2024-06-03 09:08:07\n";
        all.push_back(measureWith(result, i));
    }
    EXPECT_TRUE(textOf({std::nullopt, measurementsIn(all), kStamp}) == expected);
}

TEST(TextExport, ASinkThatFailsEndsItAtOnceWithItsReason) {
    const auto all = measurements(20000);
    int asked = 0;
    int visited = 0;
    ExportedRecord record = exportOf(all);
    record.measurements = [&](const MeasureVisitor& visit) {
        return measurementsIn(all)([&](const storage::MeasureData& measure) {
            ++visited;
            return visit(measure);
        });
    };
    const storage::Outcome outcome = writeText(record, [&asked](std::string_view) {
        ++asked;
        return storage::Outcome{false, "the disk is full", 0};
    });
    EXPECT_EQ(outcome, (storage::Outcome{false, "the disk is full", 0}));
    EXPECT_EQ(asked, 1);
    EXPECT_LT(visited, 2000);
}

TEST(TextExport, MeasurementsThatCannotBeReadAreToldAsTheReason) {
    ExportedRecord record{storage::testRecord(), nullptr, kStamp};
    record.measurements = [](const MeasureVisitor&) {
        return storage::Outcome{false, "another program holds the database", 0};
    };
    const storage::Outcome outcome = writeText(record, [](std::string_view) { return storage::Outcome{}; });
    EXPECT_EQ(outcome.reason, "another program holds the database");
}

}  // namespace
}  // namespace kestrix::history
