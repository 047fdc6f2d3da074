#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Keyring.h"

namespace kestrix::history {

// The passwords of mail servers: in the desktop's keyring, and for as long as the application runs in its
// memory. Never in a file.
class MailPasswords {
  public:
    // keyring: none where there is no such thing.
    explicit MailPasswords(std::unique_ptr<platform::Keyring> keyring) : keyring_(std::move(keyring)) {}

    // Answers at once when the password was used in this session. `problem` is why the keyring has no answer.
    void find(const std::string& name, platform::Keyring::Found found);
    // Keeps one that a server has accepted. `problem` is why it is kept for this session only.
    void keep(const std::string& name, const std::string& password, platform::Keyring::Done done);
    // One that a server has refused is found no more, in the keyring either, until another is kept.
    void forget(const std::string& name);

    // Takes all of this session away.
    static void forgetSession();

  private:
    std::unique_ptr<platform::Keyring> keyring_;
};

}  // namespace kestrix::history
