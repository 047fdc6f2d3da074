#include "history/MailComposeViewController.h"

#include <QLocale>
#include <QTextDocumentFragment>

#include <algorithm>
#include <cctype>
#include <utility>

#include "history/ReportMail.h"
#include "ui/KeyRules.h"
#include "ui/Palette.h"

namespace kestrix::history {
namespace {

using platform::MailResult;
using platform::MailSecurity;

constexpr int kCaptionSize = 13;
constexpr int kServerTitleSize = 12;

}  // namespace

MailComposeViewController::MailComposeViewController(ui::ScreenId id, const ui::Services& services)
    : FramedScreen(id, services) {
    MailToCompose mail = std::exchange(mailToCompose, std::nullopt).value_or(MailToCompose{});
    delegate_ = mail.delegate;
    problem_ = std::move(mail.problem);
    message_.recipient = std::move(mail.recipient);
    message_.subject = std::move(mail.subject);
    message_.htmlBody = std::move(mail.htmlBody);
    message_.attachment = std::move(mail.attachment);
}

MailComposeViewController::~MailComposeViewController() {
    std::fill(used_.begin(), used_.end(), '\0');
}

void MailComposeViewController::viewDidLoad() {
    setClosable(false);
    buildCaptions();
    recipient.setText(QString::fromStdString(message_.recipient));
    subject.setText(QString::fromStdString(message_.subject));
    messageText.setText(
        QTextDocumentFragment::fromHtml(QString::fromStdString(message_.htmlBody)).toPlainText());
    if (message_.attachment)
        attachmentText.setText(tr("%1, %2").arg(
            QString::fromStdString(message_.attachment->name),
            QLocale().formattedDataSize(static_cast<qint64>(message_.attachment->content.size()))));
    password.setSecret(true);
    settings_ = platform::readMailSettings(services_.defaults);
    showSettings();
    for (ui::TextField* field : fields()) {
        field->setEditAction([this, field] {
            readFields();
            say(field->text().isEmpty() ? QString() : problemOf(*field), true);
        });
        field->setReturnAction([this, field] {
            const auto all = fields();
            const auto next = std::next(std::find(all.begin(), all.end(), field));
            if (next != all.end())
                (*next)->takeKeyboard();
            else
                btnSend.takeKeyboard();
            return true;
        });
    }
    parts_ = services_.loadMail();
    passwords_ = std::make_unique<MailPasswords>(std::move(parts_.keyring));
    if (!settings_.server.caFile.empty())
        say(tr("Certificates are checked against %1").arg(QString::fromStdString(settings_.server.caFile)),
            false);
    if (!problem_.isEmpty()) say(problem_, true);
    if (!parts_.problem.empty()) say(QString::fromStdString(parts_.problem), true);
}

void MailComposeViewController::buildCaptions() {
    const std::pair<ui::Label*, QString> captions[] = {
        {&lblRecipient, tr("To")},          {&lblSubject, tr("Subject")},  {&lblMessage, tr("Message")},
        {&lblAttachment, tr("Attachment")}, {&lblServer, tr("Server")},    {&lblUser, tr("User")},
        {&lblPassword, tr("Password")},     {&lblFrom, tr("Your address")}};
    for (const auto& [label, text] : captions) label->setText(text);
    lblServerTitle.setText(tr("Mail server"));
    for (ui::Label* label : {&lblRecipient, &lblSubject, &lblMessage, &lblAttachment, &lblServer, &lblUser,
                             &lblPassword, &lblFrom, &lblServerTitle, &messageText, &attachmentText}) {
        label->setFont(QStringLiteral("Arial"), label == &lblServerTitle ? kServerTitleSize : kCaptionSize);
        label->setTextColor(ui::Palette::textOnDark);
        label->setShrinksToFit(true);
    }
    lblServerTitle.setBackgroundColor(ui::Palette::header);
    lblServerTitle.setAlignment(Qt::AlignHCenter);
    const std::pair<ui::TextField*, ui::Label*> named[] = {
        {&recipient, &lblRecipient}, {&subject, &lblSubject},   {&server, &lblServer},
        {&user, &lblUser},           {&password, &lblPassword}, {&from, &lblFrom}};
    for (const auto& [field, label] : named) field->setAccessibleName(label->text());
    server.setPlaceholder(tr("mail.example.com"));
    user.setPlaceholder(tr("empty: without password"));
    from.setPlaceholder(tr("you@example.com"));
    btnCancel.setTitle(tr("Cancel"));
    btnDraft.setTitle(tr("Save as draft"));
    btnSend.setTitle(tr("Send"));
    for (ui::Button* button : {&btnCancel, &btnSend})
        button->setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    btnCancel.setAction([this] { pressCancel(); });
    btnDraft.setAction([this] { pressDraft(); });
    btnSend.setAction([this] { pressSend(); });
    btnSecurity.setAction([this] { pressSecurity(); });
}

void MailComposeViewController::showSettings() {
    const platform::MailServer& kept = settings_.server;
    QString place = QString::fromStdString(kept.host);
    if (place.contains(u':')) place = u'[' + place + u']';
    if (kept.port != 0) place += u':' + QString::number(kept.port);
    server.setText(place);
    user.setText(QString::fromStdString(kept.user));
    from.setText(QString::fromStdString(settings_.from));
    showSecurity();
}

void MailComposeViewController::showSecurity() {
    const bool tls = settings_.server.security == MailSecurity::Tls;
    btnSecurity.setTitle(tls ? tr("TLS") : tr("STARTTLS"));
    btnSecurity.setAccessibleName(tls ? tr("Encrypted from the first byte (TLS)")
                                      : tr("Encrypted after the greeting (STARTTLS)"));
}

void MailComposeViewController::pressSecurity() {
    if (state_ != State::Editing) return;
    MailSecurity& security = settings_.server.security;
    security = security == MailSecurity::Tls ? MailSecurity::StartTls : MailSecurity::Tls;
    showSecurity();
}

void MailComposeViewController::readFields() {
    message_.recipient = recipient.text().trimmed().toStdString();
    message_.subject = subject.text().toStdString();
    message_.from = from.text().trimmed().toStdString();
    settings_.from = message_.from;
    settings_.server.user = user.text().trimmed().toStdString();
    platform::readHostAndPort(server.text().trimmed().toStdString(), settings_.server);
}

QString MailComposeViewController::problemOf(const ui::TextField& field) const {
    std::string why;
    if (&field == &recipient) why = platform::mailAddressProblem(message_.recipient, "recipient");
    if (&field == &from) why = platform::mailAddressProblem(message_.from, "sender");
    platform::MailServer asTyped = settings_.server;
    if (&field == &server) {
        why = platform::readHostAndPort(server.text().trimmed().toStdString(), asTyped);
        if (why.empty()) why = platform::mailServerProblem(asTyped);
    }
    if (&field == &user && !asTyped.host.empty()) why = platform::mailServerProblem(asTyped);
    if (!why.empty()) why.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(why.front())));
    return QString::fromStdString(why);
}

