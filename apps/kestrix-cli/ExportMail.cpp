#include "apps/kestrix-cli/ExportMail.h"

#include <poll.h>
#include <unistd.h>

#include <QEventLoop>

#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/Runner.h"
#include "history/ReportMail.h"
#include "platform/PrivateFiles.h"
#include "platform/SecretKeyring.h"
#include "platform/SmtpTransport.h"
#include "storage/FolderChoice.h"

namespace kestrix::cli {
namespace {

using platform::MailReport;
using platform::MailResult;

constexpr std::size_t kLongestPassword = 4096;

struct Password {
    std::optional<std::string> text{};
    Ending why = done();  // where there is none
};

Ending cancelled() {
    return failed("the mail was cancelled: nothing was sent");
}

// The first line of standard input.
Password readPassword(Runner& runner) {
    std::string text;
    std::array<char, 1> next;
    while (text.size() < kLongestPassword) {
        if (!runner.waitFor(STDIN_FILENO, POLLIN)) return {.why = cancelled()};
        const ssize_t count = read(STDIN_FILENO, next.data(), next.size());
        if (count <= 0 || next[0] == '\n') break;
        text += next[0];
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
    loop.run();
    if (!answered || runner.stopping()) return {.why = cancelled()};
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
    const QString file = folder.filePath(QString::fromStdString(stamp) + QStringLiteral(".eml"));
    const platform::SmtpTransport transport;
    if (platform::replacePrivateFile(file, QByteArray::fromStdString(transport.text(message))))
        return done("the mail was saved as " + file.toStdString());
    return failed("the mail was not saved: " + file.toStdString() + ": " + qt_error_string().toStdString());
}

Ending endingOf(const MailReport& report, const platform::MailOrder& order) {
    switch (report.result) {
        case MailResult::Sent:
            return done("the mail to " + order.message.recipient + " was sent through " + order.server.host);
        case MailResult::Cancelled:
            return cancelled();
        case MailResult::Saved:
        case MailResult::Failed:
            break;
    }
    return failed("the mail was not sent: " + report.why);
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
    if (std::string why = completeMailSettings(options, settings); !why.empty())
        return wrongUsage(std::move(why));
    const history::ExportFormat& format = formatOf(options);
    std::string content;
    const storage::Outcome written = format.write(record, [&content](std::string_view bytes) {
        content += bytes;
        return storage::Outcome{};
    });
    if (!written.done) return failed(written.reason);
    platform::MailOrder order;
    order.server = settings.server;
    order.message = history::reportMail(record.record->projectName, record.timeStamp + format.extension,
                                        std::move(content));
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
