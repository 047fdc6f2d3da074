#pragma once

#include <QString>

namespace kestrix::platform {

// The folder that holds the user's database and exports.
class DocumentsFolder {
  public:
    explicit DocumentsFolder(const QString& path) : path_(path) {}

    // "Kestrix" in the user's documents.
    static QString standardPath();

    QString path() const { return path_; }
    QString filePath(const QString& name) const;

    // Makes the folder when it is missing. Says in one log line why it cannot, and answers false.
    bool ensure() const;

  private:
    QString path_;
};

}  // namespace kestrix::platform
