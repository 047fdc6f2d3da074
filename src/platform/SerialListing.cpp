#include "platform/SerialListing.h"

#include <QFileInfo>
#include <QSerialPortInfo>

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/AccessoryListings.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

constexpr int kSoon = 50;  // milliseconds

SeenAccessory seenAt(const SerialPort& port) {
    const QFileInfo node(port.path);
    const QString name = port.description.trimmed().isEmpty() ? node.fileName() : port.description;
    SeenAccessory seen{printableText("serial:" + port.path.toStdString()), printableText(name.toStdString()),
                       "a serial port"};
    if (!node.isReadable() || !node.isWritable()) {
        seen.step = FailedStep::Rights;
        seen.problem = printableText("no right to open it: members of the group " +
                                     node.group().toStdString() + " have it");
    }
    return seen;
}

auto shownOf(const SeenAccessory& seen) {
    return std::tie(seen.uri, seen.name, seen.state, seen.step, seen.problem);
}

bool isSame(const SeenAccessory& one, const SeenAccessory& other) {
    return shownOf(one) == shownOf(other);
}

}  // namespace

std::vector<SerialPort> serialPorts() {
    std::vector<SerialPort> ports;
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
        ports.push_back({port.systemLocation(), port.description()});
    return ports;
}

SerialListing::SerialListing(FindPorts find, const QString& folder) : find_(std::move(find)) {
    watcher_.addPath(folder);
    soon_.setSingleShot(true);
    soon_.setInterval(kSoon);
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &soon_, [this] {
        if (!soon_.isActive()) soon_.start();
    });
    QObject::connect(&soon_, &QTimer::timeout, &soon_, [this] {
        std::vector<SeenAccessory> now = look();
        if (std::equal(now.begin(), now.end(), seen_.begin(), seen_.end(), isSame)) return;
        seen_ = std::move(now);
        if (changed) changed();
    });
    seen_ = look();
}

std::vector<SeenAccessory> SerialListing::look() const {
    std::vector<SeenAccessory> all;
    for (const SerialPort& port : find_()) all.push_back(seenAt(port));
    std::sort(all.begin(), all.end(), [](const auto& one, const auto& other) { return one.uri < other.uri; });
    return all;
}

FailedStep SerialListing::step() const {
    return seen_.empty() ? FailedStep::Missing : FailedStep::None;
}

std::string SerialListing::problem() const {
    return seen_.empty() ? "this computer has no serial port" : "";
}

std::unique_ptr<AccessoryListing> makeSerialListing() {
    return std::make_unique<SerialListing>();
}

}  // namespace kestrix::platform
