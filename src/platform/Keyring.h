#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kestrix::platform {

// The desktop's keyring, which keeps passwords for the user. Every answer comes from the event loop, once,
// unless the keyring is destroyed first. `problem` says in one line why there is no keyring, or why it does
// not do it; empty: it did.
class Keyring {
  public:
    // password: none when the keyring has none of this name, and when there is a problem.
    using Found = std::function<void(const std::optional<std::string>& password, const std::string& problem)>;
    using Done = std::function<void(const std::string& problem)>;

    virtual ~Keyring() = default;
    virtual void find(const std::string& name, Found found) = 0;
    virtual void keep(const std::string& name, const std::string& password, Done done) = 0;
    virtual void forget(const std::string& name, Done done) = 0;
};

}  // namespace kestrix::platform
