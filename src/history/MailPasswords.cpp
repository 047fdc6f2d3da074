#include "history/MailPasswords.h"

#include <map>
#include <set>
#include <utility>

namespace kestrix::history {
namespace {

std::map<std::string, std::string>& passwordsOfThisSession() {
    static std::map<std::string, std::string> passwords;
    return passwords;
}

// Servers whose password in the keyring is not the right one any more.
std::set<std::string>& refusedInThisSession() {
    static std::set<std::string> names;
    return names;
}

}  // namespace

void MailPasswords::find(const std::string& name, platform::Keyring::Found found) {
    const auto known = passwordsOfThisSession().find(name);
    if (known != passwordsOfThisSession().end()) return found(known->second, {});
    if (!keyring_ || refusedInThisSession().contains(name)) return found(std::nullopt, {});
    keyring_->find(name, std::move(found));
}

void MailPasswords::keep(const std::string& name, const std::string& password, platform::Keyring::Done done) {
    refusedInThisSession().erase(name);
    std::string& known = passwordsOfThisSession()[name];
    if (std::exchange(known, password) == password) return;  // the keyring was asked already
    if (keyring_) keyring_->keep(name, password, std::move(done));
}

void MailPasswords::forget(const std::string& name) {
    passwordsOfThisSession().erase(name);
    refusedInThisSession().insert(name);
}

void MailPasswords::forgetSession() {
    passwordsOfThisSession().clear();
    refusedInThisSession().clear();
}

}  // namespace kestrix::history