MailComposeViewController::Problem MailComposeViewController::firstProblem() {
    for (ui::TextField* field : fields()) {
        const QString problem = problemOf(*field);
        if (!problem.isEmpty()) return {field, problem};
    }
    return {};
}

void MailComposeViewController::say(const QString& text, bool isProblem) {
    status.setText(text);
    status.setTextColor(isProblem ? ui::Palette::warning : ui::Palette::textOnDark);
}

void MailComposeViewController::refuse(const Problem& problem) {
    setState(State::Editing);
    say(problem.text, true);
    if (problem.field != nullptr) problem.field->takeKeyboard();
}

void MailComposeViewController::setState(State state) {
    state_ = state;
    for (ui::TextField* field : fields()) field->setLocked(state != State::Editing);
    btnSend.setHidden(state != State::Editing);
    btnDraft.setHidden(state != State::Editing);
    btnCancel.setHidden(state == State::Ended);
    progress_ = 0;
    Q_EMIT progressChanged();
}

void MailComposeViewController::pressSend() {
    if (state_ != State::Editing) return;
    readFields();
    if (const Problem problem = firstProblem(); !problem.text.isEmpty()) return refuse(problem);
    if (!parts_.transport) return refuse({nullptr, QString::fromStdString(parts_.problem)});
    platform::keepMailSettings(services_.defaults, settings_);
    message_.date = services_.now();
    setState(State::Sending);
    say(tr("Sending …"), false);
    findPassword();
}

