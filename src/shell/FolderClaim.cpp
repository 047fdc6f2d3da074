#include "shell/FolderClaim.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>

namespace kestrix::shell {
namespace {

constexpr const char* kLockFile = "kestrix.lock";
constexpr const char* kShown = "shown\n";
constexpr int kPatience = 2000;  // milliseconds
constexpr qint64 kLongestRequest = 4096;
// What a desktop hands to a start, so that the window which answers it may take the keyboard.
constexpr const char* kActivation = "XDG_ACTIVATION_TOKEN";

// By the folder itself, whatever it is called. Needs no file, so nothing of it is left behind.
QString socketName(const struct stat& folder) {
    return QStringLiteral("kestrix-window-%1-%2-%3").arg(geteuid()).arg(folder.st_dev).arg(folder.st_ino);
}

// By where the folder stands or would stand.
QString socketName(const QString& folder) {
    std::error_code error;
    const std::filesystem::path written = QFile::encodeName(QDir(folder).absolutePath()).toStdString();
    std::filesystem::path place = std::filesystem::weakly_canonical(written, error);
    if (error) place = written.lexically_normal();
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(place.string()), QCryptographicHash::Sha256);
    return QStringLiteral("kestrix-place-%1-%2").arg(geteuid()).arg(QString::fromLatin1(hash.toHex()));
}

std::string contentOf(int file) {
    std::array<char, 32> text{};
    const ssize_t length = ::pread(file, text.data(), text.size(), 0);
    std::string content(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    while (!content.empty() && content.back() == '\n') content.pop_back();
    return content;
}

bool isNumber(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// For who wants to know which process holds it. A file that holds something else is somebody's own.
void writeHolder(int file) {
    if (!isNumber(contentOf(file))) return;
    const std::string text = std::to_string(::getpid()) + '\n';
    if (::ftruncate(file, 0) != 0 || ::pwrite(file, text.data(), text.size(), 0) < 0) return;
}

bool isOfThisUser(const QLocalSocket& peer) {
    ucred who{};
    socklen_t size = sizeof who;
    return ::getsockopt(static_cast<int>(peer.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &who, &size) ==
               0 &&
           who.uid == ::geteuid();
}

bool broughtForward(const QString& name) {
    QLocalSocket socket;
    socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    socket.connectToServer(name);
    if (!socket.waitForConnected(kPatience) || !isOfThisUser(socket)) return false;
    socket.write(qgetenv(kActivation).left(kLongestRequest - 1) + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(kPatience)) return false;
    }
    return socket.readLine() == kShown;
}

}  // namespace

FolderClaim::FolderClaim() = default;

FolderClaim::~FolderClaim() {
    if (lock_ >= 0) ::close(lock_);
}

FolderClaim::Answer FolderClaim::take(const QString& folder) {
    QStringList names{socketName(folder)};
    struct stat state {};
    if (::stat(QFile::encodeName(folder).constData(), &state) == 0) {
        names.prepend(socketName(state));
        const QByteArray path = QFile::encodeName(QDir(folder).filePath(QLatin1String(kLockFile)));
        constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
        lock_ = ::open(path.constData(), kFlags, 0600);
        if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
            const bool held = errno == EWOULDBLOCK;
            const std::string holder = contentOf(lock_);
            if (held && !holder.empty() && isNumber(holder)) holder_ = "process " + holder;
            ::close(std::exchange(lock_, -1));
            if (held) return broughtForward(names.front()) ? Answer::Shown : Answer::Held;
        }
    }
    for (const QString& name : names) {
        if (listen(name)) continue;
        servers_.clear();
        if (lock_ >= 0) ::close(std::exchange(lock_, -1));
        return broughtForward(name) ? Answer::Shown : Answer::Held;
    }
    if (lock_ >= 0) writeHolder(lock_);
    return Answer::Ours;
}

// False where another process has the name, or none can be had.
bool FolderClaim::listen(const QString& name) {
    QLocalServer* const server = servers_.emplace_back(std::make_unique<QLocalServer>()).get();
    server->setSocketOptions(QLocalServer::AbstractNamespaceOption);
    QObject::connect(server, &QLocalServer::newConnection, server, [this, server] {
        while (QLocalSocket* const caller = server->nextPendingConnection()) {
            QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            QObject::connect(caller, &QLocalSocket::readyRead, caller, [this, caller] { answer(*caller); });
            if (caller->bytesAvailable() > 0) answer(*caller);
        }
    });
    return server->listen(name);
}

void FolderClaim::answer(QLocalSocket& caller) {
    const bool line = caller.canReadLine();
    if (!isOfThisUser(caller) || (!line && caller.bytesAvailable() > kLongestRequest)) return caller.abort();
    if (!line) return;
    const QByteArray token = caller.readLine(kLongestRequest).trimmed();
    if (!token.isEmpty()) qputenv(kActivation, token);
    if (secondStart) secondStart();
    caller.write(kShown);
    caller.disconnectFromServer();
}

}  // namespace kestrix::shell
