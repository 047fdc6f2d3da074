#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/ByteChannel.h"

namespace kestrix::platform {

// An open stream socket. Who holds it keeps it open, but any of them may end the line.
class StreamSocket {
  public:
    // Takes the descriptor, which reads and writes without waiting from now on.
    explicit StreamSocket(int descriptor);
    StreamSocket(const StreamSocket&) = delete;
    StreamSocket& operator=(const StreamSocket&) = delete;
    ~StreamSocket();

    int descriptor() const { return descriptor_; }
    // Ends the line for every copy of the descriptor, also those of other programs.
    void hangUp() const;

  private:
    int descriptor_;
};

// A channel over a stream socket that somebody else has connected.
class DescriptorChannel final : public ByteChannel {
  public:
    explicit DescriptorChannel(std::shared_ptr<StreamSocket> socket);
    ~DescriptorChannel() override;

    std::size_t bytesAvailable() const override { return closed_ ? 0 : incoming_.size() - taken_; }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override;
    bool hasSpaceAvailable() const override;
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override;
    void close() override;

  private:
    void receive();
    void send();
    void end(const std::string& why);

    std::shared_ptr<StreamSocket> socket_;
    std::unique_ptr<QSocketNotifier> readable_;
    std::unique_ptr<QSocketNotifier> writable_;
    std::vector<std::uint8_t> incoming_;
    std::size_t taken_ = 0;  // bytes at its front that were read
    std::vector<std::uint8_t> outgoing_;
    bool ended_ = false;        // nothing more comes
    bool writeFailed_ = false;  // nothing more goes; what has come is still to be received
    bool closed_ = false;
};

}  // namespace kestrix::platform
