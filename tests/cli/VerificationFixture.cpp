#include "tests/cli/VerificationFixture.h"

#include "display/Steps.h"
#include "protocol/KV3820protocal.h"
#include "storage/TestRecords.h"
#include "tests/storage/Connection.h"

namespace kestrix::cli {

VerificationFixture::VerificationFixture() {
    vfs_.skipSyncs();
    dao_.createTable();
}

void VerificationFixture::record(const testing::FrameBuilder::Bytes& frame) {
    protocol::KV3820protocal decoder;
    decoder.initFromNSdata(frame);
    display::recordCame(display_, decoder.return3820data());
    storage::MeasureData measure;
    measure.dataName = "S_" + std::to_string(++count_);
    measure.function = display_.strfunction.value_or("");
    measure.parameters = display_.parameters;
    measure.result = display_.results;
    measure.dateTime = "2026-03-04 05:06:07";
    measure.comments = " ";
    storage::Evidence evidence = source_.evidenceOf(display_.measured, false);
    evidence.origin = origin_;
    dao_.addMeasureWithEvidence(measure, evidence);
    ASSERT_TRUE(dao_.lastOutcome().done) << dao_.lastOutcome().reason;
}

void VerificationFixture::recordSome(int count) {
    for (int i = 1; i <= count; ++i)
        record(testing::FrameBuilder(static_cast<char>('1' + i % 5))
                   .reading(1, static_cast<std::uint16_t>(100 * i), 0)
                   .bytes());
}

void VerificationFixture::file() {
    storage::RecordData typed;
    typed.projectName = "House";
    const auto outcome = storage::fileMeasurements(dao_, storage::completed(typed, "2026-03-04 05:06:07"),
                                                   dao_.findMeasureForm(false));
    ASSERT_TRUE(outcome.done) << outcome.reason;
}

void VerificationFixture::run(const std::string& sql) const {
    storage::Connection(path_).run(sql);
}

std::vector<std::string> VerificationFixture::found() const {
    std::vector<std::string> texts;
    const Verification result = verify();
    EXPECT_EQ(result.problem, "");
    for (const auto& finding : result.findings) texts.push_back(finding.text);
    return texts;
}

}  // namespace kestrix::cli
