#pragma once

#include <QString>

#include <memory>
#include <string>

#include "platform/GeneratedChannel.h"

namespace kestrix::platform {

// A tester's own pace, at which a capture plays: frames of 36 bytes, four a second.
inline constexpr std::size_t kReplayPieceBytes = 36;
inline constexpr std::chrono::milliseconds kReplayPieceInterval{250};

// Plays the bytes of a capture file, `speed` times as fast as the tester sent them; 0 is flat out. The file
// is read as it plays. None, with the reason in `problem`, when the file cannot be read.
std::unique_ptr<ByteProducer> makeReplayProducer(const QString& path, double speed, std::string& problem);

}  // namespace kestrix::platform
