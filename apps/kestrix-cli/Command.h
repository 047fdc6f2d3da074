#pragma once

#include <functional>

#include "apps/kestrix-cli/Ending.h"

namespace kestrix::cli {

class CommandOptions;
class Runner;

// What a command does once its options are read.
using Action = std::function<Ending(Runner&)>;

// What SIGINT, SIGTERM or SIGHUP means to a command.
enum class AtSignal {
    EndsIt,       // its usual end: the status says what it did until then
    CutsItShort,  // its work is not done: it puts everything in order and dies of the signal
};

// One command of the program.
struct Command {
    const char* name;
    const char* summary;  // one line of the help
    AtSignal atSignal;
    // Tells its own options, and what it does with them. Called only for the command that was given. None in
    // a program that only knows of it: another one has it.
    Action (*describe)(CommandOptions& options);
};

}  // namespace kestrix::cli
