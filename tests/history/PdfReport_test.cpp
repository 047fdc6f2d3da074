#include "history/PdfReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "history/ExportLines.h"
#include "history/ReportLayout.h"
#include "tests/history/Exported.h"
#include "tests/history/NearlyFullDisk.h"
#include "tests/history/OtherReaders.h"
#include "tests/history/ReportReader.h"
#include "tests/support/LogExpectations.h"

// The file as other programs read it: its page, its texts and their places, and its picture.
namespace kestrix::history {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// "612 x 792", of the only page.
std::string pageSize(const std::string& pdf) {
    const std::string info = pdfInfoOf(pdf);
    EXPECT_TRUE(std::regex_search(info, std::regex("Pages: +1\n"))) << info;
    std::smatch size;
    EXPECT_TRUE(std::regex_search(info, size, std::regex("Page size: +([0-9.]+ x [0-9.]+) pts"))) << info;
    return size[1];
}

// A drawn page, in grey, two pixels a point.
class Picture {
  public:
    static constexpr int kScale = 2;

    explicit Picture(const std::string& pdf)
        : bytes_(outputOf(QStringLiteral("pdftoppm"),
                          {QStringLiteral("-gray"), QStringLiteral("-r"), QString::number(72 * kScale),
                           QStringLiteral("FILE")},
                          pdf)) {
        std::istringstream header(bytes_);
        std::string kind;
        int most = 0;
        header >> kind >> width >> height >> most;
        EXPECT_EQ(kind, "P5");
        EXPECT_EQ(bytes_.size(), pixels() + static_cast<std::size_t>(width * height));
    }

    // Whether anything is drawn in a box, in points.
    bool hasInk(double x, double y, double right, double bottom) const {
        for (int row = at(y); row < at(bottom); ++row) {
            for (int column = at(x); column < at(right); ++column) {
                if (isDark(column, row)) return true;
            }
        }
        return false;
    }
    // Whether a line of one point is dark all along.
    bool hasLine(double x, double y, double right, double bottom) const {
        for (int row = at(y); row <= at(bottom); ++row) {
            for (int column = at(x); column <= at(right); ++column) {
                if (!isDark(column, row)) return false;
            }
        }
        return true;
    }
    void erase(double x, double y, double right, double bottom) {
        for (int row = std::max(at(y), 0); row < std::min(at(bottom), height); ++row) {
            for (int column = std::max(at(x), 0); column < std::min(at(right), width); ++column)
                bytes_[pixel(column, row)] = '\xff';
        }
    }

    int width = 0;
    int height = 0;

