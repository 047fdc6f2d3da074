// Decodes and tells its version. Everything else is done by the program with all commands, which this process
// becomes: loading what they need would take most of the time that these two have.

#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "apps/kestrix-cli/CommandLine.h"
#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/Runner.h"

namespace kestrix::cli {

extern const Command decodeCommand;

namespace {

// The first word, behind options that stand before a command.
bool isDoneHere(int argc, char** argv) {
    int at = 1;
    while (at + 2 < argc && std::string_view(argv[at]) == "--settings") at += 2;
    if (at >= argc) return false;
    const std::string_view word = argv[at];
    return word == "decode" || (word == "--version" && at + 1 == argc);
}

// Returns only when there is no such program. Nothing of the process may have been changed before.
int becomeProgramOfAllCommands(int argc, char** argv) {
    std::error_code error;
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        program = (program.parent_path() / KESTRIX_ALL_COMMANDS).lexically_normal();
        execv(program.c_str(), argv);
        error = {errno, std::generic_category()};
    }
    fillClosedDescriptors();
    letFailedWritesAnswer();
    Runner runner(argc, argv);
    return runner.end(
        failed("the installation is not complete: " + program.string() + ": " + error.message()));
}

}  // namespace
}  // namespace kestrix::cli

int main(int argc, char** argv) {
    using namespace kestrix::cli;
    static constexpr std::array kCommands{&decodeCommand};
    if (isDoneHere(argc, argv)) return runCommandLine(argc, argv, {kCommands, {}});
    return becomeProgramOfAllCommands(argc, argv);
}
