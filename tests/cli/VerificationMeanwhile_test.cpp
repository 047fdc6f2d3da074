// Verifying while others write: it reads in slices, between which they can, and what they do is no
// difference.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "storage/TestRecords.h"
#include "storage/Transaction.h"
#include "tests/cli/VerificationFixture.h"

namespace kestrix::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class VerificationMeanwhile : public VerificationFixture {
  protected:
    // Verifies row by row, with `work` done behind the slice of this number, from 0 on. How many slices there
    // were stands in slices_.
    template <class Work>
    Verification verifyWith(int slice, const Work& work) {
        slices_ = 0;
        return verify({.rows = 1, .between = [&] {
                           if (slices_++ == slice) work();
                       }});
    }
    static std::vector<std::string> textsOf(const Verification& result) {
        EXPECT_EQ(result.problem, "");
        std::vector<std::string> texts;
        for (const auto& finding : result.findings) texts.push_back(finding.text);
        return texts;
    }
    // A database as it is now, for each moment of verifying it.
    template <class Work, class Check>
    void atEveryMoment(const Work& work, const Check& check) {
        const std::string whole = path_ + ".whole";
        std::filesystem::copy_file(path_, whole, std::filesystem::copy_options::overwrite_existing);
        int slice = 0;
        do {
            SCOPED_TRACE(slice);
            std::filesystem::copy_file(whole, path_, std::filesystem::copy_options::overwrite_existing);
            dao_ = storage::ServiceDao(platform::DocumentsFolder(folder_.path()));
            const Verification meanwhile = verifyWith(slice, work);
            check(meanwhile);
            const Verification behind = verify();
            EXPECT_EQ(textsOf(meanwhile), textsOf(behind));
            EXPECT_EQ(meanwhile.measurements, behind.measurements);
            EXPECT_EQ(meanwhile.derived, behind.derived);
            EXPECT_EQ(meanwhile.older, behind.older);
            EXPECT_EQ(meanwhile.simulated, behind.simulated);
            EXPECT_EQ(meanwhile.head, behind.head);
        } while (++slice < slices_);
        EXPECT_GT(slice, 6);
    }
    void deleteRecord() { ASSERT_TRUE(storage::deleteRecord(dao_, 1, deleted_).done); }
    void putBack() { ASSERT_TRUE(storage::putBackRecord(dao_, deleted_).done); }

    static void expectClean(const Verification& result) { EXPECT_THAT(textsOf(result), IsEmpty()); }

    storage::DeletedRecord deleted_;
    int slices_ = 0;
};

TEST_F(VerificationMeanwhile, WhatIsRecordedIsVerifiedAsWell) {
    recordSome(3);
    origin_ = storage::Origin::Simulated;
    atEveryMoment([&] { recordSome(2); },
                  [](const Verification& result) {
                      expectClean(result);
                      EXPECT_EQ(result.measurements, 5);
                      EXPECT_EQ(result.derived, 5);
                      EXPECT_EQ(result.simulated, 2);
                  });
}

TEST_F(VerificationMeanwhile, TheFirstThatIsRecordedIsVerifiedAsWell) {
    for (int i = 0; i < 6; ++i) dao_.addMeasureForm({});
    atEveryMoment([&] { recordSome(1); },
                  [](const Verification& result) {
                      expectClean(result);
                      EXPECT_EQ(result.measurements, 7);
                      EXPECT_EQ(result.older, 6);
                  });
}

TEST_F(VerificationMeanwhile, FilingIsNoDifference) {
    recordSome(3);
    atEveryMoment([&] { file(); }, expectClean);
}

TEST_F(VerificationMeanwhile, DeletingIsNoDifference) {
    recordSome(3);
    file();
    atEveryMoment([&] { deleteRecord(); },
                  [](const Verification& result) {
                      expectClean(result);
                      EXPECT_EQ(result.measurements, 0);
                      EXPECT_EQ(result.derived, 0);
                  });
}

TEST_F(VerificationMeanwhile, PuttingBackIsNoDifference) {
    recordSome(3);
    file();
    deleteRecord();
    atEveryMoment([&] { putBack(); },
                  [](const Verification& result) {
                      expectClean(result);
                      EXPECT_EQ(result.measurements, 3);
                      EXPECT_EQ(result.derived, 3);
                  });
}

TEST_F(VerificationMeanwhile, OlderOnesAreFiledAndDeletedWithoutADifference) {
    for (int i = 0; i < 2; ++i) dao_.addMeasureForm({});
    recordSome(2);
    atEveryMoment(
        [&] {
            file();
            deleteRecord();
        },
        expectClean);
}

TEST_F(VerificationMeanwhile, WhatWasAlteredIsFoundWhateverIsDone) {
    recordSome(4);
    run("UPDATE measurefrom SET dateTime = '2027-01-01 00:00:00' WHERE dataId = 2");
    run("DELETE FROM measurefrom WHERE dataId = 3");
    atEveryMoment([&] { recordSome(1); },
                  [](const Verification& result) {
                      EXPECT_THAT(textsOf(result),
                                  ElementsAre("measurement 2 (S_2) was altered: it is not as it was stored",
                                              "measurement 3 is missing: it was deleted by hand, or by a "
                                              "version that keeps no evidence"));
                  });
    atEveryMoment([&] { file(); },
                  [](const Verification& result) {
                      EXPECT_THAT(textsOf(result),
                                  ElementsAre("measurement 3 is missing: it was deleted by hand, or by a "
                                              "version that keeps no evidence",
                                              "measurement 2 (S_2) had been altered when it was filed"));
                  });
}

TEST_F(VerificationMeanwhile, AWriterWithoutPatienceCanWriteBetweenTheSlicesOfALargeWalk) {
    constexpr int kMeasures = 12'000;
    {
        storage::Transaction all(dao_);
        recordSome(kMeasures);
        ASSERT_TRUE(all.commit());
    }
    dao_.setPatience(std::chrono::milliseconds(0));
    int presses = 0;
    const Verification result = verify({.rows = kMeasures / 4, .between = [&] {
                                            recordSome(1);
                                            ++presses;
                                        }});
    expectClean(result);
    EXPECT_GE(presses, 10);
    EXPECT_EQ(result.measurements, kMeasures + presses);
    EXPECT_EQ(result.derived, kMeasures + presses);
}

}  // namespace
}  // namespace kestrix::cli
