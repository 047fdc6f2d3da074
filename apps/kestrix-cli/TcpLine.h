#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <string>

#include "apps/kestrix-cli/TesterLine.h"

namespace kestrix::cli {

// A TCP server that is one tester: a second client is turned away while the first is there.
class TcpLine final : public LineEnd {
  public:
    TcpLine(platform::GeneratedDialer::MakeProducer producers, platform::Scheduler& scheduler);
    ~TcpLine() override;

    // host: an address or "localhost"; port 0 takes a free one. Empty, or why it cannot.
    std::string listen(const std::string& host, quint16 port);
    quint16 port() const { return server_.serverPort(); }

    std::size_t room() const override;
    void write(std::span<const std::uint8_t> bytes) override;
    void hangUp() override;

  private:
    void accept();

    TesterLine tester_;
    QTcpServer server_;
    QTcpSocket* client_ = nullptr;  // owned by the server; deletes itself once it is disconnected
};

}  // namespace kestrix::cli
