#include "tests/platform/ChannelRigs.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <utility>

#include "apps/common/SimulatorSource.h"
#include "platform/BluezDialer.h"
#include "platform/DialingSource.h"
#include "platform/GeneratedChannel.h"
#include "platform/ReplayDialer.h"
#include "platform/SerialDialer.h"
#include "platform/StreamSocketDialer.h"
#include "tests/support/FakeBluez.h"
#include "tests/support/FakeDialer.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/Pty.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using Bytes = ChannelRig::Bytes;

Bytes countingBytes(std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<std::uint8_t>(i + i / 251);
    return bytes;
}

// Owns its dialer; a turn is one of the scheduler and one of Qt's event loop.
class OwningRig : public ChannelRig {
  public:
    Dialer& dialer() override {
        if (!dialer_) dialer_ = makeDialer();
        return *dialer_;
    }
    void forgetDialer() override { dialer_.reset(); }
    void turn() override {
        QCoreApplication::processEvents();
        scheduler.advance(milliseconds(1));
        farEnd();
    }

  protected:
    virtual std::unique_ptr<Dialer> makeDialer() = 0;
    virtual void farEnd() {}
    std::unique_ptr<Dialer> dialer_;
};

// A stream socket and the server that it connects to. A transport over one is a row in kChannelKinds.
template <typename Server, typename Socket>
class StreamSocketRig final : public OwningRig {
  public:
    using Listen = bool (*)(Server&);
    using Connect = void (*)(Socket&, const Server&);
    StreamSocketRig(Listen listen, Connect connect) : connect_(connect) { EXPECT_TRUE(listen(server_)); }
    ~StreamSocketRig() override { dialer_.reset(); }

    Bytes plan(std::size_t count, bool) override { return plan_ = countingBytes(count); }
    void end() override { peer_->close(); }
    void drain() override { draining_ = true; }

  private:
    std::unique_ptr<Dialer> makeDialer() override {
        return std::make_unique<StreamSocketDialer<Socket>>(
            [this](Socket& socket) { connect_(socket, server_); });
    }
    void farEnd() override {
        if (!peer_ && server_.hasPendingConnections()) {
            peer_.reset(server_.nextPendingConnection());
            peer_->setReadBufferSize(1024);  // so that it takes nothing while it does not read
            peer_->write(reinterpret_cast<const char*>(plan_.data()), static_cast<qint64>(plan_.size()));
        }
        if (peer_ && draining_) peer_->readAll();
    }

    Server server_;
    Connect connect_;
    std::unique_ptr<Socket> peer_;
    Bytes plan_;
    bool draining_ = false;
};

class SerialRig final : public OwningRig {
  public:
    SerialRig() { fcntl(pty_.master(), F_SETFL, O_NONBLOCK); }
    Bytes plan(std::size_t count, bool) override { return plan_ = countingBytes(count); }
    void end() override { pty_.hangUp(); }
    void drain() override { draining_ = true; }

  private:
    std::unique_ptr<Dialer> makeDialer() override {
        return std::make_unique<SerialDialer>(QString::fromStdString(pty_.name()), 9600);
    }
    void farEnd() override {
        const ssize_t count = write(pty_.master(), plan_.data() + sent_, plan_.size() - sent_);
        if (count > 0) sent_ += static_cast<std::size_t>(count);
        std::array<char, 4096> waste;
        while (draining_ && read(pty_.master(), waste.data(), waste.size()) > 0) {
        }
    }

    testing::Pty pty_;
    Bytes plan_;
    std::size_t sent_ = 0;
    bool draining_ = false;
};

// Sends its plan in pieces, and then ends or has nothing more to send.
class PlanProducer final : public ByteProducer {
  public:
    PlanProducer(Bytes bytes, bool ends) : bytes_(std::move(bytes)), ends_(ends) {}
    bool next(Piece& piece) override {
        const std::size_t count = std::min<std::size_t>(1000, bytes_.size() - sent_);
        if (count == 0 && ends_) return false;
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(sent_);
        piece = {
            milliseconds(count > 0 ? 1 : 1000), {first, first + static_cast<std::ptrdiff_t>(count)}, false};
        sent_ += count;
        return true;
    }

