#pragma once

#include <QObject>
#include <QThread>

#include <functional>
#include <memory>
#include <string>

#include "tests/support/FakeBluez.h"
#include "tests/support/PrivateBus.h"

namespace kestrix::testing {

// A Bluetooth service on a bus of its own, for programs that the test starts and waits for: it answers from a
// thread of its own.
class BluezThread {
  public:
    BluezThread();
    BluezThread(const BluezThread&) = delete;
    BluezThread& operator=(const BluezThread&) = delete;
    ~BluezThread();

    // What a program needs in its environment: "NAME=value".
    std::string environment() const { return "DBUS_SYSTEM_BUS_ADDRESS=" + bus_.address(); }
    // Does this in the service's thread, and waits for it.
    void with(const std::function<void(FakeBluez&)>& work);
    // Looks at it again and again until it holds. False after half a minute.
    bool waitUntil(const std::function<bool(FakeBluez&)>& condition);

  private:
    PrivateBus bus_;
    QThread thread_;
    QObject place_;  // in that thread
    std::unique_ptr<FakeBluez> bluez_;
};

}  // namespace kestrix::testing
