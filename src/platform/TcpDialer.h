#pragma once

#include <QString>
#include <QTcpSocket>

#include <memory>

#include "platform/Dialer.h"

namespace kestrix::platform {

// Reaches a tester behind a TCP server (a bridge, or a simulator).
class TcpDialer final : public Dialer {
  public:
    TcpDialer(QString host, quint16 port);
    ~TcpDialer() override;

    void dial(Done done) override;
    void cancel() override;

  private:
    void connected();
    void failed();

    QString host_;
    quint16 port_;
    std::unique_ptr<QTcpSocket> socket_;
    Done done_;
};

}  // namespace kestrix::platform
