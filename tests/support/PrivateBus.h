#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <string>

namespace kestrix::testing {

// A message bus of the test's own. It can start nothing but what its folder says, and ends with the test.
class PrivateBus {
  public:
    static constexpr const char* kEverybodyMayDoAll =
        "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/>";

    PrivateBus() = default;
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    // rules: what its users may do. surroundings: of the services that it starts. False when it does not run.
    bool start(const QProcessEnvironment& surroundings = QProcessEnvironment::systemEnvironment(),
               const QByteArray& rules = kEverybodyMayDoAll);
    // At once, as if it had crashed.
    void kill();

    const std::string& address() const { return address_; }
    // A file in its folder, where it looks for what it can start.
    void write(const char* name, const QByteArray& content) const;
    QString path(const char* name) const { return folder_.filePath(QLatin1String(name)); }

  private:
    QTemporaryDir folder_;
    QProcess process_;
    std::string address_;
};

// What a program says, line by line.
std::string nextLineOf(QProcess& process);

}  // namespace kestrix::testing
