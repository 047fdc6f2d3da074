#pragma once

#include <cstdint>
#include <deque>
#include <span>
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
    bool readFails = false;
    bool writeFails = false;
    int closeCalls = 0;
    platform::ByteChannel* channel = nullptr;  // none once it is destroyed

    void receive(std::span<const std::uint8_t> bytes);  // arrives, with its event
    void makeRoom(std::size_t bytes);                   // with its event
};

class FakeChannel final : public platform::ByteChannel {
  public:
    explicit FakeChannel(FakeLine& line) : line_(line) { line_.channel = this; }
    ~FakeChannel() override { line_.channel = nullptr; }

    std::size_t bytesAvailable() const override { return line_.readFails ? 1 : line_.incoming.size(); }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override;
    bool hasSpaceAvailable() const override { return line_.room > 0; }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override;
    void close() override { ++line_.closeCalls; }

  private:
    FakeLine& line_;
};

// Opens FakeChannels on lines that the test owns, in order; refuses when there is none left.
class FakeOpener final : public platform::ChannelOpener {
  public:
    std::unique_ptr<platform::ByteChannel> openChannel(const platform::Accessory&,
                                                       const std::string&) override;
    std::deque<FakeLine*> lines;
};

}  // namespace kestrix::testing
