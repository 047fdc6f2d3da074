#include "history/ReportInformation.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "history/PdfReport.h"
#include "tests/history/Exported.h"
#include "tests/storage/EvidenceFixture.h"

namespace kestrix::history {
namespace {

class ReportInformationTest : public storage::EvidenceFixture {
  protected:
    std::string fileWith(const std::string& bytes) const {
        const std::string path = temporary_.filePath(QStringLiteral("report.pdf")).toStdString();
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
};

TEST_F(ReportInformationTest, IsWhatTheReportHolds) {
    record(1);
    const auto none = measurements(0);
    ExportedRecord exported = exportOf(none);
    exported.record->recordId = 7;
    exported.evidence = &dao_;
    const ReportInformation information = reportInformation(written(kPdfFormat, exported));
    EXPECT_EQ(information.problem, "");
    EXPECT_EQ(information.mark.recordId, 7);
    EXPECT_EQ(information.mark.head, dao_.findChainHead());
}

TEST_F(ReportInformationTest, OfAReportWithoutARecordIsNone) {
    const auto all = measurements(1);
    EXPECT_EQ(reportInformation(written(kPdfFormat, {std::nullopt, measurementsIn(all), kStamp})).problem,
              "it says nothing of its database: an earlier version wrote it, or it has no test record");
}

TEST_F(ReportInformationTest, OfAnotherDocumentIsNone) {
    // As short as a document can be, with and without information.
    const std::string body = "%PDF-1.4\n1 0 obj\n<</Creator (Painter)>>\nendobj\n";
    const std::string table = "xref\n0 2\n0000000000 65535 f \n0000000009 00000 n \n";
    const auto document = [&](const std::string& trailer) {
        return body + table + "trailer\n<</Size 2 " + trailer + ">>\nstartxref\n" +
               std::to_string(body.size()) + "\n%%EOF\n";
    };
    EXPECT_EQ(reportInformation(document("/Info 1 0 R")).problem, "it is no report of Kestrix");
    EXPECT_EQ(reportInformation(document("")).problem, "it is no report of Kestrix");
    EXPECT_EQ(reportInformation(document("/Info (text)")).problem, "it is no report of Kestrix");
    EXPECT_EQ(reportInformation(document("/Info 9 0 R")).problem, "it is no report of Kestrix");
}

TEST_F(ReportInformationTest, OfADamagedOneIsNone) {
    const auto none = measurements(0);
    const std::string pdf = written(kPdfFormat, exportOf(none));
    for (std::size_t length = 0; length + 8 < pdf.size(); length += 97)
        EXPECT_EQ(reportInformation(pdf.substr(0, length)).problem, "it is no PDF, or a damaged one")
            << length;
}

TEST_F(ReportInformationTest, OfAFileThatIsTooLargeIsNotRead) {
    const std::string path = fileWith("%PDF-1.4\n");
    std::filesystem::resize_file(path, 65ULL * 1024 * 1024);
    EXPECT_EQ(reportInformationOf(QString::fromStdString(path)).problem, "it is too large for a report");
}

}  // namespace
}  // namespace kestrix::history
