#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "apps/kestrix-cli/TesterLine.h"

namespace kestrix::cli {

// A pseudo terminal that is one tester's serial port, under a name that stays while the terminal behind it is
// replaced at each hang-up.
class PtyLine final : public LineEnd {
  public:
    PtyLine(platform::GeneratedDialer::MakeProducer producers, platform::Scheduler& scheduler);
    PtyLine(const PtyLine&) = delete;
    PtyLine& operator=(const PtyLine&) = delete;
    ~PtyLine() override;

    // link: where the port's name goes, a symbolic link. One that a simulator left behind is replaced,
    // anything else is left alone. Empty, or why it cannot.
    std::string open(const std::string& link);
    // The absolute path of the link, wherever somebody looks for it from.
    std::string name() const { return link_.string(); }

    std::size_t room() const override;
    void write(std::span<const std::uint8_t> bytes) override;
    void hangUp() override;

  private:
    std::string openTerminal();
    void closeTerminal();
    bool clientIsThere() const;
    bool clientHasReadAll() const;
    void finishHangingUp();
    void look();
    void flush();

    platform::Scheduler& scheduler_;
    TesterLine tester_;
    std::filesystem::path link_;
    std::filesystem::path terminal_;  // that the link leads to
    int master_ = -1;
    std::vector<std::uint8_t> unsent_;
    std::optional<platform::Scheduler::TimePoint> hangsUpBy_;  // while the client reads the rest
    platform::Scheduler::Timer timer_;
};

}  // namespace kestrix::cli
