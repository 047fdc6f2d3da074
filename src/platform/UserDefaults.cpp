#include "platform/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

#include "platform/Log.h"

namespace kestrix::platform {

// Not QSettings: a process killed while it takes the lock beside the file makes the next one wait 30 s for
// it.
UserDefaults::UserDefaults(const QString& path) : path_(path) {
    if (load()) return;
    values_.clear();
    const QString aside = path + QStringLiteral(".damaged");
    QFile::remove(aside);
    QFile::rename(path, aside);
    qCWarning(lcSettings).noquote() << "settings file" << path << "is damaged; kept as" << aside;
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

void UserDefaults::setInteger(const QString& key, int value) {
    set(key, QString::number(value));
}

void UserDefaults::setBool(const QString& key, bool value) {
    set(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

void UserDefaults::set(const QString& key, const QString& value) {
    // Not even an unchanged value is written for nothing: that waits for the disk.
    if (kept_ && values_.value(key) == value) return;
    values_.insert(key, value);
    kept_ = save();
    if (!kept_)
        qCWarning(lcSettings).noquote()
            << "settings file" << path_ << "cannot be written;" << key << "is not kept";
}

bool UserDefaults::load() {
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) return true;  // the first start
    const QList<QByteArray> lines = file.readAll().split('\n');
    return std::all_of(lines.begin(), lines.end(), [this](const QByteArray& raw) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.startsWith('#')) return true;
        if (line.startsWith('[')) return line.endsWith(']');
        const qsizetype equals = line.indexOf('=');
        if (equals <= 0) return false;
        values_.insert(QString::fromUtf8(line.first(equals)), QString::fromUtf8(line.sliced(equals + 1)));
        return true;
    });
}

bool UserDefaults::save() const {
    QStringList keys = values_.keys();
    keys.sort();
    QByteArray text = "[General]\n";
    for (const QString& key : keys) text += key.toUtf8() + '=' + values_.value(key).toUtf8() + '\n';
    if (!QDir().mkpath(QFileInfo(path_).absolutePath())) return false;
    QSaveFile file(path_);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

}  // namespace kestrix::platform
