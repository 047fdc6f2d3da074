#include "tests/support/OrdinaryUser.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace kestrix::testing {

std::string asOrdinaryUser(const std::function<std::string()>& report) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return "there is no pipe";
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(kNobody) != 0) _exit(1);
        const std::string text = report();
        _exit(::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::array<char, 4096> text{};
    const ssize_t length = read(ends[0], text.data(), text.size());
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    if (status != 0) return "its process failed";
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

}  // namespace kestrix::testing
