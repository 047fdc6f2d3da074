#include "bench/window/Child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kestrix::bench {
namespace {

[[noreturn]] void fail(const std::string& program, const char* why) {
    std::fprintf(stderr, "%s: %s\n", program.c_str(), why);
    std::exit(1);
}

std::string readToTheEnd(int descriptor) {
    std::string text;
    std::array<char, 4096> piece;
    for (ssize_t count = 0; (count = read(descriptor, piece.data(), piece.size())) > 0;)
        text.append(piece.data(), static_cast<std::size_t>(count));
    return text;
}

}  // namespace

TemporaryFolder::TemporaryFolder()
    : path_((std::filesystem::temp_directory_path() / "kestrix_bench_XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) fail(path_, "cannot be made");
    setenv("XDG_RUNTIME_DIR", path_.c_str(), 0);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string outputOf(const std::string& program, const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) fail(program, "no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);

    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), &actions, nullptr, pointers.data(), environ) != 0)
        fail(program, "does not start");
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    std::string output = readToTheEnd(ends[0]);
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) fail(program, "failed");
    return output;
}

}  // namespace kestrix::bench
