#pragma once

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <string>

#include "platform/DocumentsFolder.h"
#include "storage/ServiceDao.h"
#include "tests/storage/Connection.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::storage {

inline constexpr const char* kOpeningFailed = "数据库创建失败";
inline constexpr const char* kStatementFailed = "数据操作失败";

inline void expectWarnings(const std::string& text, int count) {
    for (; count > 0; --count) testing::expectWarning(text);
}

// A measurement as the live screen records it.
inline MeasureData measurement(int number) {
    MeasureData measure;
    measure.dataName = "S_" + std::to_string(number);
    measure.function = "Low Ohm";
    measure.parameters = "200mA";
    measure.result = "0.12Ω";
    measure.dateTime = "2024-06-03 09:08:07";
    measure.comments = " ";
    return measure;
}

inline RecordData testRecord() {
    RecordData record;
    record.projectName = "House 7";
    record.company = "Volt & Sons";
    record.operators = "Jo";
    record.addres = "7 Main Street";
    record.startTime = "2024-06-03 09:08:07";
    record.endTime = "2024-06-03 ";
    record.dates = "09:08:07";
    record.samples = 3;
    record.serial = "SN 1";
    return record;
}

// A documents folder of the test's own.
class StorageFixture : public ::testing::Test {
  protected:
    QTemporaryDir temporary_;
    // As the engine names it, which follows links.
    platform::DocumentsFolder folder_{QFileInfo(temporary_.path()).canonicalFilePath()};
    std::string path_ = folder_.filePath(QStringLiteral("kestrix.sqlite")).toStdString();

    ServiceDao daoWithTables() const {
        ServiceDao dao(folder_);
        dao.createTable();
        return dao;
    }
};

// The same without waiting for the disk.
class QuickStorageFixture : public StorageFixture {
  protected:
    testing::FailingVfs vfs_;
    QuickStorageFixture() { vfs_.skipSyncs(); }
};

}  // namespace kestrix::storage
