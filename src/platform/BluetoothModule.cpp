#include "platform/BluetoothModule.h"

#include <utility>

#include "platform/AccessoryListings.h"
#include "platform/Module.h"

namespace kestrix::platform {
namespace {

class NoListing final : public AccessoryListing {
  public:
    explicit NoListing(std::string problem) : problem_(std::move(problem)) {}
    std::string scheme() const override { return "bluetooth"; }
    std::vector<SeenAccessory> seen() const override { return {}; }
    FailedStep step() const override { return FailedStep::Other; }
    std::string problem() const override { return problem_; }

  private:
    std::string problem_;
};

}  // namespace

QString bluetoothModulePath() {
    return modulePath(QStringLiteral("kestrix-bluetooth.so"), QStringLiteral(KESTRIX_BLUETOOTH_MODULE));
}

BluetoothParts loadBluetooth(const QString& path) {
    return loadParts<BluetoothParts>(path, kBluetoothModuleEntry, "there is no Bluetooth");
}

std::unique_ptr<AccessoryListing> makeBluetoothListing(Scheduler& scheduler) {
    const BluetoothParts parts = loadBluetooth();
    if (parts.makeListing == nullptr) return std::make_unique<NoListing>(parts.problem);
    return parts.makeListing(scheduler);
}

}  // namespace kestrix::platform
