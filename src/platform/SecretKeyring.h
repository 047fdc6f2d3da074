#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

#include "platform/Keyring.h"

namespace QKeychain {
class Job;
}

namespace kestrix::platform {

// The keyring of the user's desktop: the secret service, or KDE's wallet. A password is kept nowhere else.
class SecretKeyring final : public Keyring {
  public:
    SecretKeyring();
    void find(const std::string& name, Found found) override;
    void keep(const std::string& name, const std::string& password, Done done) override;
    void forget(const std::string& name, Done done) override;

  private:
    // Calls `ended` when the job has ended, unless this object has gone.
    void start(QKeychain::Job& job, const std::string& name, std::function<void(QKeychain::Job&)> ended);

    QObject listener_;
    QTimer turns_;
    int running_ = 0;
};

}  // namespace kestrix::platform
