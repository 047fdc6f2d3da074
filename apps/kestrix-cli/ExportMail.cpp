#include "apps/kestrix-cli/ExportMail.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <QEventLoop>

#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/Runner.h"
#include "history/ReportMail.h"
#include "platform/SecretKeyring.h"
#include "platform/SmtpTransport.h"
#include "storage/FolderChoice.h"

namespace kestrix::cli {
namespace {

using platform::MailReport;
using platform::MailResult;

constexpr std::size_t kLongestPassword = 4096;
constexpr std::chrono::seconds kKeyringPatience{30};

struct Password {
    std::optional<std::string> text{};
    Ending why = done();  // where there is none
};

Ending cancelled() {
    return failed("the mail was cancelled: nothing was sent");
}

// What is typed at a terminal is not shown there, for as long as this lives.
class WithoutEcho {
  public:
    WithoutEcho() : changed_(tcgetattr(STDIN_FILENO, &before_) == 0) {
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        if (changed_) tcsetattr(STDIN_FILENO, TCSANOW, &silent);
    }
    WithoutEcho(const WithoutEcho&) = delete;
    WithoutEcho& operator=(const WithoutEcho&) = delete;
    ~WithoutEcho() {
        if (changed_) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
    }

  private:
    termios before_{};
    bool changed_;
};

// The first line of standard input.
Password readPassword(Runner& runner) {
    const WithoutEcho silent;
    std::string text;
    std::array<char, 1> next;
    for (;;) {
        if (!runner.waitFor(STDIN_FILENO, POLLIN)) return {.why = cancelled()};
        const ssize_t count = read(STDIN_FILENO, next.data(), next.size());
        if (count <= 0 || next[0] == '\n') break;
        text += next[0];
        if (text.size() > kLongestPassword)
            return {.why = failed("the password on standard input has more than " +
                                  std::to_string(kLongestPassword) + " bytes")};
    }
    if (text.ends_with('\r')) text.pop_back();
    if (text.empty()) return {.why = failed("there is no password on standard input")};
    return {.text = std::move(text)};
}

Password findPassword(Runner& runner, EventLoop& loop, const platform::MailServer& server) {
    std::optional<std::string> found;
    std::string problem;
    bool answered = false;
    platform::SecretKeyring keyring;
    keyring.find(platform::keyringName(server), [&](const auto& password, const auto& why) {
        found = password;
        problem = why;
        answered = true;
        EventLoop::quit();
    });
    const auto tooLong = loop.scheduler.callAfter(kKeyringPatience, [&problem] {
        problem = "the desktop's keyring does not answer";
        EventLoop::quit();
    });
    loop.run();
    if (runner.stopping() || (!answered && problem.empty())) return {.why = cancelled()};
    if (found) return {.text = std::move(found)};
    const std::string ask = "; --password-stdin reads it from standard input";
    return {.why = failed(problem.empty()
                              ? "the keyring has no password of " + platform::keyringName(server) + ask
                              : problem + ask)};
}

Password passwordFor(Runner& runner, EventLoop& loop, const ExportOptions& options,
                     const platform::MailServer& server) {
    if (server.user.empty()) return {.text = std::string()};
    return options.passwordFromInput ? readPassword(runner) : findPassword(runner, loop, server);
}

Ending keepDraft(const platform::MailMessage& message, const platform::DocumentsFolder& folder,
                 const std::string& stamp) {
    const platform::SmtpTransport transport;
    const history::ExportedFile draft = history::keepDraft(transport.text(message), stamp, folder);
    return draft.outcome.done ? done("the mail was saved as " + draft.path.toStdString())
                              : failed("the mail was not saved: " + draft.outcome.reason);
}

Ending endingOf(const MailReport& report, const platform::MailOrder& order) {
    switch (report.result) {
        case MailResult::Sent:
            return done("the mail to " + order.message.recipient + " was sent through " + order.server.host);
        case MailResult::Cancelled:
            return report.mayBeSent ? failed("the mail was cancelled too late: " + report.why) : cancelled();
        case MailResult::Saved:
        case MailResult::Failed:
            break;
    }
    return failed((report.mayBeSent ? "the mail: " : "the mail was not sent: ") + report.why);
}

Ending send(EventLoop& loop, const platform::MailOrder& order) {
    std::optional<MailReport> report;
    QEventLoop calledBack;
    platform::SmtpTransport transport;
    transport.send(order, {}, [&](const MailReport& ended) {
        report = ended;
        EventLoop::quit();
        calledBack.quit();
    });
    loop.run();
    if (!report) {
        transport.cancel();
        calledBack.exec();
    }
    return endingOf(*report, order);
}

}  // namespace

Ending mailExport(Runner& runner, EventLoop& loop, const ExportOptions& options,
                  const history::ExportedRecord& record, const platform::DocumentsFolder& folder) {
    const platform::UserDefaults defaults(
        storage::settingsFileFor(QString::fromStdString(runner.settings), folder),
        platform::UserDefaults::Start::LooksOnly);
    if (!defaults.problem().isEmpty()) return failed(defaults.problem().toStdString());
    platform::MailSettings settings = platform::readMailSettings(defaults);
    if (options.caFile && access(options.caFile->c_str(), R_OK) != 0)
        return failed("the file of certificates, " + *options.caFile + ", cannot be read");
    if (std::string why = completeMailSettings(options, settings); !why.empty())
        return wrongUsage(std::move(why));
    if (options.passwordFromInput && settings.server.user.empty())
        return wrongUsage("--password-stdin: the server has no user; --smtp smtp://USER@HOST:PORT names one");
    const history::ExportFormat& format = formatOf(options);
    std::string content;
    const storage::Outcome written = history::writeRecord(format, record, [&content](std::string_view bytes) {
        content += bytes;
        return storage::Outcome{};
    });
    if (!written.done) return failed(written.reason);
    platform::MailOrder order;
    order.server = settings.server;
    order.message =
        history::reportMail(record.record->projectName, record.timeStamp, format, std::move(content));
    order.message.recipient = *options.mail;
    order.message.from = settings.from;
    order.message.date = std::chrono::system_clock::now();
    if (options.draft) return keepDraft(order.message, folder, record.timeStamp);
    Password password = passwordFor(runner, loop, options, settings.server);
    if (!password.text) return password.why;
    order.password = std::move(*password.text);
    return send(loop, order);
}

}  // namespace kestrix::cli