void MailComposeViewController::findPassword() {
    if (settings_.server.user.empty()) return send({});
    if (!password.text().isEmpty()) return send(password.text().toStdString());
    passwords_->find(platform::keyringName(settings_.server), [this](const auto& found, const auto& problem) {
        if (state_ != State::Sending) return;  // cancelled meanwhile
        if (found) return send(*found);
        const QString asked = tr("Type the password of %1.").arg(user.text().trimmed());
        refuse({&password, problem.empty() ? asked : asked + u' ' + QString::fromStdString(problem)});
    });
}

void MailComposeViewController::send(const std::string& withPassword) {
    used_ = withPassword;
    onItsWay_ = true;
    parts_.transport->send(
        {.server = settings_.server, .password = withPassword, .message = message_},
        [this](std::uint64_t sent, std::uint64_t all) {
            progress_ = all == 0 ? 0 : static_cast<double>(sent) / static_cast<double>(all);
            Q_EMIT progressChanged();
        },
        [this](const platform::MailReport& report) { mailEnded(report); });
}

void MailComposeViewController::mailEnded(const platform::MailReport& report) {
    onItsWay_ = false;
    const std::string name = platform::keyringName(settings_.server);
    if (report.loginRefused) passwords_->forget(name);
    if (report.result == MailResult::Sent && !used_.empty())
        passwords_->keep(name, used_, [&notice = services_.notice](const std::string& problem) {
            if (problem.empty()) return;
            notice.show(
                tr("The password is kept until Kestrix ends: %1").arg(QString::fromStdString(problem)));
        });
    finish(report.result, report.why);
}

void MailComposeViewController::pressCancel() {
    if (state_ == State::Ended) return;
    if (onItsWay_) {
        say(tr("Cancelling …"), false);
        return parts_.transport->cancel();
    }
    finish(MailResult::Cancelled, {});
}

void MailComposeViewController::pressDraft() {
    if (state_ != State::Editing) return;
    if (!parts_.transport) return refuse({nullptr, QString::fromStdString(parts_.problem)});
    readFields();
    platform::keepMailSettings(services_.defaults, settings_);
    message_.date = services_.now();
    const ExportedFile draft = keepDraft(parts_.transport->text(message_),
                                         services_.stampText.text(services_.now()), services_.documents);
    if (!draft.outcome.done)
        return refuse(
            {nullptr, tr("The draft was not saved: %1").arg(QString::fromStdString(draft.outcome.reason))});
    services_.notice.show(tr("Saved as %1").arg(draft.path));
    finish(MailResult::Saved, {});
}

bool MailComposeViewController::pressKey(int key, int modifiers, bool repeated) {
    if (!ui::KeyRules::leadsBack(key, modifiers)) return FramedScreen::pressKey(key, modifiers, repeated);
    if (!repeated) pressCancel();
    return true;
}

void MailComposeViewController::finish(MailResult result, const std::string& error) {
    setState(State::Ended);
    std::fill(used_.begin(), used_.end(), '\0');
    used_.clear();
    password.setText({});
    if (result == MailResult::Sent) say(tr("Sent"), false);
    if (result == MailResult::Failed) say(QString::fromStdString(error), true);
    if (delegate_ != nullptr) delegate_->mailComposeController(*this, result, error);
}

}  // namespace kestrix::history
