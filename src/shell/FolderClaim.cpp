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
constexpr const char* kSomebody = "another program";
constexpr const char* kShown = "shown\n";
constexpr const char* kShownOther = "shown, for something else\n";
constexpr int kPatience = 2000;            // milliseconds
constexpr qint64 kLongestRequest = 16384;  // twice the longest path, and what stands beside it
// What a desktop hands to a start, so that the window which answers it may take the keyboard.
constexpr const char* kActivation = "XDG_ACTIVATION_TOKEN";

// By the folder itself, whatever it is called. Needs no file, so nothing of it is left behind.
QString socketName(std::uint64_t device, std::uint64_t file) {
    return QStringLiteral("kestrix-window-%1-%2-%3").arg(geteuid()).arg(device).arg(file);
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

// A request is one line of three words, each of which may be empty: the purpose, what the desktop handed to
// the start, and a choice.
QByteArray requestFor(const QByteArray& purpose, const std::string& choice) {
    return purpose + ' ' + qgetenv(kActivation).left(kLongestRequest / 4).replace(' ', "") + ' ' +
           QByteArray::fromStdString(choice).toHex() + '\n';
}

}  // namespace

FolderClaim::FolderClaim() = default;

FolderClaim::~FolderClaim() {
    letGo();
}

std::optional<FolderClaim::Identity> FolderClaim::present() const {
    struct stat state {};
    if (::stat(QFile::encodeName(folder_).constData(), &state) != 0) return std::nullopt;
    return Identity{state.st_dev, state.st_ino};
}

void FolderClaim::setPurpose(const QByteArray& purpose) {
    purpose_ = purpose.isEmpty() ? QByteArray()
                                 : QCryptographicHash::hash(purpose, QCryptographicHash::Sha256).toHex();
}

FolderClaim::Answer FolderClaim::take(const QString& folder, const QByteArray& purpose,
                                      const std::string& choice) {
    folder_ = folder;
    setPurpose(purpose);
    std::optional<QString> other = takeFolder();
    if (!other) other = takePlace();
    if (!other) return Answer::Ours;
    letGo();
    return askFor(*other, choice);
}

// Has the window of who listens there brought forward.
FolderClaim::Answer FolderClaim::askFor(const QString& name, const std::string& choice) const {
    QLocalSocket socket;
    socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    socket.connectToServer(name);
    if (!socket.waitForConnected(kPatience) || !isOfThisUser(socket)) return Answer::Held;
    socket.write(requestFor(purpose_, choice));
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(kPatience)) return Answer::Held;
    }
    const QByteArray answer = socket.readLine();
    if (answer == kShownOther) return Answer::Other;
    return answer == kShown ? Answer::Shown : Answer::Held;
}

bool FolderClaim::covers() const {
    const std::optional<Identity> now = present();
    return !now || now == claimed_;
}

bool FolderClaim::takeAgain() {
    letGo();
    if (!takeFolder()) return true;
    letGo();
    return false;
}

void FolderClaim::letGo() {
    claimed_.reset();
    atFolder_.reset();
    if (lock_ >= 0) ::close(std::exchange(lock_, -1));
}

std::optional<QString> FolderClaim::takeFolder() {
    holder_ = kSomebody;
    const std::optional<Identity> folder = present();
    if (!folder) return std::nullopt;
    const QString name = socketName(folder->device, folder->file);
    const QByteArray path = QFile::encodeName(QDir(folder_).filePath(QLatin1String(kLockFile)));
    constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    lock_ = ::open(path.constData(), kFlags, 0600);
    if (lock_ >= 0 && ::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
        const bool held = errno == EWOULDBLOCK;
        const std::string holder = contentOf(lock_);
        if (held && !holder.empty() && isNumber(holder)) holder_ = "process " + holder;
        ::close(std::exchange(lock_, -1));
        if (held) return name;
    }
    atFolder_ = listen(name);
    if (!atFolder_) return name;
    if (lock_ >= 0) writeHolder(lock_);
    claimed_ = folder;
    return std::nullopt;
}

std::optional<QString> FolderClaim::takePlace() {
    const QString name = socketName(folder_);
    atPlace_ = listen(name);
    return atPlace_ ? std::nullopt : std::optional(name);
}

FolderClaim::Server FolderClaim::listen(const QString& name) {
    auto made = std::make_unique<QLocalServer>();
    QLocalServer* const server = made.get();
    server->setSocketOptions(QLocalServer::AbstractNamespaceOption);
    QObject::connect(server, &QLocalServer::newConnection, server, [this, server] {
        while (QLocalSocket* const caller = server->nextPendingConnection()) {
            QObject::connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            QObject::connect(caller, &QLocalSocket::readyRead, caller, [this, caller] { answer(*caller); });
            if (caller->bytesAvailable() > 0) answer(*caller);
        }
    });
    return server->listen(name) ? std::move(made) : nullptr;
}

void FolderClaim::answer(QLocalSocket& caller) {
    const bool line = caller.canReadLine();
    if (!isOfThisUser(caller) || (!line && caller.bytesAvailable() > kLongestRequest)) return caller.abort();
    if (!line) return;
    const QByteArray request = caller.readLine(kLongestRequest);
    const QByteArrayList words =
        request.trimmed().isEmpty() ? QByteArrayList() : request.chopped(1).split(' ');
    const QByteArray wanted = words.value(0);
    const QByteArray token = words.value(1);
    const std::string choice = QByteArray::fromHex(words.value(2)).toStdString();
    if (!token.isEmpty()) qputenv(kActivation, token);
    if (!choice.empty() && chosen) chosen(choice);
    if (secondStart) secondStart();
    caller.write(wanted.isEmpty() || wanted == purpose_ || !choice.empty() ? kShown : kShownOther);
    caller.disconnectFromServer();
}

}  // namespace kestrix::shell
