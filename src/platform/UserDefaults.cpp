#include "platform/UserDefaults.h"

#include <QFile>
#include <QStandardPaths>

#include "platform/Log.h"

namespace kestrix::platform {

UserDefaults::UserDefaults(const QString& path) : path_(path) {
    settings_ = std::make_unique<QSettings>(path, QSettings::IniFormat);
    if (settings_->status() != QSettings::FormatError) return;
    settings_.reset();
    const QString aside = path + QStringLiteral(".damaged");
    QFile::remove(aside);
    QFile::rename(path, aside);
    qCWarning(lcSettings).noquote() << "settings file" << path << "is damaged; kept as" << aside;
    settings_ = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

QString UserDefaults::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/kestrix/kestrix.ini");
}

int UserDefaults::integerForKey(const QString& key) const {
    return settings_->value(key, 0).toInt();
}

bool UserDefaults::boolForKey(const QString& key) const {
    return settings_->value(key, false).toBool();
}

void UserDefaults::setInteger(const QString& key, int value) {
    set(key, value);
}

void UserDefaults::setBool(const QString& key, bool value) {
    set(key, value);
}

void UserDefaults::set(const QString& key, const QVariant& value) {
    settings_->setValue(key, value);
    settings_->sync();
    if (settings_->status() != QSettings::NoError)
        qCWarning(lcSettings).noquote()
            << "settings file" << path_ << "cannot be written;" << key << "is not kept";
}

}  // namespace kestrix::platform
