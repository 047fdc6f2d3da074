#pragma once

#include <functional>
#include <string>

namespace kestrix {

// Asks the display that the environment names for a connection, as the platform plugin will, which would
// abort the process where there is none. The connection lasts as long as this object: a server whose last
// client leaves begins anew, and drops whoever comes just then, so it is to last until the window's own is
// there.
class UsableDisplay {
  public:
    UsableDisplay();
    UsableDisplay(const UsableDisplay&) = delete;
    UsableDisplay& operator=(const UsableDisplay&) = delete;
    ~UsableDisplay() {
        if (disconnect_) disconnect_();
    }

    // Why no window can be shown, in a few words; empty: it can.
    const std::string& problem() const { return problem_; }

  private:
    std::string problem_;
    std::function<void()> disconnect_;
};

}  // namespace kestrix
