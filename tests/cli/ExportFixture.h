#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QString>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <string>
#include <utility>
#include <vector>

#include "storage/ServiceDao.h"
#include "tests/cli/Program.h"

namespace kestrix::cli {

// A folder with a test record of two measurements, and the program that exports it.
class ExportFixture : public ::testing::Test {
  protected:
    ExportFixture() {
        dao_.createTable();
        storage::RecordData record;
        record.projectName = "House 7";
        record.company = "Volt & Sons";
        record.startTime = "2026-03-04 05:06:07";
        record.samples = 2;
        dao_.addRecordForm(record);
        const std::int64_t id = dao_.lastOutcome().identity;
        id_ = std::to_string(id);
        for (const char* name : {"S_1", "S_2"}) {
            storage::MeasureData measure;
            measure.recordId = id;
            measure.recordName = record.projectName;
            measure.dataName = name;
            measure.function = "EARTH";
            measure.result = "18.5Ω";
            measure.dateTime = record.startTime;
            dao_.addMeasureForm(measure);
        }
        files_ = filesIn(path_);
    }

    std::vector<std::string> words(std::vector<std::string> options) const {
        options.insert(options.begin(), {"export", id_});
        options.insert(options.end(), {"--documents", path_});
        return options;
    }
    // As for a user, who has asked for no log.
    Result exported(std::vector<std::string> options, Surroundings setup = {},
                    std::string_view input = {}) const {
        setup.environment.emplace_back("QT_LOGGING_RULES=");
        return run(words(std::move(options)), input, setup);
    }

    static QString utf16(const std::string& bytes) {
        return QStringDecoder(QStringDecoder::Utf16)(QByteArray::fromStdString(bytes));
    }
    static std::string textOfPdf(const std::string& file) {
        QProcess reader;
        reader.start(QStringLiteral("pdftotext"), {QString::fromStdString(file), QStringLiteral("-")});
        EXPECT_TRUE(reader.waitForFinished()) << "pdftotext of poppler-utils is needed";
        return reader.readAllStandardOutput().toStdString();
    }
    static std::vector<std::string> filesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const QString& name : QDir(QString::fromStdString(folder)).entryList(QDir::Files | QDir::Hidden))
            names.push_back(name.toStdString());
        return names;
    }

    QTemporaryDir folder_;
    std::string path_ = folder_.path().toStdString();
    storage::ServiceDao dao_{platform::DocumentsFolder(folder_.path())};
    std::string id_;
    std::vector<std::string> files_;  // of the folder, before anything is exported
};

}  // namespace kestrix::cli
