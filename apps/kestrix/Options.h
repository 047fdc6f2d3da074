#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kestrix {

// What the command line says.
struct Options {
    std::vector<std::string> uris;
    std::string choice;  // a URI
    std::string documents;
    std::string settings;
    std::string tour;      // the folder; empty: no tour
    bool console = false;  // the diagnostics console in place of the application
    bool verbose = false;
};

// None when the program ends here (help, version, wrong usage), with its exit status.
std::optional<Options> readOptions(int argc, char** argv, int& exitStatus);

}  // namespace kestrix
