#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <string>
#include <vector>

#include "apps/kestrix-cli/Verification.h"
#include "display/Display.h"
#include "live/MeasurementEvidence.h"
#include "storage/ServiceDao.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::cli {

// A database whose measurements came about as in the window.
class VerificationFixture : public ::testing::Test {
  protected:
    VerificationFixture();

    // As the window does at a press; so many.
    void recordSome(int count);
    // One that was read from this frame.
    void record(const testing::FrameBuilder::Bytes& frame);
    // All that are not filed yet, in a test record.
    void file();
    // Past the application.
    void run(const std::string& sql) const;
    Verification verify(const VerificationSlices& slices = {}) const { return verifyDatabase(path_, slices); }
    // What was found; a problem fails the test.
    std::vector<std::string> found() const;

    testing::FailingVfs vfs_;
    QTemporaryDir folder_;
    std::string path_ = folder_.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    storage::ServiceDao dao_{platform::DocumentsFolder(folder_.path())};
    display::Display display_;
    live::ReadingSource source_;
    storage::Origin origin_ = storage::Origin::Measured;
    int count_ = 0;
};

}  // namespace kestrix::cli
