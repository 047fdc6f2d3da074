#pragma once

#include <QFileSystemWatcher>
#include <QString>
#include <QTimer>

#include <functional>
#include <string>
#include <vector>

#include "platform/AccessoryListing.h"

namespace kestrix::platform {

struct SerialPort {
    QString path{};         // of its device node
    QString description{};  // as its maker tells it; may be empty
};
std::vector<SerialPort> serialPorts();

// The serial ports, as they come and go in the folder of their device nodes, with their rights. None is
// opened: opening one may disturb what is behind it.
class SerialListing final : public AccessoryListing {
  public:
    using FindPorts = std::function<std::vector<SerialPort>()>;

    explicit SerialListing(FindPorts find = serialPorts, const QString& folder = QStringLiteral("/dev"));

    std::string scheme() const override { return "serial"; }
    std::vector<SeenAccessory> seen() const override { return seen_; }
    FailedStep step() const override;
    std::string problem() const override;

  private:
    std::vector<SeenAccessory> look() const;

    FindPorts find_;
    QFileSystemWatcher watcher_;
    QTimer soon_;  // a port that appears changes several times at once
    std::vector<SeenAccessory> seen_;
};

}  // namespace kestrix::platform
