// Decodes and tells its version. Everything else is done by programs with more commands, one of which this
// process becomes: loading what they need would take most of the time that these two have.

#include <array>
#include <string_view>

#include "apps/kestrix-cli/CommandLine.h"
#include "apps/kestrix-cli/OtherProgram.h"
#include "apps/kestrix-cli/OtherRows.h"

namespace kestrix::cli {
extern const Command decodeCommand;
}  // namespace kestrix::cli

int main(int argc, char** argv) {
    using namespace kestrix::cli;
    static constexpr std::array kCommands{&decodeCommand};
    const std::string_view word = commandWord(argc, argv);
    if (word == decodeCommand.name || (argc == 2 && std::string_view(argv[1]) == "--version"))
        return runCommandLine(argc, argv, {kCommands, {}});
    return becomeProgram(isOfExport(word) ? KESTRIX_EXPORT : KESTRIX_ALL_COMMANDS, argc, argv);
}
