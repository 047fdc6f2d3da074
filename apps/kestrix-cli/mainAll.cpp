// The program with all commands but those that have one of their own.

#include "apps/kestrix-cli/CommandLine.h"
#include "apps/kestrix-cli/Commands.h"
#include "apps/kestrix-cli/OtherProgram.h"
#include "apps/kestrix-cli/OtherRows.h"
#include "apps/kestrix-cli/ProgramLog.h"

int main(int argc, char** argv) {
    using namespace kestrix::cli;
    if (isOfExport(commandWord(argc, argv))) return becomeProgram("kestrix-export", argc, argv);
    return runCommandLine(argc, argv, {allCommands(), installProgramLog});
}
