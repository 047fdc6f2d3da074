#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace kestrix::testing {

// mail_server.py on the loopback; it ends with this object.
class MailServerProgram {
  public:
    // options: those of the program. Back when it listens.
    explicit MailServerProgram(const QStringList& options = {});
    ~MailServerProgram();

    std::uint16_t port() const { return port_; }
    // The next line that it tells, waited for; empty when none comes.
    QByteArray nextLine();
    // Whether it has told anything that was not taken.
    bool hasMore();

  private:
    void take();

    QProcess process_;
    std::vector<QByteArray> lines_;
    std::uint16_t port_ = 0;
};

// Files in PEM, made once by this process: a certificate with its key, and the authority that signed it.
QString certificateOf(const QString& name);  // "localhost" (and 127.0.0.1), "other"
QString certificateAuthority();
// Which signed nothing.
QString strangeAuthority();

}  // namespace kestrix::testing
