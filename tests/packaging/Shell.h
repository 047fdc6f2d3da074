#pragma once

#include <string>
#include <vector>

namespace kestrix {

struct ShellAnswer {
    int status = -1;
    std::string output;  // standard output and standard error
};

// Runs it with /bin/sh, in the folder of the test.
ShellAnswer shell(const std::string& command);

// What must succeed; its output.
std::string outputOf(const std::string& command);

std::vector<std::string> linesOf(const std::string& text);

// A file of the project, by its path in it.
std::string projectFile(const std::string& path);

}  // namespace kestrix
