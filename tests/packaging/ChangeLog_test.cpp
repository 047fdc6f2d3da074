// The version and what is new in it stand in packaging/changelog; everything else that says them takes them
// from there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <regex>
#include <string>
#include <vector>

#include "tests/packaging/Shell.h"

namespace kestrix {
namespace {

const std::string kBuilt = KESTRIX_BINARY_DIR "/packaging/";

std::string versionOnTop() {
    static const std::regex top(R"(^kestrix \(([0-9.]+)\) )");
    const std::string changelog = projectFile("packaging/changelog");
    std::smatch found;
    return std::regex_search(changelog, found, top) ? found[1].str() : "none";
}

TEST(ChangeLog, ItsFirstVersionIsTheProgramsAndTheDocuments) {
    EXPECT_EQ(versionOnTop(), KESTRIX_VERSION);
    EXPECT_EQ(outputOf(KESTRIX_BINARY_DIR "/bin/kestrix --version"), "kestrix " + versionOnTop() + "\n");
    EXPECT_EQ(outputOf(KESTRIX_BINARY_DIR "/bin/kestrix-cli --version"),
              "kestrix-cli " + versionOnTop() + "\n");
    EXPECT_THAT(projectFile("docs/command-line.md"),
                ::testing::HasSubstr("\nkestrix-cli " + versionOnTop() + "\n"));
}

// Words without the line ends and blanks between them.
std::string joined(const std::string& text) {
    static const std::regex blanks("[ \n]+");
    return std::regex_replace(text, blanks, " ");
}

TEST(ChangeLog, ItsVersionsWithTheirPointsAreThoseThatSoftwareCentresShow) {
    const std::string changelog = projectFile("packaging/changelog");
    const std::string metainfo = outputOf("cat " + kBuilt + "example.kestrix.Kestrix.metainfo.xml");
    static const std::regex version("(?:^|\n)kestrix \\(([0-9.]+)\\)");
    static const std::regex release(
        "<release version=\"([0-9.]+)\" date=\"20[0-9]{2}-[01][0-9]-[0-3][0-9]\"");
    static const std::regex point("\n  \\* ((?:[^\n]+\n    )*[^\n]+)");
    static const std::regex item("<li>([^<]*)</li>");
    const auto all = [](const std::string& text, const std::regex& regex) {
        std::vector<std::string> found;
        for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at)
            found.push_back(joined((*at)[1]));
        return found;
    };
    EXPECT_EQ(all(metainfo, release), all(changelog, version));
    EXPECT_EQ(all(metainfo, item), all(changelog, point));
    EXPECT_THAT(all(metainfo, item), ::testing::SizeIs(::testing::Ge(5U)));
}

TEST(ChangeLog, AnAwkwardTextReachesTheSoftwareCentresAsItIs) {
    const QTemporaryDir folder;
    const std::string made = outputOf(
        "cd " + folder.path().toStdString() +
        " && printf 'One & two\\n< three.\\n\\nFour.\\n' >description && printf 'kestrix (1.2.3) bookworm; "
        "urgency=medium\\n\\n"
        "  * A <b> & c\\n    d\\n  * E\\n\\n -- Who <w@x.example>  Mon, 02 Mar 2026 01:02:03 +0000\\n\\n"
        "kestrix (1.2.2) bookworm; urgency=medium\\n\\n  * F\\n\\n -- Who <w@x.example>  Sun, 31 Aug 2025 "
        "01:02:03 +0000\\n' "
        ">changelog && awk -f " KESTRIX_SOURCE_DIR
        "/packaging/metainfo.awk description changelog " KESTRIX_SOURCE_DIR
        "/packaging/kestrix.metainfo.xml.in");
    EXPECT_THAT(made, ::testing::HasSubstr("<p>One &amp; two &lt; three.</p>\n    <p>Four.</p>\n"));
    EXPECT_THAT(
        made, ::testing::ContainsRegex(
                  "version=\"1.2.3\" date=\"2026-03-02\">[^/]*<li>A &lt;b&gt; &amp; c d</li>\n *<li>E</li>"));
    EXPECT_THAT(made, ::testing::ContainsRegex("version=\"1.2.2\" date=\"2025-08-31\">[^/]*<li>F</li>"));
}

}  // namespace
}  // namespace kestrix
