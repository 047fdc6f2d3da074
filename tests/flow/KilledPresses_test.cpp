// A press that has returned is in the database, whenever the process is killed.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QTemporaryDir>

#include <array>
#include <fstream>
#include <map>
#include <random>
#include <string>

#include "storage/ServiceDao.h"
#include "tests/storage/Connection.h"

namespace kestrix {
namespace {

// The program that presses; killed with this object.
class Presser {
  public:
    Presser(const std::string& folder, long first) {
        const std::string number = std::to_string(first);
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        child_ = fork();
        if (child_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            execl(KESTRIX_RECORD_PRESSES, "record_presses", folder.c_str(), number.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        output_ = ends[0];
    }
    Presser(const Presser&) = delete;
    Presser& operator=(const Presser&) = delete;
    ~Presser() {
        killNow();
        close(output_);
    }

    // False at the end of the output.
    bool readLine() {
        const std::size_t before = lines_;
        char byte = 0;
        while (lines_ == before && read(output_, &byte, 1) == 1) lines_ += byte == '\n' ? 1 : 0;
        return lines_ > before;
    }
    void killNow() {
        if (child_ <= 0) return;
        kill(child_, SIGKILL);
        int status = 0;
        waitpid(child_, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself: " << WEXITSTATUS(status);
        child_ = -1;
    }
    // The presses that have returned.
    long acknowledged() {
        while (readLine()) {
        }
        return static_cast<long>(lines_);
    }

  private:
    pid_t child_ = -1;
    int output_ = -1;
    std::size_t lines_ = 0;
};

void spin(unsigned long turns) {
    for (volatile unsigned long i = 0; i < turns;) i = i + 1;
}

// Whether there is a journal that must be rolled back: one that counts no more has its head overwritten.
bool isInForce(const std::string& journal) {
    std::ifstream file(journal, std::ios::binary);
    char first = 0;
    return file.get(first) && first != 0;
}

using Readings = std::map<std::string, std::string>;  // reading: name

// What is only in the one, and only in the other.
std::string differences(const Readings& expected, const Readings& found) {
    std::string text;
    for (const auto& [reading, name] : expected) {
        if (const auto there = found.find(reading); there == found.end() || there->second != name)
            text += "not found " + reading + ' ' + name + '\n';
    }
    for (const auto& [reading, name] : found) {
        if (expected.find(reading) == expected.end()) text += "not expected " + reading + ' ' + name + '\n';
    }
    return text;
}

TEST(KilledPresses, EveryPressThatHasReturnedIsInTheDatabase) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    storage::ServiceDao dao{platform::DocumentsFolder(folder.path())};
    dao.createTable();

    std::mt19937 random(8);  // NOLINT(cert-msc51-cpp)
    Readings expected;
    int midway = 0;
    // How many kills come in the middle of a press is the machine's: as many rounds as that takes.
    constexpr int kRounds = 200;
    constexpr int kMostRounds = 5000;
    constexpr int kEnoughMidway = 20;
    long first = 1;
    for (int round = 0; round < kRounds || (midway < kEnoughMidway && round < kMostRounds); ++round) {
        SCOPED_TRACE(round);
        Presser presser(folder.path().toStdString(), first);
        for (auto lines = random() % 6; lines > 0; --lines) ASSERT_TRUE(presser.readLine());
        spin(random() % 10'000'000);
        presser.killNow();
        const long last = first + presser.acknowledged() - 1;
        if (isInForce(path + "-journal")) ++midway;

        storage::Connection file(path);
        ASSERT_EQ(file.value("PRAGMA integrity_check"), "ok");
        const auto expect = [&expected, first](long number) {
            expected[std::to_string(number) + "Ω,"] = "S_" + std::to_string(number - first + 1);
        };
        for (long number = first; number <= last; ++number) expect(number);
        // One more may be there: it was stored, and not yet said.
        const std::string next = std::to_string(last + 1);
        if (file.value("SELECT count(*) FROM measurefrom WHERE result = '" + next + "Ω,'") == "1")
            expect(last + 1);
        Readings found;
        const auto measures = dao.findMeasureForm(true);
        for (const storage::MeasureData& measure : measures) found[measure.result] = measure.dataName;
        EXPECT_EQ(differences(expected, found), "") << "of " << last - first + 1 << " that were said";
        ASSERT_EQ(found.size(), expected.size());
        ASSERT_EQ(measures.size(), expected.size()) << "a measurement is there twice";
        ASSERT_EQ(file.value("SELECT count(*) FROM evidence JOIN measurefrom USING (dataId)"),
                  std::to_string(measures.size()));
        ASSERT_EQ(file.value("SELECT count(*) FROM evidence"), std::to_string(measures.size()))
            << "evidence of a measurement that is not there";
        // However many there were: a number that comes twice would look like a press that is lost.
        first = last + 2;
    }
    EXPECT_GE(midway, kEnoughMidway) << "hardly a kill came in the middle of a press";
    EXPECT_GT(expected.size(), 300U);
}

}  // namespace
}  // namespace kestrix
