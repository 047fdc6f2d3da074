// What is installed, all of it and nothing else, and that each of these files is what its readers expect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "tests/packaging/Shell.h"

namespace kestrix {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kFiles{
    "bin/kestrix",
    "bin/kestrix-cli",
    "lib/udev/rules.d/70-kestrix.rules",
    "libexec/kestrix/kestrix-bluetooth.so",
    "libexec/kestrix/kestrix-cli",
    "libexec/kestrix/kestrix-export",
    "libexec/kestrix/kestrix-mail.so",
    "share/applications/kestrix.desktop",
    "share/bash-completion/completions/kestrix",
    "share/bash-completion/completions/kestrix-cli",
    "share/doc/kestrix/changelog.gz",
    "share/doc/kestrix/copyright",
    "share/fish/vendor_completions.d/kestrix-cli.fish",
    "share/fish/vendor_completions.d/kestrix.fish",
    "share/icons/hicolor/128x128/apps/kestrix.png",
    "share/icons/hicolor/16x16/apps/kestrix.png",
    "share/icons/hicolor/22x22/apps/kestrix.png",
    "share/icons/hicolor/24x24/apps/kestrix.png",
    "share/icons/hicolor/256x256/apps/kestrix.png",
    "share/icons/hicolor/32x32/apps/kestrix.png",
    "share/icons/hicolor/48x48/apps/kestrix.png",
    "share/icons/hicolor/512x512/apps/kestrix.png",
    "share/icons/hicolor/64x64/apps/kestrix.png",
    "share/icons/hicolor/scalable/apps/kestrix.svg",
    "share/man/man1/kestrix-cli.1.gz",
    "share/man/man1/kestrix.1.gz",
    "share/metainfo/example.kestrix.Kestrix.metainfo.xml",
    "share/zsh/vendor-completions/_kestrix",
    "share/zsh/vendor-completions/_kestrix-cli",
};

class InstalledFiles : public ::testing::Test {
  protected:
    // Once for all tests: by the same rules that the package is made by.
    static void SetUpTestSuite() {
        folder_ = new QTemporaryDir;
        outputOf("cmake --install " KESTRIX_BINARY_DIR " --prefix " + root());
    }
    static void TearDownTestSuite() {
        delete folder_;
        folder_ = nullptr;
    }
    static std::string root() { return folder_->path().toStdString(); }
    static std::string path(const std::string& file) { return root() + "/" + file; }

    static std::vector<fs::path> files() {
        std::vector<fs::path> all;
        for (const auto& entry : fs::recursive_directory_iterator(root()))
            if (!entry.is_directory()) all.push_back(entry.path());
        return all;
    }

  private:
    static inline QTemporaryDir* folder_ = nullptr;
};

TEST_F(InstalledFiles, AreTheseAndNoOthers) {
    std::vector<std::string> found;
    for (const fs::path& file : files()) found.push_back(fs::relative(file, root()).string());
    EXPECT_THAT(found, ::testing::UnorderedElementsAreArray(kFiles));
}

TEST_F(InstalledFiles, ArePlainFilesThatEverybodyCanReadAndThatOnlyProgramsAreRunAs) {
    for (const fs::path& file : files()) {
        static const std::regex programs("/(bin/[a-z-]+|libexec/kestrix/[a-z-]+)$");
        const bool program = std::regex_search(file.string(), programs);
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file))) << file;
        EXPECT_EQ(outputOf("stat -c %a " + file.string()), program ? "755\n" : "644\n") << file;
    }
}

TEST_F(InstalledFiles, EachIconHasTheSizeOfItsFolder) {
    static const std::regex size("/([0-9]+)x\\1/");
    int icons = 0;
    for (const fs::path& file : files()) {
        std::smatch found;
        const std::string name = file.string();
        if (!std::regex_search(name, found, size)) continue;
        ++icons;
        // The width and the height of a PNG stand in its first chunk.
        const std::string eight = found[1].str();
        EXPECT_THAT(outputOf("od -A n -t u4 --endian=big -j 16 -N 8 " + name),
                    ::testing::MatchesRegex(" *" + eight + " +" + eight + "\n"))
            << file;
    }
    EXPECT_EQ(icons, 9);
}

TEST_F(InstalledFiles, TheDesktopFileHasNothingWrong) {
    EXPECT_EQ(outputOf("desktop-file-validate " + path("share/applications/kestrix.desktop")), "");
    EXPECT_NE(shell("sed 's/^Exec=.*//' " + path("share/applications/kestrix.desktop") + " >" +
                    path("broken.desktop") + " && desktop-file-validate " + path("broken.desktop") +
                    "; status=$?; rm " + path("broken.desktop") + "; exit $status")
                  .status,
              0)
        << "the tool finds nothing wrong with anything";
}

TEST_F(InstalledFiles, TheMetainfoHasNothingWrong) {
    const ShellAnswer answer = shell("appstreamcli validate --no-net --no-color " +
                                     path("share/metainfo/example.kestrix.Kestrix.metainfo.xml"));
    EXPECT_EQ(answer.status, 0) << answer.output;
    EXPECT_THAT(answer.output, ::testing::Not(::testing::HasSubstr("W: ")));
}

TEST_F(InstalledFiles, TheManualPagesAreThoseOfTheSourceAndHaveNothingWrong) {
    for (const std::string page : {"kestrix.1", "kestrix-cli.1"}) {
        const std::string file = path("share/man/man1/" + page + ".gz");
        EXPECT_EQ(outputOf("gzip -dc " + file), projectFile("packaging/" + page)) << page;
        EXPECT_EQ(outputOf("LC_ALL=C.UTF-8 MANROFFSEQ= MANWIDTH=100 man --warnings -E UTF-8 -l -Tutf8 -Z " +
                           file + " >/dev/null"),
                  "")
            << page;
    }
}

TEST_F(InstalledFiles, TheChangeLogIsTheSources) {
    EXPECT_EQ(outputOf("gzip -dc " + path("share/doc/kestrix/changelog.gz")),
              projectFile("packaging/changelog"));
}

std::string joinedGroup(const std::string& group) {
    const std::string script = projectFile("scripts/install-packages");
    std::smatch found;
    if (!std::regex_search(script, found, std::regex("\npackages\\[" + group + "\\]=\"([^\"]*)\"")))
        return "none";
    static const std::regex blanks("[ \n]+");
    const std::string words = std::regex_replace(found[1].str(), std::regex("^[ \n]+|[ \n]+$"), "");
    return std::regex_replace(words, blanks, ", ");
}

TEST(PackageRelations, AreThoseOfTheScriptThatInstallsWhatThisTreeNeeds) {
    const std::string config = outputOf("cat " KESTRIX_BINARY_DIR "/CPackConfig.cmake");
    EXPECT_THAT(config,
                ::testing::HasSubstr("set(CPACK_DEBIAN_PACKAGE_DEPENDS \"" + joinedGroup("run") + "\")"));
    EXPECT_THAT(config, ::testing::HasSubstr("set(CPACK_DEBIAN_PACKAGE_RECOMMENDS \"" +
                                             joinedGroup("desktop") + "\")"));
    EXPECT_THAT(joinedGroup("run"), ::testing::HasSubstr("qml6-module-qtquick, "));
}

}  // namespace
}  // namespace kestrix
