// The window and two command lines in one folder: what one of them was told is stored, no other loses,
// duplicates or files elsewhere.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "tests/cli/Program.h"
#include "tests/storage/Connection.h"

namespace kestrix {
namespace {

using cli::Program;
using Ids = std::set<std::string>;

constexpr int kRounds = 100;
constexpr int kSaveEvery = 3;
constexpr int kDeleteEvery = 6;

class FolderTogether : public testing::Test {
  protected:
    FolderTogether() {
        cli::writeFile(scenario_,
                       "rate 50\nrepeat forever\nfunction insulation voltage=500 reference=1.0\n"
                       "reading 1 11.0 Mohm\nreading 2 523 V\nshow 1 frames\n"
                       "reading 1 22.0 Mohm\nshow 1 frames\n");
    }

    // The identity in the answer that begins with `word`.
    static std::string answer(Program& window, const std::string& line, const std::string& word) {
        const std::size_t before = window.output().size();
        EXPECT_TRUE(window.send(line + "\n"));
        EXPECT_TRUE(
            window.waitUntil([&] { return window.output().find('\n', before) != std::string::npos; }));
        std::istringstream answered(window.output().substr(before));
        std::string is;
        std::string id;
        answered >> is >> id;
        EXPECT_EQ(is, word) << answered.str();
        return id;
    }
    Ids ids(const std::string& sql) {
        Ids found;
        for (const auto& row : database().rows(sql)) EXPECT_TRUE(found.insert(row.front()).second);
        return found;
    }
    Ids rowsOf(const std::string& record) {
        return ids("SELECT dataId FROM measurefrom WHERE recordId = " + record);
    }
    storage::Connection database() const { return storage::Connection(folder_ + "/kestrix.sqlite"); }

    QTemporaryDir temporary_;
    const std::string folder_ = temporary_.filePath(QStringLiteral("documents")).toStdString();
    const std::string scenario_ = temporary_.filePath(QStringLiteral("two.scenario")).toStdString();
};

TEST_F(FolderTogether, AWindowALogAndDeletionsCorruptLoseAndMisfileNothing) {
    cli::Surroundings setup;
    setup.program = "folder_presses";
    setup.ownSettings = false;
    Program log({"log", "simulator:" + scenario_ + "?speed=10", "--project", "log", "--documents", folder_});
    ASSERT_TRUE(log.waitForOutput("stored ")) << log.error();
    Program window({folder_}, setup);
    ASSERT_TRUE(window.waitForOutput("ready")) << window.output() << window.error();

    Ids unsaved;
    std::map<std::string, Ids> saved;
    for (int round = 1; round <= kRounds; ++round) {
        EXPECT_TRUE(unsaved.insert(answer(window, "", "stored")).second);
        if (round % kSaveEvery == 0) saved[answer(window, "save", "saved")] = std::exchange(unsaved, {});
        if (round % kDeleteEvery == 0) {
            const cli::Result deleted = cli::run({"delete", saved.begin()->first, "--documents", folder_});
            EXPECT_EQ(deleted.status, 0) << deleted.error;
            saved.erase(saved.begin());
        }
    }
    log.signal(SIGTERM);
    EXPECT_EQ(log.waitForEnd(), 0) << log.error();

    Ids logged;
    for (const std::string& line : cli::linesOf(log.output())) {
        std::istringstream words(line);
        std::string stored;
        std::string id;
        words >> stored >> id;
        EXPECT_TRUE(logged.insert(id).second) << line;
    }
    EXPECT_GE(logged.size(), 1U);
    EXPECT_EQ(database().value("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(rowsOf("0"), unsaved);
    Ids records;
    for (const auto& [record, rows] : saved) {
        records.insert(record);
        EXPECT_EQ(rowsOf(record), rows) << record;
    }
    const std::string own = database().value("SELECT dataId FROM recordfrom WHERE projectname = 'log'");
    records.insert(own);
    // What it stored while nobody read its output it need not have said.
    const Ids stored = rowsOf(own);
    EXPECT_TRUE(std::includes(stored.begin(), stored.end(), logged.begin(), logged.end()));
    EXPECT_EQ(ids("SELECT dataId FROM recordfrom"), records);
    EXPECT_EQ(database().value("SELECT count(*) FROM recordfrom r WHERE samples != "
                               "(SELECT count(*) FROM measurefrom m WHERE m.recordId = r.dataId)"),
              "0");
    EXPECT_EQ(
        database().value("SELECT count(*) FROM measurefrom m WHERE recordId != 0 AND recordName != "
                         "coalesce((SELECT projectname FROM recordfrom WHERE dataId = m.recordId), '')"),
        "0");
}

}  // namespace
}  // namespace kestrix
