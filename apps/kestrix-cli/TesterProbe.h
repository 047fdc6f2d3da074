#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "link/FrameExtractor.h"
#include "platform/AccessorySource.h"
#include "platform/EASession.h"

namespace kestrix::cli {

// Looks at one source until a valid frame has come, and knows how far it got.
class TesterProbe final : private platform::AccessorySourceObserver, private platform::StreamDelegate {
  public:
    // The source starts at once; `found` is called from the event loop, once.
    TesterProbe(std::unique_ptr<platform::AccessorySource> source, std::function<void()> found);
    TesterProbe(const TesterProbe&) = delete;
    TesterProbe& operator=(const TesterProbe&) = delete;
    ~TesterProbe() override;

    bool found() const { return foundTester_; }
    std::string uri() const { return source_->uri(); }
    // The tester's function, or the step that fails and the source's own reason, as one line.
    std::string report() const;

  private:
    void appeared(const platform::AccessoryPtr& accessory) override;
    void disappeared(const platform::AccessoryPtr& accessory) override;
    void searchChanged() override;
    void stream(platform::Stream& stream, platform::StreamEvent event) override;

    std::unique_ptr<platform::AccessorySource> source_;
    std::function<void()> found_;
    std::unique_ptr<platform::EASession> session_;
    link::FrameExtractor frames_;
    platform::FailedStep failed_ = platform::FailedStep::None;  // the last one, and why
    std::string why_;
    std::uint64_t bytes_ = 0;
    bool foundTester_ = false;
    std::string function_;  // of the first valid frame; may be empty
};

}  // namespace kestrix::cli
