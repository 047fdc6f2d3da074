#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ByteChannel.h"
#include "platform/Dialer.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// Makes the bytes of a tester that is not there: a capture, or a simulator.
class ByteProducer {
  public:
    struct Piece {
        std::chrono::milliseconds wait{0};  // since the piece before
        std::vector<std::uint8_t> bytes;
        bool closes = false;  // the channel ends behind these bytes
    };
    virtual ~ByteProducer() = default;
    // Fills in the next piece; false when there is none any more.
    virtual bool next(Piece& piece) = 0;
};

// Channels whose bytes a producer makes, at its pace. A later channel goes on where the one before ended.
// Behind a piece that closes, dials fail until the wait of the next piece is over.
class GeneratedDialer final : public Dialer {
  public:
    // Called for the first channel, and again for the next one after its producer has come to its end. None,
    // with the reason in `problem`, when there is nothing (more) to play.
    using MakeProducer = std::function<std::unique_ptr<ByteProducer>(std::string& problem)>;

    GeneratedDialer(MakeProducer makeProducer, Scheduler& scheduler);
    ~GeneratedDialer() override;

    void dial(Done done) override;
    void cancel() override {}

  private:
    struct Feed;
    class Channel;
    MakeProducer makeProducer_;
    Scheduler& scheduler_;
    std::shared_ptr<Feed> feed_;
};

}  // namespace kestrix::platform
