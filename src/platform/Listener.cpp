#include "platform/Listener.h"

namespace kestrix::platform {
namespace {

class AnyByteListener final : public Listener {
  public:
    std::size_t hear(std::span<const std::uint8_t> bytes) override { return bytes.size(); }
    std::size_t undecided() const override { return 0; }
};

}  // namespace

std::unique_ptr<Listener> makeAnyByteListener() {
    return std::make_unique<AnyByteListener>();
}

}  // namespace kestrix::platform
