#pragma once

#include <string>

#include "tests/cli/Program.h"

namespace kestrix::cli {

// A pair of terminals: the test holds the tester's end.
struct SerialPort {
    SerialPort();
    Descriptor tester;
    Descriptor user;
    std::string name;
};

}  // namespace kestrix::cli
