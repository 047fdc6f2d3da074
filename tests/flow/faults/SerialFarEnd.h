#pragma once

#include <QTemporaryDir>

#include <memory>
#include <string>

#include "tests/flow/faults/FarEnd.h"
#include "tests/support/Pty.h"

namespace kestrix::faults {

// A tester at a serial port. The port's node leads to a terminal that is made anew for each line, so nobody
// else's is ever opened by its name.
class SerialFarEnd final : public FarEnd {
  public:
    SerialFarEnd();
    ~SerialFarEnd() override { hangUp(); }
    std::unique_ptr<platform::AccessorySource> makeSource(platform::Scheduler& scheduler,
                                                          platform::ListenerFactory listeners) override;
    bool isOpen() override { return pty_->master() >= 0; }
    std::size_t send(std::span<const std::uint8_t> bytes) override;
    void end() override;
    void breakOff() override;
    void leave() override;
    void comeBack() override;
    bool hasArrived(std::size_t bytes) override;

    const QString& node() const { return node_; }
    QString terminal() const { return QString::fromStdString(pty_->name()); }
    // The node alone comes and goes; the terminal stays.
    void removeNode();
    void makeNode();
    // A new one, where the old one has hung up. No node leads to it yet.
    void makeTerminal();

  private:
    void hangUp();

    QTemporaryDir folder_;
    QString node_ = folder_.filePath(QStringLiteral("tester"));
    std::unique_ptr<testing::Pty> pty_;
    int otherEnd_ = -1;  // a look at what the application can read
};

}  // namespace kestrix::faults
