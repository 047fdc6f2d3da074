#include "platform/EASession.h"

#include <utility>

#include "platform/ByteChannel.h"

namespace kestrix::platform {

class EASession::Input final : public InputStream {
  public:
    explicit Input(ByteChannel& channel) : channel_(channel) {}
    bool hasBytesAvailable() const override { return channel_.bytesAvailable() > 0; }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override { return channel_.read(buffer, max); }
    void close() override {
        InputStream::close();
        channel_.close();
    }

  private:
    ByteChannel& channel_;
};

class EASession::Output final : public OutputStream {
  public:
    explicit Output(ByteChannel& channel) : channel_(channel) {}
    bool hasSpaceAvailable() const override { return channel_.hasSpaceAvailable(); }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override { return channel_.write(bytes); }
    void close() override {
        OutputStream::close();
        channel_.close();
    }

  private:
    ByteChannel& channel_;
};

std::unique_ptr<EASession> EASession::create(const AccessoryPtr& accessory, const std::string& protocol) {
    if (!accessory || accessory->opener == nullptr) return nullptr;
    std::unique_ptr<ByteChannel> channel = accessory->opener->openChannel(*accessory, protocol);
    return channel ? std::make_unique<EASession>(std::move(channel)) : nullptr;
}

EASession::EASession(std::unique_ptr<ByteChannel> channel)
    : channel_(std::move(channel)),
      input_(std::make_unique<Input>(*channel_)),
      output_(std::make_unique<Output>(*channel_)) {
    channel_->events.bytesAvailable = [this] { input_->deliver(StreamEvent::HasBytesAvailable); };
    channel_->events.spaceAvailable = [this] { output_->deliver(StreamEvent::HasSpaceAvailable); };
    channel_->events.closed = [this](const std::string&) { input_->deliver(StreamEvent::EndEncountered); };
}

EASession::~EASession() = default;

InputStream& EASession::inputStream() {
    return *input_;
}

OutputStream& EASession::outputStream() {
    return *output_;
}

}  // namespace kestrix::platform
