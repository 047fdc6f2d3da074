#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "platform/Accessory.h"
#include "platform/ByteChannel.h"

namespace kestrix::testing {

// What a FakeChannel's owner and its test share; it outlives the channel.
struct FakeLine {
    std::deque<std::uint8_t> incoming;  // to be read
    std::vector<std::uint8_t> written;
    std::vector<std::size_t> reads;  // the size of each read that gave bytes
    std::size_t room = 1 << 20;      // bytes that the channel takes
    std::size_t most = 1 << 20;      // bytes that one write takes
    bool ended = false;              // what is in `incoming` can still be read
    bool readFails = false;
    bool writeFails = false;
    int closeCalls = 0;
    platform::ByteChannel* channel = nullptr;  // none once it is closed or destroyed

    void receive(std::span<const std::uint8_t> bytes);  // arrives, with its event
    void tellBytes();                                   // the event alone
    void makeRoom(std::size_t bytes);                   // with its event
    void end(const std::string& why);                   // with its event
};

class FakeChannel final : public platform::ByteChannel {
  public:
    explicit FakeChannel(FakeLine& line) : line_(line) { line_.channel = this; }
    ~FakeChannel() override {
        if (line_.channel == this) line_.channel = nullptr;  // a newer one may have the line
    }

    std::size_t bytesAvailable() const override;
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override;
    bool hasSpaceAvailable() const override { return !closed_ && !line_.ended && line_.room > 0; }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override;
    void close() override;

  private:
    FakeLine& line_;
    bool closed_ = false;
};

// Opens FakeChannels on lines that the test owns, in order; refuses when there is none left.
class FakeOpener final : public platform::ChannelOpener {
  public:
    std::unique_ptr<platform::ByteChannel> openChannel(const platform::Accessory&,
                                                       const std::string&) override;
    std::deque<FakeLine*> lines;
};

}  // namespace kestrix::testing
