#pragma once

#include <QHash>
#include <QString>

namespace kestrix::platform {

// Small values that outlive the process, in an ini file that begins with the line "[Kestrix]". Every change
// is in the file, and on the disk with its name, before the call returns; a kill at any moment leaves the old
// or the new file, never a torn one, and nothing that the next start would have to wait for. Only the owner
// may read it. Several processes may use one file: a change touches its own key only.
//
// A file that is not Kestrix's own, or cannot be read, is never changed; `problem` says so. One of Kestrix's
// own that does not parse is moved aside (".damaged", never over another file) and said in one log line; a
// file that cannot be written is said in one log line, until it can.
class UserDefaults {
  public:
    // Whether a file that does not parse is moved aside at once, or, where another process may be at it, left
    // until readNow() or the first change.
    enum class Start { Reads, LooksOnly };

    // path: the ini file; it and its folder are made by the first change.
    explicit UserDefaults(const QString& path, Start start = Start::Reads);

    // What stands in the file now.
    void readNow();

    // The file in the user's configuration folder.
    static QString standardPath();

    // Why the file may not be used, in one line. Empty when it may.
    const QString& problem() const { return problem_; }

    // 0, false or empty when the key was never set. As read at the start or set here since.
    int integerForKey(const QString& key) const;
    bool boolForKey(const QString& key) const;
    QString stringForKey(const QString& key) const;
    // key: letters and digits.
    void setInteger(const QString& key, int value);
    void setBool(const QString& key, bool value);
    // value: without line ends, which become blanks.
    void setString(const QString& key, const QString& value);

    // Whether the last change is in the file.
    bool isKept() const { return writable_; }

    QString path() const { return path_; }

  private:
    using Values = QHash<QString, QString>;
    enum class File { Missing, Ours, Damaged, Refused };

    // What stands in the file; for one that is refused the reason is in `problem_`.
    File read(Values& values);
    // The same; a damaged file is moved aside and missing afterwards.
    File readOrMoveAside(Values& values);
    void set(const QString& key, const QString& value);
    bool save() const;

    QString path_;
    bool folderWasThere_;
    QString problem_;
    Values values_;
    bool writable_ = true;
};

}  // namespace kestrix::platform
