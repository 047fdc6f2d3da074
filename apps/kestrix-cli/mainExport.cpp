// The program of the command `export`, which draws and mails: only it needs fonts, certificates and a
// keyring.

#include <array>

#include "apps/kestrix-cli/CommandLine.h"
#include "apps/kestrix-cli/ProgramLog.h"

namespace kestrix::cli {
extern const Command exportCommand;
}  // namespace kestrix::cli

int main(int argc, char** argv) {
    using namespace kestrix::cli;
    static constexpr std::array kCommands{&exportCommand};
    return runCommandLine(argc, argv, {kCommands, installProgramLog});
}
