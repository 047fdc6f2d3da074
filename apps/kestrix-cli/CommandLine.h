#pragma once

namespace kestrix::cli {

// The whole program: reads the arguments, runs the command, answers the exit status.
int runCommandLine(int argc, char** argv);

}  // namespace kestrix::cli
