#pragma once

#include <QString>

#include <functional>
#include <string>

namespace kestrix::platform {

// The folder that holds the user's database and exports.
class DocumentsFolder {
  public:
    explicit DocumentsFolder(const QString& path) : path_(path) {}

    // "Kestrix" in the user's documents.
    static QString standardPath();
    // "Kestrix simulated" beside it: for readings that no tester measured.
    static QString simulatedPath();

    QString path() const { return path_; }

    // Asked before a file in the folder is opened, of this object and its copies: why it is not to be
    // touched, in one line; empty: it may be. None: it may always be.
    using Guard = std::function<std::string()>;
    void setGuard(Guard guard) { guard_ = std::move(guard); }
    std::string whyKeptOut() const { return guard_ ? guard_() : std::string(); }

    QString filePath(const QString& name) const;

    // Whether both are one folder, by whatever name.
    bool isSameAs(const QString& other) const;

    // Makes the folder when it is missing, for the owner alone, and takes from others what they could do with
    // the standard ones, which Kestrix made. A folder that the user made and chose keeps its rights. Says in
    // one log line why it cannot be made, and answers false.
    bool ensure() const;

  private:
    QString path_;
    Guard guard_;
};

}  // namespace kestrix::platform
