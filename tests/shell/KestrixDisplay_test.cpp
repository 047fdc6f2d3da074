// kestrix as a whole program, and the display that it is to show its window on.
#include <gtest/gtest.h>

#include <sys/socket.h>

#include <csignal>
#include <optional>
#include <string>
#include <vector>

#include "tests/cli/Program.h"
#include "tests/cli/Sockets.h"

namespace kestrix {
namespace {

using cli::Program;
using cli::Surroundings;

Surroundings onDisplay(std::vector<std::string> environment) {
    Surroundings made;
    made.program = "kestrix";
    made.environment = std::move(environment);
    for (const char* otherwise :
         {"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM=", "XDG_RUNTIME_DIR=/none"})
        made.environment.emplace_back(otherwise);  // the first of a name counts
    return made;
}

TEST(KestrixDisplay, OneThatCannotBeUsedIsOneLineAndOne) {
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "there is no display"},
        {{"DISPLAY=:9999"}, "the display :9999 cannot be used"},
        {{"DISPLAY=nonsense"}, "the display nonsense cannot be used"},
        {{"WAYLAND_DISPLAY=nowhere"}, "the display nowhere cannot be used"},
        {{"DISPLAY=:9999", "WAYLAND_DISPLAY=nowhere"}, "the display :9999 and nowhere cannot be used"},
        {{"DISPLAY=:9999", "QT_QPA_PLATFORM=xcb"}, "the display :9999 cannot be used"},
        {{"DISPLAY=:9999", "QT_QPA_PLATFORM=wayland;xcb:any"}, "the display :9999 cannot be used"},
        {{"DISPLAY=:9999", "QT_QPA_PLATFORM=wayland-egl"}, "there is no display"},
    };
    for (const auto& [environment, problem] : cases) {
        SCOPED_TRACE(::testing::PrintToString(environment));
        const cli::Result result = cli::run({"--connect", "simulator:"}, {}, onDisplay(environment));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, std::string("kestrix: ") + problem +
                                    "; --tour DIR writes pictures, and kestrix-cli works in a terminal\n");
    }
}

// As much of an X server as a client needs to be content with its connection.
class DisplayServer {
  public:
    std::string name() const { return "127.0.0.1:" + std::to_string(listener_.port() - 6000); }
    cli::Descriptor accept() const { return listener_.accept(); }
    // Answers the client's request, which must have come.
    static void admit(const cli::Descriptor& client) {
        constexpr std::size_t kRequest = 12;
        EXPECT_EQ(cli::receive(client, kRequest).size(), kRequest);
        std::string answer(40, '\0');
        answer[0] = 1;   // success
        answer[2] = 11;  // the protocol's version
        answer[6] = 8;   // four bytes each that follow the first eight
        cli::sendAll(client, answer);
    }

  private:
    cli::Listener listener_;
};

TEST(KestrixDisplay, OneThatAnswersIsUsed) {
    const DisplayServer server;
    Program program({"--connect", "simulator:"}, onDisplay({"DISPLAY=" + server.name()}));
    const cli::Descriptor asking = server.accept();
    DisplayServer::admit(asking);
    EXPECT_TRUE(server.accept().isOpen());  // the window's own
}

// A server without another client would begin anew in between, and drop the window's.
TEST(KestrixDisplay, OneThatAnswersHasAClientUntilTheWindowsOwn) {
    const DisplayServer server;
    Program program({"--connect", "simulator:"}, onDisplay({"DISPLAY=" + server.name()}));
    const cli::Descriptor asking = server.accept();
    DisplayServer::admit(asking);
    const cli::Descriptor own = server.accept();
    char byte = 0;
    EXPECT_NE(recv(asking.get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT), 0) << "its end";
}

TEST(KestrixDisplay, ASignalBeforeThereIsAWindowEndsTheProgramInOrder) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const DisplayServer server;
        Program program({"--connect", "simulator:"}, onDisplay({"DISPLAY=" + server.name()}));
        const cli::Descriptor asking = server.accept();
        ASSERT_TRUE(program.waitUntilItCatches(number));
        program.signal(number);
        DisplayServer::admit(asking);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(program.error(), "");
    }
}

}  // namespace
}  // namespace kestrix
