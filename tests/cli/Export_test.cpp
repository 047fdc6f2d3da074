// `kestrix-cli export`, as a whole program: files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/cli/ExportFixture.h"

namespace kestrix::cli {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

using Export = ExportFixture;

TEST_F(Export, WritesTheTextIntoTheFolderAndTellsItsPath) {
    const Result result = exported({"--csv"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(complaintsIn(result.error), IsEmpty());
    const std::vector<std::string> told = linesOf(result.output);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], MatchesRegex(".*/[0-9]{14}\\.csv"));
    EXPECT_EQ(fs::path(told[0]).parent_path(), fs::path(path_));
    const QString text = utf16(contentOf(told[0]));
    EXPECT_THAT(text.toStdString(), StartsWith("Name          Company"));
    EXPECT_THAT(text.toStdString(), HasSubstr("House 7     Volt & Sons     "));
    EXPECT_THAT(text.toStdString(), HasSubstr("     S_1     EARTH          18.5Ω     2026-03-04 05:06:07\n"));
    EXPECT_EQ(fs::status(told[0]).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Export, DrawsTheReportWithoutADisplay) {
    const Result result = exported({"--pdf"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(complaintsIn(result.error), IsEmpty());
    const std::vector<std::string> told = linesOf(result.output);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], MatchesRegex(".*/[0-9]{14}\\.pdf"));
    EXPECT_THAT(contentOf(told[0]), StartsWith("%PDF-"));
    EXPECT_THAT(textOfPdf(told[0]), HasSubstr("18.5Ω"));
}

TEST_F(Export, WritesForSpreadsheetsAndForProgramsToStandardOutput) {
    const Result csv = exported({"--format", "csv", "--output", "-"});
    EXPECT_EQ(csv.status, 0) << csv.error;
    EXPECT_THAT(csv.output, HasSubstr("2026-03-04T05:06:07"));
    EXPECT_THAT(csv.output, HasSubstr("\r\n"));
    const Result json = exported({"--format", "json", "--output", "-"});
    EXPECT_EQ(json.status, 0) << json.error;
    const auto read = nlohmann::json::parse(json.output);
    EXPECT_EQ(read["measurements"].size(), 2U);
    EXPECT_EQ(filesIn(path_), files_) << "nothing stays in the folder";
}

TEST_F(Export, TheTextAndTheReportGoThroughAPipeToo) {
    const std::string file = path_ + "/through";
    writeFile(file, "");
    EXPECT_EQ(exported({"--csv", "--output", "-"}, {.output = file}).status, 0);
    EXPECT_THAT(utf16(contentOf(file)).toStdString(), HasSubstr("S_2"));
    EXPECT_EQ(exported({"--pdf", "--output", "-"}, {.output = file}).status, 0);
    EXPECT_THAT(contentOf(file), StartsWith("%PDF-"));
}

TEST_F(Export, RawBytesDoNotGarbleATerminal) {
    for (const char* format : {"--csv", "--pdf"}) {
        const Result result = exported({format, "--output", "-"}, {.terminal = true});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.output + result.error,
                    HasSubstr("standard output is a terminal, which raw bytes would garble"));
    }
}

TEST_F(Export, AFileThatExistsIsLeftAsItIs) {
    const std::string file = path_ + "/mine.txt";
    writeFile(file, "mine");
    for (const char* format : {"--csv", "--pdf"}) {
        const Result result = exported({format, "--output", file});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(complaintsIn(result.error), ElementsAre(StartsWith("kestrix-cli: " + file + ": ")));
        EXPECT_EQ(contentOf(file), "mine");
    }
    const Result made = exported({"--csv", "--output", path_ + "/new.csv"});
    EXPECT_EQ(made.status, 0) << made.error;
    EXPECT_EQ(made.output, "");
    EXPECT_THAT(utf16(contentOf(path_ + "/new.csv")).toStdString(), HasSubstr("S_2"));
}

TEST_F(Export, WhatCannotBeWrittenIsOneLineAndNoFile) {
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_exec);
    for (const char* format : {"--csv", "--pdf", "--format=json"}) {
        const Result result = exported({format}, {.unprivileged = true});
        EXPECT_EQ(result.status, 1) << format;
        EXPECT_THAT(complaintsIn(result.error), ElementsAre(HasSubstr("ermission"))) << format;
    }
    fs::permissions(path_, fs::perms::owner_all);
    EXPECT_EQ(filesIn(path_), files_);
}