  private:
    static int at(double points) { return static_cast<int>(std::lround(points * kScale)); }
    std::size_t pixels() const {
        return bytes_.size() - static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    std::size_t pixel(int column, int row) const {
        return bytes_.size() - static_cast<std::size_t>((height - row) * width - column);
    }
    bool isDark(int column, int row) const {
        return static_cast<unsigned char>(bytes_[pixel(column, row)]) < 128;
    }

    std::string bytes_;
};

ReportLines linesOf(const ExportedRecord& record, const std::vector<storage::MeasureData>& all) {
    ReportLines lines;
    if (record.record) {
        lines.recordTitle = RecordTitle;
        lines.recordContent = RecordContent(*record.record);
    }
    lines.measureTitle = MeasureTitle;
    for (const storage::MeasureData& measure : all) appendMeasureLine(lines.rows.emplace_back(), measure);
    return lines;
}

std::string firstWord(const std::string& text) {
    return text.substr(0, text.find(' '));
}

TEST(PdfReport, ItIsOnePageOfExactlyItsSize) {
    for (const auto& [rows, size] : std::map<std::size_t, std::string>{{0, "612 x 792"},
                                                                       {1, "612 x 792"},
                                                                       {19, "612 x 792"},
                                                                       {20, "612 x 520"},
                                                                       {21, "612 x 540"},
                                                                       {33, "612 x 780"},
                                                                       {34, "612 x 800"},
                                                                       {1000, "612 x 20120"}}) {
        const auto all = measurements(rows);
        EXPECT_EQ(pageSize(written(kPdfFormat, exportOf(all))), size) << rows;
    }
}

TEST(PdfReport, EveryTextStandsWhereTheLayoutHasIt) {
    auto all = measurements(21);
    all[3].result = std::string(100, 'x') + " " + std::string(60, 'y');
    all[4].parameters = std::string(150, 'p');
    const ExportedRecord record = exportOf(all);
    const ReportPage page = layOutReport(linesOf(record, all));
    const std::vector<Word> words = wordsOf(written(kPdfFormat, record));
    ASSERT_EQ(page.texts.size(), 3U + 21 + 2);
    for (const ReportText& text : page.texts) {
        const auto found = std::find_if(words.begin(), words.end(), [&text](const Word& word) {
            return std::abs(word.y - text.y) < 0.3 && std::abs(word.x - text.x) < 0.3;
        });
        ASSERT_NE(found, words.end()) << text.y << " " << text.text;
        EXPECT_EQ(found->text, firstWord(text.text));
        EXPECT_NEAR(found->height, text.size * 1.117, 0.1) << "ascent and descent of Liberation Sans";
    }
}

TEST(PdfReport, ARecordWithoutMeasurementsIsTwoTitlesAndTheRecordLine) {
    const auto none = measurements(0);
    const std::vector<Word> words = wordsOf(written(kPdfFormat, exportOf(none)));
    EXPECT_EQ(lineAt(words, 26), "Name Company Address Operator Date Serial_Number Samples");
    EXPECT_EQ(lineAt(words, 46), "House 7 Volt & Sons 7 Main Street Jo 2024-06-03 09:08:07 SN 1 3");
    EXPECT_EQ(lineAt(words, 66), "NO Data Name Function Parameters Result Date Time");
    EXPECT_EQ(words.size(), 7U + 13 + 9);
}

TEST(PdfReport, BorderRulesAndTextsAreDrawnAndNothingElse) {
    auto all = measurements(3);
    all[1].result = std::string(180, 'r');
    const ExportedRecord record = exportOf(all);
    const ReportPage page = layOutReport(linesOf(record, all));
    Picture picture(written(kPdfFormat, record));
    ASSERT_EQ(picture.width, 612 * Picture::kScale);
    ASSERT_EQ(picture.height, 792 * Picture::kScale);

    // One point thick about their places: half a point to either side.
    for (const double y : page.rules) EXPECT_TRUE(picture.hasLine(20.5, y - 0.5, 591, y)) << y;
    EXPECT_TRUE(picture.hasLine(20, 19.5, 591, 20)) << "top";
    EXPECT_TRUE(picture.hasLine(20, 771.5, 591, 772)) << "bottom";
    EXPECT_TRUE(picture.hasLine(19.5, 20, 20, 771)) << "left";
    EXPECT_TRUE(picture.hasLine(591.5, 20, 592, 771)) << "right";
    for (const ReportText& text : page.texts)
        EXPECT_TRUE(picture.hasInk(text.x, text.y, text.x + 20, text.y + text.size * 1.2)) << text.text;

    for (const double y : page.rules) picture.erase(19, y - 1, 593, y + 1);
    picture.erase(19, 19, 593, 21);
    picture.erase(19, 771, 593, 773);
    picture.erase(19, 19, 21, 773);
    picture.erase(591, 19, 593, 773);
    for (const ReportText& text : page.texts) picture.erase(text.x, text.y, 612, text.y + text.size * 1.2);
    EXPECT_FALSE(picture.hasInk(0, 0, 612, 792));
}

TEST(PdfReport, TheSignsOfElectricalTextsAndChineseAreDrawnAndFound) {
    for (const std::string sign : {"Ω", "°", "µ", "中文", "试验报告", "±", "≥", "é"}) {
        const std::vector<storage::MeasureData> all{measureWith(sign)};
        const std::string pdf = written(kPdfFormat, exportOf(all));
        EXPECT_THAT(textOf(pdf), HasSubstr(sign));
        const std::vector<Word> words = wordsOf(pdf);
        const auto found =
            std::find_if(words.begin(), words.end(), [&sign](const Word& word) { return word.text == sign; });
        ASSERT_NE(found, words.end()) << sign;
        EXPECT_TRUE(Picture(pdf).hasInk(found->x, 86, found->x + 5, 95)) << sign;
    }
}

TEST(PdfReport, ACharacterThatNoFontHasIsSaidOnceForTheReport) {
    // In the last of the private planes.
    const std::vector<storage::MeasureData> all{measureWith("a\U0010F001b\U0010F001"),
                                                measureWith("\U0010F001")};
    testing::expectWarning("no installed font has U+10F001 (\U0010F001)");
    EXPECT_THAT(textOf(written(kPdfFormat, exportOf(all))), HasSubstr("a□b□"));
}

TEST(PdfReport, OfManyMissingCharactersTheFirstAreNamed) {
    std::string result;
    for (char32_t character = 0x10F001; character < 0x10F001 + 25; ++character)
        result += QString::fromUcs4(&character, 1).toStdString();
    const std::vector<storage::MeasureData> all{measureWith(result)};
    testing::expectWarning("U+10F00A (\U0010F00A) and 15 more");
    written(kPdfFormat, exportOf(all));
}

TEST(PdfReport, LineFeedsAndTabsAreBlanks) {
    const std::vector<storage::MeasureData> all{measureWith("one\ntwo\tthree\r\nfour\x1b[2Jfive\u2028six")};
    const std::vector<Word> words = wordsOf(written(kPdfFormat, exportOf(all)));
    EXPECT_THAT(lineAt(words, 86), HasSubstr("one two three four [2Jfive six"));
}

TEST(PdfReport, ThePatternPassIsNotItsOwn) {
    const std::vector<storage::MeasureData> all{measureWith("%@ 5%% %d")};
    EXPECT_THAT(textOf(written(kPdfFormat, exportOf(all))), HasSubstr("%@ 5%% %d"));
}

TEST(PdfReport, AnyTextIsDrawn) {
    for (const std::string& text :
         {std::string("\"quoted\" (bracket \\ ) <tag> & 'x'"), std::string("مرحبا שלום"),
          std::string("a\xff"
                      "b"),
          std::string(100 * 1024, 'x')}) {
        const std::vector<storage::MeasureData> all{measureWith(text), measureWith("behind it")};
        const std::string pdf = written(kPdfFormat, exportOf(all));
        EXPECT_EQ(pageSize(pdf), "612 x 792");
        EXPECT_THAT(textOf(pdf), HasSubstr("behind it"));
    }
}

TEST(PdfReport, FieldsKeepTheirOrderBesideWritingFromRightToLeft) {
    const std::vector<storage::MeasureData> all{measureWith("שלום")};
    const std::vector<Word> words = wordsOf(written(kPdfFormat, exportOf(all)));
    const std::string line = lineAt(words, 86);
    EXPECT_TRUE(line.starts_with("17 S_1 Low Ohm 200mA ")) << line;
    EXPECT_TRUE(line.ends_with(" 2024-06-03 09:08:07")) << line;
    // What keeps them there has no place in the file.
    for (const Word& word : words) EXPECT_THAT(word.text, Not(HasSubstr("\u200E")));
}

TEST(PdfReport, ASinkThatFailsIsTheReason) {
    const auto all = measurements(30);
    const storage::Outcome outcome = writePdf(exportOf(all), [](std::string_view) {
        return storage::Outcome{false, "the disk is full", 0};
    });
    EXPECT_EQ(outcome, (storage::Outcome{false, "the disk is full", 0}));
}

TEST(PdfReport, MeasurementsThatCannotBeReadAreTheReason) {
    ExportedRecord record{storage::testRecord(), nullptr, kStamp};
    record.measurements = [](const MeasureVisitor&) { return storage::Outcome{false, "damaged", 0}; };
    int asked = 0;
    EXPECT_EQ(writePdf(record,
                       [&asked](std::string_view) {
                           ++asked;
                           return storage::Outcome{};
                       })
                  .reason,
              "damaged");
    EXPECT_EQ(asked, 0);
}

class ReportFile : public ::testing::Test {
  protected:
    QTemporaryDir temporary_;
    platform::DocumentsFolder folder_{temporary_.path()};

