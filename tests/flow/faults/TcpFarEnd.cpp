#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>
#include <QTcpServer>
#include <QTcpSocket>

#include "tests/flow/faults/FarEnd.h"

namespace kestrix::faults {
namespace {

// A network tester. It has an address of this process's own, so that nobody else takes its port meanwhile.
class TcpFarEnd final : public FarEnd {
  public:
    TcpFarEnd() {
        const auto process = static_cast<quint32>(getpid());
        address_ = QHostAddress(0x7F400000U | (process & 0x3FFFFFU));
        EXPECT_TRUE(server_.listen(address_)) << server_.errorString().toStdString();
        port_ = server_.serverPort();
    }
    std::unique_ptr<platform::AccessorySource> makeSource(platform::Scheduler& scheduler,
                                                          platform::ListenerFactory listeners) override {
        return sourceOf("tcp://" + address_.toString().toStdString() + ":" + std::to_string(port_), scheduler,
                        std::move(listeners));
    }
    bool isOpen() override {
        for (; server_.hasPendingConnections(); ++accepted_) line_.reset(server_.nextPendingConnection());
        return accepted_ == *lines && line_ != nullptr;  // not one that the application has given up
    }
    std::size_t send(std::span<const std::uint8_t> bytes) override {
        const qint64 count =
            line_->write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
        line_->flush();
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    void end() override {
        if (!line_) return;
        line_->disconnectFromHost();
        line_.release()->deleteLater();
    }
    void breakOff() override {
        const linger atOnce{1, 0};
        ::setsockopt(static_cast<int>(line_->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                     sizeof atOnce);
        line_->abort();
        line_.reset();
    }
    void leave() override {
        server_.close();
        end();
    }
    void comeBack() override {
        if (server_.isListening()) return;
        accepted_ = *lines;
        EXPECT_TRUE(server_.listen(address_, port_)) << server_.errorString().toStdString();
    }

  private:
    QTcpServer server_;
    QHostAddress address_;
    quint16 port_ = 0;
    int accepted_ = 0;
    std::unique_ptr<QTcpSocket> line_;
};

}  // namespace

std::unique_ptr<FarEnd> makeTcpFarEnd() {
    return std::make_unique<TcpFarEnd>();
}

}  // namespace kestrix::faults
