#pragma once

#include <functional>
#include <span>

#include "apps/kestrix-cli/Command.h"

namespace kestrix::cli {

// What a program of the command line consists of.
struct ProgramParts {
    std::span<const Command* const> commands;      // in the order of the help
    std::function<void(bool verbose)> installLog;  // before a command runs; none where nothing logs
};

// The whole program: reads the arguments, runs the command, answers the exit status.
int runCommandLine(int argc, char** argv, const ProgramParts& parts);

}  // namespace kestrix::cli
