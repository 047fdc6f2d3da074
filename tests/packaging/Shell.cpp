#include "tests/packaging/Shell.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kestrix {

ShellAnswer shell(const std::string& command) {
    FILE* pipe = popen(("{ " + command + "\n} 2>&1").c_str(), "r");  // NOLINT(cert-env33-c): our own command
    if (pipe == nullptr) return {};
    ShellAnswer answer;
    std::array<char, 4096> piece{};
    for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;)
        answer.output.append(piece.data(), size);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) answer.status = WEXITSTATUS(status);
    return answer;
}

std::string outputOf(const std::string& command) {
    const ShellAnswer answer = shell(command);
    EXPECT_EQ(answer.status, 0) << command << "\n" << answer.output;
    return answer.output;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::string projectFile(const std::string& path) {
    std::ifstream file(std::string(KESTRIX_SOURCE_DIR "/") + path);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kestrix
