#include "history/MailPasswords.h"

#include <map>
#include <utility>

namespace kestrix::history {
namespace {

std::map<std::string, std::string>& passwordsOfThisSession() {
    static std::map<std::string, std::string> passwords;
    return passwords;
}

}  // namespace

void MailPasswords::find(const std::string& name, platform::Keyring::Found found) {
    const auto known = passwordsOfThisSession().find(name);
    if (known != passwordsOfThisSession().end()) return found(known->second, {});
    if (!keyring_) return found(std::nullopt, {});
    keyring_->find(name, std::move(found));
}

void MailPasswords::keep(const std::string& name, const std::string& password, platform::Keyring::Done done) {
    std::string& known = passwordsOfThisSession()[name];
    if (std::exchange(known, password) == password) return;  // the keyring was asked already
    if (keyring_) keyring_->keep(name, password, std::move(done));
}

void MailPasswords::forget(const std::string& name) {
    passwordsOfThisSession().erase(name);
}

void MailPasswords::forgetSession() {
    passwordsOfThisSession().clear();
}

}  // namespace kestrix::history
