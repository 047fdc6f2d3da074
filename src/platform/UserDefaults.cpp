#include "platform/UserDefaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "platform/Log.h"
#include "platform/PrivateFiles.h"

namespace kestrix::platform {
namespace {

constexpr const char* kMark = "[Kestrix]";
// The first line of files of before, and all that stood in them.
constexpr const char* kMarkOfBefore = "[General]";
constexpr std::array kKeysOfBefore{"bluestate", "firstOrvo", "tablesMissing"};
constexpr qsizetype kLargest = 1 << 20;

struct Content {
    QByteArray bytes;
    int error = 0;       // of the operating system; 0: it was read
    bool isFile = true;  // and no folder, pipe or device
};

// Does not wait for the other end of a pipe.
Content contentOf(const QString& path) {
    QFile file;
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return {{}, errno, true};
    struct stat state {};
    const bool isFile = ::fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode);
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) ::close(descriptor);
    return {isFile ? file.read(kLargest + 1) : QByteArray(), 0, isFile};
}

// False when a line is neither a section, a comment nor key=value.
bool parse(const QByteArray& text, QHash<QString, QString>& values) {
    const QList<QByteArray> lines = text.split('\n');
    return std::all_of(lines.begin(), lines.end(), [&values](const QByteArray& raw) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#')) return true;
        if (line.startsWith('[')) return line.endsWith(']');
        const qsizetype equals = line.indexOf('=');
        if (equals <= 0) return false;
        values.insert(QString::fromUtf8(line.first(equals)), QString::fromUtf8(line.sliced(equals + 1)));
        return true;
    });
}

bool isOfBefore(const QByteArray& firstLine, bool parsed, const QHash<QString, QString>& values) {
    const QList<QString> keys = values.keys();
    return firstLine == kMarkOfBefore && parsed &&
           std::all_of(keys.begin(), keys.end(), [](const QString& key) {
               return std::any_of(kKeysOfBefore.begin(), kKeysOfBefore.end(),
                                  [&key](const char* known) { return key == QLatin1String(known); });
           });
}

// Gives the file a free name. False when that cannot be.
bool moveAside(const QString& path, QString& aside) {
    for (int number = 1; number < 1000; ++number) {
        aside = path + QStringLiteral(".damaged") + (number == 1 ? QString() : QString::number(number));
        // A second name is never put in the place of another file, as renaming would.
        if (::link(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) == 0)
            return ::unlink(QFile::encodeName(path).constData()) == 0;
        if (errno != EEXIST) return false;
    }
    return false;
}

}  // namespace

// Not QSettings: a process killed while it takes the lock beside the file makes the next one wait 30 s for
// it.
UserDefaults::UserDefaults(const QString& path, Start start)
    : path_(path), folderWasThere_(QFileInfo(QFileInfo(path).absolutePath()).isDir()) {
    if (start == Start::Reads) {
        readNow();
    } else if (read(values_) != File::Ours) {
        values_.clear();
    }
}

void UserDefaults::readNow() {
    values_.clear();
    if (readOrMoveAside(values_) == File::Ours) keepPrivate(path_);
}

QString UserDefaults::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/kestrix/kestrix.ini");
}

int UserDefaults::integerForKey(const QString& key) const {
    return values_.value(key).toInt();
}

bool UserDefaults::boolForKey(const QString& key) const {
    return values_.value(key) == QLatin1String("true");
}

QString UserDefaults::stringForKey(const QString& key) const {
    return values_.value(key);
}

void UserDefaults::setInteger(const QString& key, int value) {
    set(key, QString::number(value));
}

void UserDefaults::setBool(const QString& key, bool value) {
    set(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

void UserDefaults::setString(const QString& key, const QString& value) {
    set(key, QString(value).replace(u'\n', u' ').replace(u'\r', u' ').trimmed());
}

UserDefaults::File UserDefaults::read(Values& values) {
    problem_.clear();
    const auto refused = [this](const QString& why) {
        problem_ = QStringLiteral("settings file %1 %2; it is left as it is").arg(path_, why);
        return File::Refused;
    };
    const Content content = contentOf(path_);
    if (content.error == ENOENT || content.error == ENOTDIR) return File::Missing;
    if (content.error != 0)
        return refused(
            QStringLiteral("cannot be read (%1)").arg(QString::fromLocal8Bit(std::strerror(content.error))));
    if (!content.isFile) return refused(QStringLiteral("is no regular file"));
    const QString foreign = QStringLiteral("is not one of Kestrix's");
    if (content.bytes.size() > kLargest) return refused(foreign);
    if (content.bytes.isEmpty()) return File::Missing;
    const QByteArray firstLine =
        content.bytes.first(std::max<qsizetype>(content.bytes.indexOf('\n'), 0)).trimmed();
    const bool parsed = parse(content.bytes, values);
    if (firstLine != kMark && !isOfBefore(firstLine, parsed, values)) {
        values.clear();
        return refused(foreign);
    }
    return parsed ? File::Ours : File::Damaged;
}

UserDefaults::File UserDefaults::readOrMoveAside(Values& values) {
    const File found = read(values);
    if (found != File::Damaged) return found;
    values.clear();
    QString aside;
    if (!moveAside(path_, aside)) {
        problem_ = QStringLiteral("settings file %1 is damaged and cannot be moved aside").arg(path_);
        return File::Refused;
    }
    qCWarning(lcSettings).noquote() << "settings file" << path_ << "is damaged; kept as" << aside;
    return File::Missing;
}

void UserDefaults::set(const QString& key, const QString& value) {
    const QString folder = QFileInfo(path_).absolutePath();
    // Not even an unchanged value is written for nothing: that waits for the disk.
    Values inFile;
    if (read(inFile) == File::Ours && inFile.value(key) == value && inFile.contains(key)) {
        values_ = std::move(inFile);
        return;
    }
    // A folder that was there and is gone comes back as it was; a new one would stand in its way.
    if (!folderWasThere_) folderWasThere_ = makePrivateFolder(folder);
    const FolderLock lock(folder);
    inFile.clear();
    const File found = readOrMoveAside(inFile);
    if (found == File::Ours || (found == File::Missing && writable_)) values_ = std::move(inFile);
    values_.insert(key, value);
    const bool kept = problem_.isEmpty() && save();
    if (!kept && writable_)
        qCWarning(lcSettings).noquote()
            << "settings file" << path_ << "cannot be written;" << key << "is not kept";
    writable_ = kept;
}

bool UserDefaults::save() const {
    QStringList keys = values_.keys();
    keys.sort();
    QByteArray text = QByteArray(kMark) + '\n';
    for (const QString& key : keys) text += key.toUtf8() + '=' + values_.value(key).toUtf8() + '\n';
    return replacePrivateFile(path_, text);
}

}  // namespace kestrix::platform
