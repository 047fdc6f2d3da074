// The scripts that build and check, each in a small tree of the test's own.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <string>

namespace kestrix {
namespace {

const QString kSource = QStringLiteral(KESTRIX_SOURCE_DIR);

struct Ended {
    int status = -1;
    std::string output;  // standard output and standard error
};

class BuildScripts : public ::testing::Test {
  protected:
    QString path(const QString& name) const { return folder_.filePath(name); }

    void write(const QString& name, const QByteArray& content, bool program = false) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        if (program) file.setPermissions(file.permissions() | QFile::ExeOwner);
    }
    void copyScript(const QString& name, const QString& tree = {}) {
        ASSERT_TRUE(QDir().mkpath(path(tree + QStringLiteral("scripts"))));
        ASSERT_TRUE(QFile::copy(kSource + QStringLiteral("/scripts/") + name,
                                path(tree + QStringLiteral("scripts/") + name)));
    }
    Ended run(const QString& command) {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PATH"),
                           path(QStringLiteral("bin:")) + environment.value(QStringLiteral("PATH")));
        environment.remove(QStringLiteral("CCACHE_DISABLE"));
        environment.insert(QStringLiteral("CCACHE_DIR"), path(QStringLiteral("cache")));
        environment.insert(QStringLiteral("CCACHE_CONFIGPATH"), path(QStringLiteral("no.conf")));
        environment.remove(QStringLiteral("CI"));
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(folder_.path());
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start(QStringLiteral("bash"), {QStringLiteral("-c"), command});
        constexpr int kOnlyAHungProgramNeeds = 120'000;
        EXPECT_TRUE(shell.waitForFinished(kOnlyAHungProgramNeeds));
        return {shell.exitCode(), shell.readAll().toStdString()};
    }
    std::string content(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString()
                                              : "there is no " + name.toStdString();
    }

    QTemporaryDir folder_;
};

TEST_F(BuildScripts, AUsersBuildDoesNotFailOnAWarningAndTheChecksDo) {
    QFile presets(kSource + QStringLiteral("/CMakePresets.json"));
    ASSERT_TRUE(presets.open(QIODevice::ReadOnly));
    // A tree of one file that warns, with the project's own rules for compilers.
    write(QStringLiteral("CMakePresets.json"), presets.readAll());
    write(QStringLiteral("CMakeLists.txt"),
          "cmake_minimum_required(VERSION 3.25)\nproject(warns LANGUAGES CXX)\ninclude(" + kSource.toUtf8() +
              "/cmake/KestrixToolchain.cmake)\nadd_library(warns STATIC warns.cpp)\n"
              "target_compile_options(warns PRIVATE ${KESTRIX_WARNINGS})\n");
    write(QStringLiteral("warns.cpp"), "int narrowed(long wide) { return wide; }\n");
    copyScript(QStringLiteral("build"));
    copyScript(QStringLiteral("compiler-cache"));
    const Ended user = run(QStringLiteral("scripts/build release"));
    EXPECT_EQ(user.status, 0) << user.output;
    const Ended checked = run(QStringLiteral("CI=true scripts/build release"));
    EXPECT_NE(checked.status, 0);
    EXPECT_NE(checked.output.find("warns.cpp:1:34: error: "), std::string::npos) << checked.output;
}

TEST_F(BuildScripts, OtherPresetsAreConfiguredAfresh) {
    const auto presets = [](const char* compiler, const char* flags) {
        return QByteArray(
                   "{\"version\": 6, \"configurePresets\": [{\"name\": \"release\", \"generator\": "
                   "\"Ninja\", \"binaryDir\": \"${sourceDir}/build/release\", \"cacheVariables\": "
                   "{\"CMAKE_CXX_COMPILER\": \"") +
               compiler + "\", \"CMAKE_CXX_FLAGS\": \"" + flags +
               "\"}}], \"buildPresets\": [{\"name\": \"release\", \"configurePreset\": \"release\"}]}\n";
    };
    write(QStringLiteral("CMakeLists.txt"),
          "cmake_minimum_required(VERSION 3.25)\nproject(one LANGUAGES CXX)\nadd_library(one STATIC "
          "one.cpp)\n");
    write(QStringLiteral("one.cpp"), "#ifndef TOLD\n#error untold\n#endif\n");
    copyScript(QStringLiteral("build"));
    copyScript(QStringLiteral("compiler-cache"));
    write(QStringLiteral("CMakePresets.json"), presets("g++", "-DTOLD"));
    const Ended first = run(QStringLiteral("scripts/build release"));
    EXPECT_EQ(first.status, 0) << first.output;
    // With another compiler CMake by itself forgets the flags.
    write(QStringLiteral("CMakePresets.json"), presets("clang++-14", "-DTOLD -DTOO"));
    const Ended other = run(QStringLiteral("scripts/build release"));
    EXPECT_EQ(other.status, 0) << other.output;
    EXPECT_NE(content(QStringLiteral("build/release/build.ninja")).find("-DTOLD -DTOO"), std::string::npos);
}

TEST_F(BuildScripts, TheCompilerCacheKnowsAFileAgainInAnotherCopyOfTheTree) {
    for (const char* tree : {"one/", "two/"}) {
        const QString name = QString::fromLatin1(tree);
        copyScript(QStringLiteral("compiler-cache"), name);
        write(name + QStringLiteral("src/header.h"), "inline int header() { return 1; }\n");
        write(name + QStringLiteral("src/file.cpp"),
              "#include \"header.h\"\nint file() { return header(); }\n");
        const Ended compiled = run(
            QStringLiteral("cd %1 && . scripts/compiler-cache && mkdir build && cd build && ccache c++ -O2 "
                           "-I$PWD/../src -c $PWD/../src/file.cpp -o file.o")
                .arg(name));
        ASSERT_EQ(compiled.status, 0) << compiled.output;
    }
    const Ended statistics = run(QStringLiteral("ccache --print-stats"));
    EXPECT_NE(statistics.output.find("direct_cache_hit\t1"), std::string::npos) << statistics.output;
}

TEST_F(BuildScripts, StyleIsLookedAtInNewFilesTooAndIsMended) {
    copyScript(QStringLiteral("check-style"));
    write(QStringLiteral("scripts/install-packages"), "#!/bin/sh\n", true);
    // Says what it was asked to look at; with --dry-run it is never content.
    write(QStringLiteral("bin/clang-format"), "#!/bin/sh\necho \"$@\" >>asked\n[ \"$1\" = -i ]\n", true);
    write(QStringLiteral("src/known.cpp"), "int known;\n");
    write(QStringLiteral("src/gone.cpp"), "int gone;\n");
    ASSERT_EQ(run(QStringLiteral("git init -q && git add src && rm src/gone.cpp")).status, 0);
    write(QStringLiteral("src/fresh.cpp"), "int fresh;\n");
    const Ended looked = run(QStringLiteral("scripts/check-style --format-only"));
    EXPECT_NE(looked.status, 0);
    EXPECT_NE(looked.output.find("scripts/check-style --fix"), std::string::npos) << looked.output;
    EXPECT_EQ(run(QStringLiteral("scripts/check-style --fix")).status, 0);
    EXPECT_EQ(content(QStringLiteral("asked")),
              "--dry-run -Werror src/fresh.cpp src/known.cpp\n-i src/fresh.cpp src/known.cpp\n");
}

}  // namespace
}  // namespace kestrix
