// The program of the commands `export`, which draws and mails, and `verify`, which reads reports: only these
// need fonts, certificates, a keyring, and what knows the inside of a PDF.

#include <array>

#include "apps/kestrix-cli/CommandLine.h"
#include "apps/kestrix-cli/ProgramLog.h"

namespace kestrix::cli {
extern const Command exportCommand;
extern const Command verifyCommand;
}  // namespace kestrix::cli

int main(int argc, char** argv) {
    using namespace kestrix::cli;
    static constexpr std::array kCommands{&exportCommand, &verifyCommand};
    return runCommandLine(argc, argv, {kCommands, installProgramLog});
}
