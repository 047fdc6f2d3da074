#pragma once

#include <QFileSystemWatcher>
#include <QString>

#include "platform/Dialer.h"

namespace kestrix::platform {

// Reaches a tester at a serial port's device node; a node that appears is dialled at once.
class SerialDialer final : public Dialer {
  public:
    SerialDialer(QString path, int baud);

    void dial(Done done) override;
    void cancel() override {}

  private:
    QString path_;
    int baud_;
    QFileSystemWatcher folder_;
};

}  // namespace kestrix::platform
