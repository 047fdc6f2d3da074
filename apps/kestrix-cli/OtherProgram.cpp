#include "apps/kestrix-cli/OtherProgram.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/Runner.h"

namespace kestrix::cli {

std::string_view commandWord(int argc, char** argv) {
    for (int at = 1; at < argc; ++at) {
        const std::string_view word = argv[at];
        if (word == "--settings") {
            ++at;
        } else if (word != "--verbose" && !word.starts_with("--settings=")) {
            return word.starts_with('-') ? std::string_view() : word;
        }
    }
    return {};
}

int becomeProgram(const char* path, int argc, char** argv) {
    std::error_code error;
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        program = (program.parent_path() / path).lexically_normal();
        execv(program.c_str(), argv);
        error = {errno, std::generic_category()};
    }
    fillClosedDescriptors();
    letFailedWritesAnswer();
    Runner runner(argc, argv);
    return runner.end(
        failed("the installation is not complete: " + program.string() + ": " + error.message()));
}

}  // namespace kestrix::cli