  private:
    Bytes bytes_;
    bool ends_;
    std::size_t sent_ = 0;
};

class GeneratedRig final : public OwningRig {
  public:
    Bytes plan(std::size_t count, bool ends) override {
        ends_ = ends;
        return plan_ = countingBytes(count);
    }

  private:
    std::unique_ptr<Dialer> makeDialer() override {
        return std::make_unique<GeneratedDialer>(
            [this](std::string&) { return std::make_unique<PlanProducer>(plan_, ends_); }, scheduler);
    }
    Bytes plan_;
    bool ends_ = false;
};

class ReplayRig final : public OwningRig {
  public:
    Bytes plan(std::size_t count, bool ends) override {
        const Bytes bytes = countingBytes(count);
        Bytes kept = bytes;
        if (!ends) kept.resize(count + 1'000'000);  // a capture that goes on for longer than the test
        QFile file(folder_.filePath(QStringLiteral("a.kxc")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(reinterpret_cast<const char*>(kept.data()), static_cast<qint64>(kept.size()));
        return ends ? bytes : kept;
    }

  private:
    std::unique_ptr<Dialer> makeDialer() override {
        const QString path = folder_.filePath(QStringLiteral("a.kxc"));
        return std::make_unique<GeneratedDialer>(
            [path](std::string& problem) { return makeReplayProducer(path, 0, problem); }, scheduler);
    }
    QTemporaryDir folder_;
};

class SimulatorRig final : public OwningRig {
  public:
    Bytes plan(std::size_t count, bool ends) override {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("rate max\nfunction earth\nreading 1 14.3 ohm\nshow " +
                   QByteArray::number(count / 36 + 1) + " frames\n" + (ends ? "" : "rate 1\nshow 3600s\n"));
        file.close();
        std::string problem;
        const auto producer = makeProducers()(problem);
        Bytes bytes;
        ByteProducer::Piece piece;
        while (bytes.size() < count && producer->next(piece))
            bytes.insert(bytes.end(), piece.bytes.begin(), piece.bytes.end());
        return bytes;
    }

  private:
    QString path() const { return folder_.filePath(QStringLiteral("earth.scenario")); }
    GeneratedDialer::MakeProducer makeProducers() const {
        std::string problem;
        auto producers = app::simulatorProducers(path().toStdString(), 1, 1, problem);
        EXPECT_EQ(problem, "");
        return producers;
    }
    std::unique_ptr<Dialer> makeDialer() override {
        return std::make_unique<GeneratedDialer>(makeProducers(), scheduler);
    }
    QTemporaryDir folder_;
};

class FakeRig final : public OwningRig {
  public:
    FakeRig() { line_.room = ByteChannel::kBufferLimit; }
    Bytes plan(std::size_t count, bool) override { return plan_ = countingBytes(count); }
    void end() override { line_.end("the end"); }
    void drain() override { draining_ = true; }

  private:
    std::unique_ptr<Dialer> makeDialer() override {
        auto dialer = std::make_unique<testing::FakeDialer>();
        dialer->line = &line_;
        return dialer;
    }
    void farEnd() override {
        if (line_.channel == nullptr) return;
        const std::size_t count =
            std::min(plan_.size() - sent_,
                     ByteChannel::kBufferLimit - std::min(ByteChannel::kBufferLimit, line_.incoming.size()));
        if (count > 0) line_.receive(std::span(plan_).subspan(std::exchange(sent_, sent_ + count), count));
        if (draining_ && line_.room == 0) line_.makeRoom(ByteChannel::kBufferLimit);
    }
    testing::FakeLine line_;
    Bytes plan_;
    std::size_t sent_ = 0;
    bool draining_ = false;
};

// The source's view of a channel, which a session holds: opened with the tester's first bytes.
class TapRig final : public ChannelRig, private AccessorySourceObserver {
  public:
    Bytes plan(std::size_t count, bool ends) override {
        return line_.plan(std::max<std::size_t>(count, 1), ends);
    }
    Dialer& dialer() override { return dialer_; }
    void forgetDialer() override {}
    void turn() override {
        line_.turn();
        scheduler.advance(milliseconds(1));
    }
    void end() override { line_.end(); }
    void drain() override { line_.drain(); }

  private:
    class TapDialer final : public Dialer {
      public:
        explicit TapDialer(TapRig& rig) : rig_(rig) {}
        void dial(Done done) override {
            done_ = std::move(done);
            rig_.source_.start(rig_);
        }
        void cancel() override { done_ = nullptr; }
        Done done_;

      private:
        TapRig& rig_;
    };
    class SharedDialer final : public Dialer {
      public:
        explicit SharedDialer(Dialer& dialer) : dialer_(dialer) {}
        void dial(Done done) override { dialer_.dial(std::move(done)); }
        void cancel() override { dialer_.cancel(); }

      private:
        Dialer& dialer_;
    };
    void appeared(const AccessoryPtr& accessory) override {
        auto channel = accessory->opener->openChannel(*accessory, accessory->protocolStrings.front());
        if (const auto done = std::exchange(dialer_.done_, nullptr)) done({std::move(channel)});
    }
    void disappeared(const AccessoryPtr&) override {}

    FakeRig line_;
    DialingSource source_{"fake:", std::make_unique<SharedDialer>(line_.dialer()), makeAnyByteListener,
                          scheduler};
    TapDialer dialer_{*this};
};

// A line that the Bluetooth service hands over.
class BluetoothRig final : public OwningRig {
  public:
    BluetoothRig() {
        EXPECT_TRUE(bus_.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", QByteArray::fromStdString(bus_.address()));
        bluez_ = std::make_unique<testing::FakeBluez>(bus_.address());
        bluez_->addAdapter();
        bluez_->addDevice(device_);
    }
    ~BluetoothRig() override {
        dialer_.reset();
        qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }
    // The service and its bus are processes of their own: no more time passes here than there.
    void turn() override {
        QCoreApplication::processEvents();
        const auto passed =
            std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - turned_);
        turned_ += passed;
        scheduler.advance(passed);
        farEnd();
    }
    Bytes plan(std::size_t count, bool) override { return plan_ = countingBytes(count); }
    void end() override { bluez_->endLine(device_.address); }
    void drain() override { draining_ = true; }

  private:
    std::unique_ptr<Dialer> makeDialer() override {
        return std::make_unique<BluezDialer>(device_.address, LastUsed{}, BluezProfile::shared(scheduler));
    }
    void farEnd() override {
        const int line = bluez_->line(device_.address);
        if (line < 0) return;
        const ssize_t count =
            ::send(line, plan_.data() + sent_, plan_.size() - sent_, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) sent_ += static_cast<std::size_t>(count);
        if (draining_) bluez_->receive(device_.address);
    }

    testing::PrivateBus bus_;
    std::unique_ptr<testing::FakeBluez> bluez_;
    std::chrono::steady_clock::time_point turned_ = std::chrono::steady_clock::now();
    const testing::FakeBluez::Device device_;
    Bytes plan_;
    std::size_t sent_ = 0;
    bool draining_ = false;
};

template <typename Rig>
std::unique_ptr<ChannelRig> make() {
    return std::make_unique<Rig>();
}

}  // namespace

const std::vector<ChannelKind> kChannelKinds{
    {"Tcp",
     []() -> std::unique_ptr<ChannelRig> {
         return std::make_unique<StreamSocketRig<QTcpServer, QTcpSocket>>(
             [](QTcpServer& server) { return server.listen(QHostAddress::LocalHost); },
             [](QTcpSocket& socket, const QTcpServer& server) {
                 socket.connectToHost(QStringLiteral("127.0.0.1"), server.serverPort());
             });
     },
     false},
    {"Bluetooth", make<BluetoothRig>, false},
    {"Serial", make<SerialRig>, false},
    {"Generated", make<GeneratedRig>, true},
    {"Replay", make<ReplayRig>, true},
    {"Simulator", make<SimulatorRig>, true},
    {"Fake", make<FakeRig>, false},
    {"Tap", make<TapRig>, false},
};

}  // namespace kestrix::platform
