#pragma once

#include <QString>

#include "platform/Dialer.h"
#include "platform/PathWatcher.h"

namespace kestrix::platform {

// Reaches a tester at a serial port's device node. A node that appears is dialled at once, and again when its
// rights come.
class SerialDialer final : public Dialer {
  public:
    // path: a relative one is made absolute here, once.
    SerialDialer(const QString& path, int baud);

    void dial(Done done) override;
    void cancel() override {}

  private:
    QString path_;
    int baud_;
    PathWatcher watcher_;
};

}  // namespace kestrix::platform
