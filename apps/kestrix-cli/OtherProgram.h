#pragma once

#include <string_view>

namespace kestrix::cli {

// The command that is given: the first word behind the options of the whole program. Empty when there is
// none, or something else.
std::string_view commandWord(int argc, char** argv);

// Becomes the program at `path`, which is relative to the folder of the running one, with the same arguments.
// Returns, with the exit status, only when there is no such program. Nothing of the process may have been
// changed before.
int becomeProgram(const char* path, int argc, char** argv);

}  // namespace kestrix::cli
