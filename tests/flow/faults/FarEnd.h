#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/AccessorySources.h"

// A tester's end of a line, one for each kind of source, which a test lets fail.
namespace kestrix::faults {

using Bytes = std::vector<std::uint8_t>;

enum Kind : unsigned {
    kLine = 1,  // a line of the test's own, which can fail in ways that no other lets a test choose
    kTcp = 2,
    kSerial = 4,
    kBluetooth = 8,
    kReplay = 16,
    kSimulator = 32,
};
inline constexpr unsigned kLive = kLine | kTcp | kSerial | kBluetooth;
inline constexpr Kind kKinds[] = {kLine, kTcp, kSerial, kBluetooth, kReplay, kSimulator};
const char* nameOf(Kind kind);

class FarEnd {
  public:
    FarEnd() = default;
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;
    virtual ~FarEnd() = default;

    // The application's end, made as the application makes it.
    virtual std::unique_ptr<platform::AccessorySource> makeSource(platform::Scheduler& scheduler,
                                                                  platform::ListenerFactory listeners) = 0;
    // The application's line has come through. Taken in turns of the event loop.
    virtual bool isOpen() = 0;
    // Sends from the front as much as the line takes now.
    virtual std::size_t send(std::span<const std::uint8_t> bytes) = 0;
    // The same, and the application is not told before a turn of its event loop.
    virtual std::size_t leaveWaiting(std::span<const std::uint8_t> bytes) { return send(bytes); }
    virtual void tellOfWaiting() {}

    // The line ends in order. The tester can be reached again at once.
    virtual void end() = 0;
    // The line fails, in the way in which this kind of line does. Likewise.
    virtual void breakOff() = 0;
    // The line ends, and until comeBack() nobody is there to be reached.
    virtual void leave() = 0;
    virtual void comeBack() = 0;
    // Whether a dial is answered without time passing.
    virtual bool answersDials() const { return true; }
    // What was sent is where the application can read it.
    virtual bool hasArrived(std::size_t /*bytes*/) { return true; }
    // What it plays by itself, one after the other on each of its lines; nothing for one that is told what to
    // send.
    virtual std::vector<Bytes> plays() const { return {}; }

    // How many lines the application has had so far, this one included.
    const int* lines = nullptr;
};

// capture, scenario: what those play that play something known.
std::unique_ptr<FarEnd> makeFarEnd(Kind kind, const Bytes& capture, const std::string& scenario);

// The makers of each kind.
std::unique_ptr<FarEnd> makeTcpFarEnd();
std::unique_ptr<FarEnd> makeReplayFarEnd(const Bytes& capture);
std::unique_ptr<FarEnd> makeSimulatorFarEnd(const std::string& scenario);

// By its URI, or by what the test that failed says.
std::unique_ptr<platform::AccessorySource> sourceOf(const std::string& uri, platform::Scheduler& scheduler,
                                                    platform::ListenerFactory listeners);

}  // namespace kestrix::faults
