#pragma once

#include <string>
#include <vector>

namespace kestrix::cli {

// How a command is called in the tests that every command passes.
struct CommandExample {
    std::string command;
    // With "--seconds 0" behind it, it runs until it is ended, with its standard input open; empty: it ends
    // by itself. FOLDER stands for a folder of the test's own, with a database that holds test record 1.
    std::vector<std::string> endless;
    // Writes a little to standard output and ends by itself; empty: it does not write there.
    std::vector<std::string> brief;
};

// Every registered command has its row.
const std::vector<CommandExample>& commandExamples();

// The words with the folder in its place.
std::vector<std::string> inFolder(std::vector<std::string> words, const std::string& folder);

}  // namespace kestrix::cli