TEST_F(Export, OfSeveralInOneSecondNoneReplacesAnother) {
    std::set<std::string> told;
    for (int time = 0; time < 4; ++time) {
        for (const std::string& path : linesOf(exported({"--csv"}).output)) told.insert(path);
    }
    EXPECT_EQ(told.size(), 4U);
    for (const std::string& path : told) EXPECT_THAT(utf16(contentOf(path)).toStdString(), HasSubstr("S_2"));
}

TEST_F(Export, WhatNamesNoFileIsWrongUsage) {
    for (const std::string& output : {std::string(), path_ + "/", std::string("bad\xff.csv")}) {
        const Result result = exported({"--csv", "--output", output});
        EXPECT_EQ(result.status, 2) << output;
        EXPECT_THAT(complaintsIn(result.error), ElementsAre(HasSubstr("--output")));
    }
}

TEST_F(Export, ARecordThatIsNotThereIsSaid) {
    for (const char* id : {"99", "2147483647"}) {
        const Result result = run({"export", id, "--csv", "--documents", path_});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(complaintsIn(result.error),
                    ElementsAre("kestrix-cli: there is no test record " + std::string(id) + " in " + path_));
    }
    const Result none = run({"export", "1", "--csv", "--documents", path_ + "/none"});
    EXPECT_EQ(none.status, 1);
    EXPECT_FALSE(fs::exists(path_ + "/none"));
}

TEST_F(Export, WrongUsageIsOneLine) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
        {{}, "one of --csv, --pdf, --format and --mail is needed"},
        {{"--csv", "--pdf"}, "--csv, --pdf and --format exclude each other"},
        {{"--format", "xml"}, "--format xml: known are csv and json"},
        {{"--csv", "--from", "a@b.c"}, "--from is for --mail"},
        {{"--csv", "--smtp", "smtp://h"}, "--smtp is for --mail"},
        {{"--csv", "--cafile", "f"}, "--cafile is for --mail"},
        {{"--csv", "--password-stdin"}, "--password-stdin is for --mail"},
        {{"--csv", "--draft"}, "--draft is for --mail"},
        {{"--csv", "--mail", "a@b.c", "--output", "f"}, "--mail and --output exclude each other"},
        {{"--mail", "-"}, "--mail: type the recipient's address"},
        {{"--mail", "a@b.c"}, "your own address is needed: --from ADDRESS"},
        {{"--mail", "a@b.c", "--from", "x"}, "the sender's address does not look like name@example.org"},
        {{"--mail", "a@b.c", "--from", "d@e.f"}, "the mail server is needed: --smtp smtp://USER@HOST:PORT"},
        {{"--mail", "a@b.c", "--from", "d@e.f", "--smtp", "http://h"},
         "--smtp: a mail server is written as smtp://USER@HOST:PORT or smtps://USER@HOST:PORT"},
        {{"--mail", "a@b.c", "--from", "d@e.f", "--smtp", "smtp://me:secret@h"},
         "a password does not belong into the server's address, where others could read it"},
    };
    for (const auto& [words, line] : wrong) {
        const Result result = exported(words);
        EXPECT_EQ(result.status, 2) << line;
        EXPECT_THAT(complaintsIn(result.error), ElementsAre(HasSubstr(line)));
        EXPECT_THAT(result.error, ::testing::Not(HasSubstr("secret")));
    }
    EXPECT_EQ(run({"export", "x", "--csv", "--documents", path_}).status, 2);
    EXPECT_EQ(run({"export", "--csv", "--documents", path_}).status, 2);
}

TEST_F(Export, AReaderWhoDoesNotReadHoldsUpNobodyElse) {
    Program program({"export", id_, "--format", "json", "--output", "-", "--documents", path_},
                    {.stalled = true});
    storage::MeasureData more;
    dao_.addMeasureForm(more);
    EXPECT_TRUE(dao_.lastOutcome().done) << dao_.lastOutcome().reason;
    program.startReading();
    EXPECT_EQ(program.waitForEnd(), 0);
}

TEST_F(Export, ItsHelpTellsItsOptions) {
    const Result result = run({"export", "--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("--password-stdin"));
    EXPECT_THAT(run({"--help"}).output, HasSubstr("Write a test record to a file, or mail it"));
}

}  // namespace
}  // namespace kestrix::cli
