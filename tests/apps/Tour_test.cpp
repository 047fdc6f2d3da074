// The tour as a whole program: without a display, into a folder that it makes.
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <map>
#include <string>

#include "apps/kestrix/TourStops.h"
#include "storage/ServiceDao.h"

namespace kestrix::tour {
namespace {

struct Answer {
    int status = -1;
    QString output;
    QString error;
};

Answer tour(const QString& folder) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(variable));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(KESTRIX_BINARY_DIR "/bin/kestrix"), {QStringLiteral("--tour"), folder});
    EXPECT_TRUE(program.waitForFinished(120'000));
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

class Tour : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder_ = new QTemporaryDir;
        answer_ = tour(path(QString()));
    }
    static void TearDownTestSuite() { delete folder_; }
    static QString path(const QString& name) { return folder_->filePath(QStringLiteral("a/b/") + name); }
    static QImage picture(int scale, const char* name) {
        return QImage(path(QStringLiteral("%1x/%2.png").arg(scale).arg(QLatin1String(name))));
    }

    static inline QTemporaryDir* folder_ = nullptr;
    static inline Answer answer_;
};

TEST_F(Tour, EndsByItselfAndSaysEachPicture) {
    EXPECT_EQ(answer_.status, 0) << answer_.error.toStdString();
    EXPECT_EQ(answer_.output.count(u'\n'), static_cast<qsizetype>(2 * stops().size()));
    for (const QString& line : answer_.error.split(u'\n', Qt::SkipEmptyParts))
        EXPECT_TRUE(line.startsWith(QStringLiteral("info ")) ||
                    line.contains(QStringLiteral("XDG_RUNTIME_DIR")))
            << line.toStdString();
}

TEST_F(Tour, DrawsEveryStateAtOneAndAtThreePixelsAPoint) {
    for (const Stop& stop : stops()) {
        EXPECT_EQ(picture(1, stop.name).size(), QSize(320, 568)) << stop.name;
        EXPECT_EQ(picture(3, stop.name).size(), QSize(960, 1704)) << stop.name;
    }
}

TEST_F(Tour, NoTwoStatesLookTheSame) {
    for (const int scale : {1, 3}) {
        std::map<QByteArray, const char*> seen;
        for (const Stop& stop : stops()) {
            const QImage image = picture(scale, stop.name).convertToFormat(QImage::Format_RGB32);
            const QByteArray pixels(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
            const auto [same, added] = seen.emplace(pixels, stop.name);
            EXPECT_TRUE(added) << stop.name << " looks like " << same->second;
        }
    }
}

TEST_F(Tour, LeavesTheThirtyMeasurementsInTheDatabase) {
    const auto rows = storage::ServiceDao(platform::DocumentsFolder(path(QString()))).findMeasureForm(false);
    ASSERT_EQ(rows.size(), 30U);
    EXPECT_EQ(rows.front().dataName, "S_1");
    EXPECT_EQ(rows.front().function, "EARTH");
    EXPECT_EQ(rows.front().result, "18.5Ω,2.5mA");
    EXPECT_EQ(rows.back().dataName, "S_30");
}

TEST_F(Tour, AnotherTourIntoTheSameFolderStartsAnew) {
    EXPECT_EQ(tour(path(QString())).status, 0);
    EXPECT_EQ(storage::ServiceDao(platform::DocumentsFolder(path(QString()))).findMeasureForm(true).size(),
              30U);
}

TEST(TourOfAFile, AFolderThatCannotBeMadeIsSaidInOneLine) {
    const Answer answer = tour(QStringLiteral("/dev/null/tour"));
    EXPECT_EQ(answer.status, 1);
    EXPECT_TRUE(answer.output.isEmpty());
    EXPECT_TRUE(answer.error.contains(QStringLiteral("kestrix: cannot make /dev/null/tour/1x\n")))
        << answer.error.toStdString();
}

}  // namespace
}  // namespace kestrix::tour
