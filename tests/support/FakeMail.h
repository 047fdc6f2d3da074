#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/MailModule.h"

namespace kestrix::testing {

// A mail server and a keyring in the hand of the test, which outlives whoever uses them. What is asked of the
// keyring is answered at once.
class FakeMail {
  public:
    platform::MailParts parts() {
        platform::MailParts made;
        if (!problem.empty()) {
            made.problem = problem;
            return made;
        }
        made.transport = std::make_unique<Transport>(*this);
        made.keyring = std::make_unique<Keyring>(*this);
        return made;
    }

    // The end of the mail that is on its way.
    void end(platform::MailResult result, const std::string& why = {}, bool loginRefused = false) {
        const platform::MailTransport::Ended ended = std::exchange(ended_, nullptr);
        ended({.result = result, .why = why, .loginRefused = loginRefused});
    }
    void sendSoFar(std::uint64_t sent, std::uint64_t all) { progress_(sent, all); }
    bool isOnItsWay() const { return ended_ != nullptr; }

    std::string problem;                           // why no mail can be sent at all; empty: it can
    std::vector<platform::MailOrder> orders;       // all that were to be sent
    int cancels = 0;                               // how often one was called back
    std::map<std::string, std::string> passwords;  // of the keyring
    std::string keyringProblem;
    std::vector<std::string> askedFor;  // of the keyring
    // While it is set, the keyring's next answer is kept here instead of given.
    bool keyringWaits = false;
    std::function<void()> keyringAnswer;

  private:
    class Transport final : public platform::MailTransport {
      public:
        explicit Transport(FakeMail& mail) : mail_(mail) {}
        Transport(const Transport&) = delete;
        Transport& operator=(const Transport&) = delete;
        ~Transport() override { mail_.ended_ = nullptr; }
        void send(platform::MailOrder order, Progress progress, Ended ended) override {
            mail_.orders.push_back(std::move(order));
            mail_.progress_ = std::move(progress);
            mail_.ended_ = std::move(ended);
        }
        void cancel() override { ++mail_.cancels; }
        std::string text(const platform::MailMessage& message) const override {
            return "To: " + message.recipient + "\r\nSubject: " + message.subject + "\r\n\r\n";
        }

      private:
        FakeMail& mail_;
    };
    class Keyring final : public platform::Keyring {
      public:
        explicit Keyring(FakeMail& mail) : mail_(mail) {}
        void find(const std::string& name, Found found) override {
            mail_.askedFor.push_back(name);
            if (mail_.keyringWaits) {
                mail_.keyringAnswer = [this, name, found = std::move(found)] { answer(name, found); };
                return;
            }
            answer(name, found);
        }
        void answer(const std::string& name, const Found& found) {
            const auto known = mail_.passwords.find(name);
            if (known == mail_.passwords.end() || !mail_.keyringProblem.empty())
                return found(std::nullopt, mail_.keyringProblem);
            found(known->second, {});
        }
        void keep(const std::string& name, const std::string& password, Done done) override {
            if (mail_.keyringProblem.empty()) mail_.passwords[name] = password;
            done(mail_.keyringProblem);
        }
        void forget(const std::string& name, Done done) override {
            mail_.passwords.erase(name);
            done(mail_.keyringProblem);
        }

      private:
        FakeMail& mail_;
    };

    platform::MailTransport::Progress progress_;
    platform::MailTransport::Ended ended_;
};

}  // namespace kestrix::testing
