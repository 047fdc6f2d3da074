#include "shell/FolderClaim.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <algorithm>
#include <array>
#include <cerrno>
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
    struct stat state {};
    if (::stat(QFile::encodeName(folder).constData(), &state) != 0) return Answer::Ours;
    const QByteArray path = QFile::encodeName(QDir(folder).filePath(QLatin1String(kLockFile)));
    constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    lock_ = ::open(path.constData(), kFlags, 0600);
    if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        const std::string holder = contentOf(lock_);
        holder_ = holder.empty() || !isNumber(holder) ? "another program" : "process " + holder;
        ::close(std::exchange(lock_, -1));
        return broughtForward(socketName(state)) ? Answer::Shown : Answer::Held;
    }
    if (lock_ >= 0) writeHolder(lock_);
    listen(socketName(state));
    return Answer::Ours;
}

void FolderClaim::listen(const QString& name) {
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::AbstractNamespaceOption);
    QObject::connect(server_.get(), &QLocalServer::newConnection, server_.get(), [this] {
        while (QLocalSocket* const caller = server_->nextPendingConnection()) {
            QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            QObject::connect(caller, &QLocalSocket::readyRead, caller, [this, caller] { answer(*caller); });
            if (caller->bytesAvailable() > 0) answer(*caller);
        }
    });
    server_->listen(name);  // without it a second start says who holds the folder
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
