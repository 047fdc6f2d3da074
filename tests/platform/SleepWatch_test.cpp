#include "platform/SleepWatch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace kestrix::platform {
namespace {

// What the system says of the timers that this process has open.
std::multiset<std::string> openTimers() {
    std::multiset<std::string> timers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fdinfo")) {
        std::ostringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        const std::string all = text.str();
        if (all.find("clockid: ") != std::string::npos) timers.insert(all.substr(all.find("clockid: ")));
    }
    return timers;
}

// No test can send the computer to sleep: that its timer is of the kind that the system cancels then.
TEST(SleepWatch, HasTheSystemTellWhenTheClockHasJumped) {
    const auto before = openTimers();
    {
        const SleepWatch watch([] { FAIL() << "nobody slept"; });
        auto timers = openTimers();
        ASSERT_EQ(timers.size(), before.size() + 1);
        for (const std::string& timer : before) timers.extract(timer);
        const std::string& own = *timers.begin();
        EXPECT_EQ(own.rfind("clockid: 0\n", 0), 0U) << own << "not the clock that is set";
        EXPECT_NE(own.find("settime flags: 03\n"), std::string::npos)
            << own << "not cancelled when it is set";
    }
    EXPECT_EQ(openTimers(), before);
}

}  // namespace
}  // namespace kestrix::platform
