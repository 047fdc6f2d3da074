#pragma once

#include <gtest/gtest.h>

#include <string>

#include "storage/Selection.h"
#include "storage/ServiceDao.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/TestServices.h"
#include "ui/FramedScreen.h"

namespace kestrix::history {

inline storage::MeasureData measureNamed(const std::string& name, const std::string& parameters = "VISO=500V",
                                         const std::string& result = "186.4MΩ,524V") {
    storage::MeasureData measure;
    measure.dataName = name;
    measure.function = "INSULATION";
    measure.parameters = parameters;
    measure.result = result;
    measure.dateTime = "2026-03-04 05:06:07";
    measure.comments = "of the database";
    return measure;
}

// A folder with tables, and the services of a screen on it.
class HistoryFixture : public ::testing::Test {
  protected:
    HistoryFixture() {
        vfs_.skipSyncs();
        dao_.createTable();
    }

    // The identity of the new test record.
    std::int64_t addRecord(const std::string& project) {
        storage::RecordData record;
        record.projectName = project;
        dao_.addRecordForm(record);
        return dao_.lastOutcome().identity;
    }
    // The identity of the new measurement.
    std::int64_t addMeasure(std::int64_t record, const std::string& project, storage::MeasureData measure) {
        measure.recordId = record;
        measure.recordName = project;
        dao_.addMeasureForm(measure);
        return dao_.lastOutcome().identity;
    }

    testing::FailingVfs vfs_;
    testing::TestServices surroundings_;
    storage::ServiceDao dao_{surroundings_.documents};
};

}  // namespace kestrix::history
