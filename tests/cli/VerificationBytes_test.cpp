// Every byte of a database changed in turn.
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <cstddef>
#include <fstream>
#include <sstream>
#include <tuple>

#include "tests/cli/Program.h"
#include "tests/cli/VerificationFixture.h"

namespace kestrix::cli {
namespace {

class VerificationBytes : public VerificationFixture {
  protected:
    // Every column of every row of both tables with its kind, and how they are defined, past the application;
    // what cannot be read is said.
    std::string rowsInFile() const {
        std::ostringstream rows;
        sqlite3* opened = nullptr;
        bool good = sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK;
        const auto addRow = [](void* to, int count, char** columns, char**) {
            for (int i = 0; i < count; ++i) *static_cast<std::ostringstream*>(to) << columns[i] << ' ';
            *static_cast<std::ostringstream*>(to) << '\n';
            return 0;
        };
        for (const auto& [table, columns] : kTables) {
            std::string sql = "SELECT 0";
            std::istringstream names(columns);
            for (std::string name; names >> name;) sql += ", typeof(" + name + "), hex(" + name + ")";
            sql += std::string(" FROM ") + table;
            good &= sqlite3_exec(opened, sql.c_str(), addRow, &rows, nullptr) == SQLITE_OK;
        }
        sqlite3_close(opened);
        if (!good) rows << "unreadable";
        return rows.str();
    }

  private:
    struct Table {
        const char* name;
        const char* columns;
    };
    static constexpr Table kTables[] = {
        {"measurefrom", "dataId recordId dataName function parameters result dateTime comments recordName"},
        {"evidence",
         "place event identity dataId measurement frame tripTimes equalFrames source accessory origin utc "
         "utcOffset sinceBoot program previous hash"},
        // As they are asked for: through the indexes.
        {"measurefrom WHERE recordId = 1", "dataId recordName"},
        {"measurefrom WHERE recordName = ''", "dataId recordId"},
        {"sqlite_master WHERE tbl_name IN ('measurefrom', 'evidence') AND type = 'table'",
         "type name tbl_name rootpage sql"},
    };
};

// Which bits are changed, and in which part of the file: each is a test of its own, so that they run beside
// each other. The lowest bit alone turns a text into bytes of the same length.
class ChangedBytes : public VerificationBytes,
                     public ::testing::WithParamInterface<std::tuple<int, std::size_t>> {};

constexpr std::size_t kParts = 3;
#ifdef KESTRIX_SANITIZE
constexpr std::size_t kStep = 17;  // each takes several times as long
#else
constexpr std::size_t kStep = 1;
#endif

TEST_P(ChangedBytes, AreFound) {
    const auto& [bits, part] = GetParam();
    recordSome(3);
    file();
    recordSome(2);
    dao_ = storage::ServiceDao(platform::DocumentsFolder(folder_.path()));
    run("PRAGMA page_size = 512; VACUUM");  // leaves little that is unused
    const std::string whole = contentOf(path_);
    const std::string rows = rowsInFile();
    std::size_t changedRows = 0;
    for (std::size_t at = whole.size() * part / kParts; at < whole.size() * (part + 1) / kParts;
         at += kStep) {
        std::fstream file(path_, std::ios::binary | std::ios::in | std::ios::out);
        const auto put = [&file, at](int byte) {
            file.seekp(static_cast<std::streamoff>(at));
            file.put(static_cast<char>(byte));
            file.flush();
        };
        put(whole[at] ^ bits);
        const Verification result = verify();
        // What changed no row may be said or not: it is another table's, or nobody's.
        if (rowsInFile() != rows) {
            ++changedRows;
            ASSERT_FALSE(result.isClean()) << "byte " << at;
            for (const auto& finding : result.findings)
                EXPECT_TRUE(finding.dataId != 0 || finding.place != 0 || finding.text.starts_with("the ") ||
                            finding.text.starts_with("measurement") || finding.text.starts_with("evidence"))
                    << "byte " << at << ": " << finding.text;
        }
        put(whole[at]);
    }
    EXPECT_GT(changedRows, 300U / kStep);
    EXPECT_TRUE(verify().isClean());
}

INSTANTIATE_TEST_SUITE_P(Every, ChangedBytes,
                         ::testing::Combine(::testing::Values(0x15, 0x01),
                                            ::testing::Range<std::size_t>(0, kParts)));

}  // namespace
}  // namespace kestrix::cli