    QStringList names() const { return QDir(folder_.path()).entryList(QDir::Files); }
};

TEST_F(ReportFile, ItIsAWholePdfNamedByItsSecond) {
    const auto all = measurements(1);
    const ExportedFile file = exportIntoFolder(exportOf(all), kPdfFormat, folder_);
    EXPECT_TRUE(file.outcome.done);
    EXPECT_EQ(names(), QStringList(QStringLiteral("20260304050607.pdf")));
    QFile pdf(file.path);
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    EXPECT_TRUE(bytes.startsWith("%PDF-") && bytes.trimmed().endsWith("%%EOF"));
}

TEST_F(ReportFile, TheSecondReportOfASecondReplacesTheFirst) {
    const auto many = measurements(40);
    const auto one = measurements(1);
    ASSERT_TRUE(exportIntoFolder(exportOf(many), kPdfFormat, folder_).outcome.done);
    const ExportedFile second = exportIntoFolder(exportOf(one), kPdfFormat, folder_);
    EXPECT_EQ(names().size(), 1);
    QFile pdf(second.path);
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_EQ(pageSize(pdf.readAll().toStdString()), "612 x 792");
}

TEST_F(ReportFile, OneThatIsGivenUpIsSaidAndLeavesNoFile) {
    const auto all = measurements(40);
    ExportedRecord record = exportOf(all);
    int asked = 0;
    record.goesOn = [&asked] { return ++asked < 3; };
    testing::expectWarning("the test record was not exported: the export was cut short");
    EXPECT_EQ(exportIntoFolder(record, kPdfFormat, folder_).outcome.reason, "the export was cut short");
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ReportFile, AFullDiskIsToldAndLeavesNoHalfReport) {
    const auto all = measurements(40);
    testing::expectWarning("the test record was not exported: the disk is full");
    const NearlyFullDisk disk(1000);
    EXPECT_THAT(exportIntoFolder(exportOf(all), kPdfFormat, folder_).outcome.reason,
                ::testing::StartsWith("the disk is full"));
    EXPECT_EQ(names(), QStringList());
}

}  // namespace
}  // namespace kestrix::history
