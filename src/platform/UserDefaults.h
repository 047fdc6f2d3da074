#pragma once

#include <QHash>
#include <QString>

namespace kestrix::platform {

// Small values that outlive the process, in an ini file. Every change is in the file, and on the disk, before
// the call returns; a kill at any moment leaves the old or the new file, never a torn one, and nothing that
// the next start would have to wait for. A file that is not an ini file is moved aside (".damaged") and said
// in one log line; a file that cannot be written is said in one log line.
class UserDefaults {
  public:
    // path: the ini file; it and its folder are made by the first change.
    explicit UserDefaults(const QString& path);

    // The file in the user's configuration folder.
    static QString standardPath();

    // 0 or false when the key was never set.
    int integerForKey(const QString& key) const;
    bool boolForKey(const QString& key) const;
    // key: letters and digits.
    void setInteger(const QString& key, int value);
    void setBool(const QString& key, bool value);

    QString path() const { return path_; }

  private:
    // False when a line is neither a section, a comment nor key=value.
    bool load();
    void set(const QString& key, const QString& value);
    bool save() const;

    QString path_;
    QHash<QString, QString> values_;
    bool kept_ = true;  // the file holds what was set last
};

}  // namespace kestrix::platform
