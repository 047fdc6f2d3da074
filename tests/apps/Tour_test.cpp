// The tour as a whole program: without a display, into a folder that it makes.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <map>
#include <string>

#include "apps/kestrix/TourMoment.h"
#include "apps/kestrix/TourStops.h"
#include "storage/DatabaseLook.h"
#include "storage/ServiceDao.h"

namespace kestrix::tour {
namespace {

struct Answer {
    int status = -1;
    QString output;
    QString error;
};

Answer kestrix(const QStringList& arguments, const QString& home = {}) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_LOGGING_RULES"})
        environment.remove(QLatin1String(variable));
    if (!home.isEmpty()) environment.insert(QStringLiteral("HOME"), home);
    // Where and when it runs changes nothing.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("fa_IR.UTF-8"));
    environment.insert(QStringLiteral("TZ"), QStringLiteral("Asia/Tokyo"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(KESTRIX_BINARY_DIR "/bin/kestrix"), arguments);
    EXPECT_TRUE(program.waitForFinished(120'000));
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

Answer tour(const QString& folder) {
    return kestrix({QStringLiteral("--tour"), folder});
}

class Tour : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder_ = new QTemporaryDir;
        answer_ = tour(path(QString()));
    }
    static void TearDownTestSuite() { delete folder_; }
    static QString path(const QString& name) { return folder_->filePath(QStringLiteral("a/b/") + name); }
    static QImage picture(int scale, const std::string& name) {
        return QImage(path(QStringLiteral("%1x/%2.png").arg(scale).arg(QString::fromStdString(name))));
    }

    static inline QTemporaryDir* folder_ = nullptr;
    static inline Answer answer_;
};

TEST_F(Tour, EndsByItselfAndSaysEachPicture) {
    EXPECT_EQ(answer_.status, 0) << answer_.error.toStdString();
    EXPECT_EQ(answer_.output.count(u'\n'), static_cast<qsizetype>(2 * pictures().size()));
    int failed = 0;
    for (const Stop& stop : stops()) failed += stop.disk == Stop::Disk::Full ? stop.presses : 0;
    for (const QString& line : answer_.error.split(u'\n', Qt::SkipEmptyParts)) {
        // A press that fails is one of the states.
        if (line.contains(QStringLiteral("kestrix.storage: 数据操作失败")))
            --failed;
        else
            EXPECT_TRUE(line.contains(QStringLiteral("XDG_RUNTIME_DIR"))) << line.toStdString();
    }
    EXPECT_EQ(failed, 0);
}

TEST_F(Tour, DrawsEveryStateAtOneAndAtThreePixelsAPoint) {
    for (const std::string& name : pictures()) {
        EXPECT_EQ(picture(1, name).size(), QSize(320, 568)) << name;
        EXPECT_EQ(picture(3, name).size(), QSize(960, 1704)) << name;
    }
}

// The word in the middle of the display's top: its light pixels.
TEST_F(Tour, EveryPictureSaysThatItsReadingsAreMadeUp) {
    for (const Stop& stop : stops()) {
        for (const int scale : {1, 3}) {
            const QImage image = picture(scale, stop.name);
            int light = 0;
            for (int y = 50 * scale; y < 63 * scale; ++y) {
                for (int x = 110 * scale; x < 210 * scale; ++x)
                    light += qGray(image.pixel(x, y)) > 200 ? 1 : 0;
            }
            EXPECT_GT(light, 20 * scale) << stop.name << " at " << scale;
        }
    }
}

TEST_F(Tour, NoTwoStatesLookTheSame) {
    for (const int scale : {1, 3}) {
        std::map<QByteArray, std::string> seen;
        for (const std::string& name : pictures()) {
            const QImage image = picture(scale, name).convertToFormat(QImage::Format_RGB32);
            const QByteArray pixels(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
            const auto [same, added] = seen.emplace(pixels, name);
            EXPECT_TRUE(added) << name << " looks like " << same->second;
        }
    }
}

TEST(TourPictures, AreThoseOfTheLiveScreenAndOfTheRoadBehindItWithEveryStateOfEveryScreen) {
    const shell::ScreenRow save{ui::ScreenId::SaveData, "", nullptr, "", {{"a-save"}, {"a-save-filled"}}};
    const shell::ScreenRow help{ui::ScreenId::Help, "", nullptr, "", {{"a-help"}}};
    const std::vector<std::string> names = pictures({help, save});
    EXPECT_EQ(names.front(), "01-not-connected");
    const std::vector<std::string> behind(names.begin() + static_cast<std::ptrdiff_t>(stops().size()),
                                          names.end());
    EXPECT_EQ(behind, (std::vector<std::string>{"19-menu", "20-no-test-records", "a-save", "a-save-filled",
                                                "24-test-records", "25-test-record-deleted", "a-help",
                                                "36-exported", "50-console-search", "51-console"}));
}

TEST_F(Tour, LeavesTheTextAndTheReportThatItExported) {
    QFile text(path(QLatin1String(kExportedText)));
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString(QStringDecoder(QStringDecoder::Utf16)(text.readAll()))
                    .contains(QStringLiteral("Harbour Street 12     O'Neill & Sons")));
    QFile report(path(QLatin1String(kExportedReport)));
    ASSERT_TRUE(report.open(QIODevice::ReadOnly));
    EXPECT_TRUE(report.readAll().startsWith("%PDF-"));
}

TEST_F(Tour, LeavesWhatItStoredInTheDatabase) {
    storage::ServiceDao dao{platform::DocumentsFolder(path(QString()))};
    EXPECT_TRUE(dao.findMeasureForm(false).empty()) << "the tour saves them";
    const auto records = dao.findRecordForm();
    ASSERT_EQ(records.size(), 2U) << "it deletes the second one; another, without measurements, is a picture";
    EXPECT_EQ(records.front().projectName, "Harbour Street 12");
    EXPECT_EQ(records.front().samples, 30);
    const auto rows = dao.findMeasureofId(records.front().recordId);
    ASSERT_EQ(rows.size(), 30U);
    EXPECT_EQ(rows.front().dataName, "S_1");
    EXPECT_EQ(rows.front().function, "EARTH");
    EXPECT_EQ(rows.front().result, "18.5Ω,2.5mA");
    EXPECT_EQ(rows[2].dataName, "S_3");
    EXPECT_EQ(rows[3].dataName, "S_5") << "S_4 is the one that was not stored";
    EXPECT_EQ(rows.back().dataName, "S_31");
    for (const auto& row : rows) EXPECT_EQ(row.dateTime, "2026-01-15 10:00:00");
    const auto look =
        storage::lookAtDatabase(platform::DocumentsFolder(path(QString())), storage::ServiceDao::kPatience);
    EXPECT_EQ(look.readings, storage::Readings::MadeUp);
}

TEST_F(Tour, AnotherTourIntoTheSameFolderStartsAnewAndDrawsTheSame) {
    std::map<std::string, QImage> first;
    for (const std::string& name : pictures()) first[name] = picture(1, name);
    EXPECT_EQ(tour(path(QString())).status, 0);
    EXPECT_EQ(storage::ServiceDao(platform::DocumentsFolder(path(QString()))).findMeasureForm(true).size(),
              30U);
    for (const std::string& name : pictures()) EXPECT_TRUE(picture(1, name) == first[name]) << name;
}

TEST_F(Tour, TheWindowDoesNotRecordIntoATour) {
    const Answer answer =
        kestrix({QStringLiteral("--documents"), path(QString()), QStringLiteral("--verbose")});
    EXPECT_EQ(answer.status, 1);
}

void expectRefused(const Answer& answer, int status, const QString& line) {
    EXPECT_EQ(answer.status, status);
    EXPECT_TRUE(answer.output.isEmpty()) << answer.output.toStdString();
    QStringList lines = answer.error.split(u'\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString& each) { return each.contains(QStringLiteral("XDG_RUNTIME_DIR")); });
    EXPECT_EQ(lines, QStringList{line}) << answer.error.toStdString();
}

TEST(TourOfAFile, AFolderThatCannotBeMadeIsSaidInOneLine) {
    expectRefused(tour(QStringLiteral("/dev/null/tour")), 1,
                  QStringLiteral("kestrix: cannot make /dev/null/tour"));
}

TEST(TourOfAFolder, OneThatHoldsSomethingElseIsRefusedAndStaysAsItIs) {
    for (const char* name : {"kestrix.sqlite", "settings.ini", ".hidden", "letter.txt"}) {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("mine");
        file.close();
        expectRefused(tour(folder.path()), 1,
                      QStringLiteral("kestrix: %1 holds other files: a tour needs a folder of its own")
                          .arg(folder.path()));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), "mine");
        EXPECT_EQ(
            QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
    }
}

// An earlier tour's folder, and in it a link to what is the user's.
TEST(TourOfAFolder, OneThatLeadsElsewhereIsRefusedAndNothingIsWritten) {
    for (const char* name : {"1x", "3x", "1x/02-earth.png"}) {
        const QTemporaryDir base;
        const QString folder = base.filePath(QStringLiteral("tour"));
        const QString users = base.filePath(QStringLiteral("mine"));
        ASSERT_TRUE(QDir().mkpath(users));
        ASSERT_TRUE(QDir().mkpath(folder));
        const QString link = folder + u'/' + QLatin1String(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(link).absolutePath()));
        for (const char* made : {"kestrix.tour", "kestrix.sqlite"}) {
            QFile file(folder + u'/' + QLatin1String(made));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
        ASSERT_TRUE(QFile::link(users, link));
        const QStringList before = QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        expectRefused(
            tour(folder), 2,
            QStringLiteral("kestrix: %1 is a link: a tour draws into folders of its own").arg(link));
        EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before) << name;
        EXPECT_TRUE(QDir(users).isEmpty()) << name;
    }
}

TEST(TourOfAFolder, TheUsersOwnIsRefusedEvenEmpty) {
    const QTemporaryDir home;
    const QString documents = home.filePath(QStringLiteral("Documents/Kestrix"));
    expectRefused(kestrix({QStringLiteral("--tour"), documents}, home.path()), 1,
                  QStringLiteral("kestrix: %1 is no folder for a tour").arg(documents));
    EXPECT_FALSE(QDir(documents).exists());
}

TEST(TourOfAFolder, OtherOptionsBesideItAndAnEmptyNameAreWrongUsage) {
    const QTemporaryDir base;
    const QString folder = base.filePath(QStringLiteral("tour"));
    const std::map<QString, QString> others{
        {QStringLiteral("--connect"), QStringLiteral("simulator:")},
        {QStringLiteral("--documents"), base.path()},
        {QStringLiteral("--settings"), base.filePath(QStringLiteral("s.ini"))}};
    for (const auto& [option, value] : others) {
        expectRefused(kestrix({QStringLiteral("--tour"), folder, option, value}), 2,
                      QStringLiteral("kestrix: --tour: goes without %1; see kestrix --help").arg(option));
    }
    expectRefused(tour(QString()), 2, QStringLiteral("kestrix: --tour: is empty; see kestrix --help"));
    EXPECT_TRUE(QDir(base.path()).isEmpty());
}

}  // namespace
}  // namespace kestrix::tour
