#pragma once

#include <memory>
#include <string>

#include "platform/Accessory.h"
#include "platform/Streams.h"

namespace kestrix::platform {

// An open session with an accessory: its channel as an input and an output stream. Closing both streams gives
// the channel up.
class EASession {
  public:
    // None when the accessory refuses the session, or has gone.
    static std::unique_ptr<EASession> create(const AccessoryPtr& accessory, const std::string& protocol);

    explicit EASession(std::unique_ptr<ByteChannel> channel);
    EASession(const EASession&) = delete;
    EASession& operator=(const EASession&) = delete;
    ~EASession();

    InputStream& inputStream();
    OutputStream& outputStream();

  private:
    class Input;
    class Output;
    std::unique_ptr<ByteChannel> channel_;
    std::unique_ptr<Input> input_;
    std::unique_ptr<Output> output_;
};

}  // namespace kestrix::platform
