#pragma once

#include <QString>

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
    QString filePath(const QString& name) const;

    // Whether both are one folder, by whatever name.
    bool isSameAs(const QString& other) const;

    // Makes the folder when it is missing, for the owner alone, and takes from others what they could do with
    // the standard ones, which Kestrix made. A folder that the user made and chose keeps its rights. Says in
    // one log line why it cannot be made, and answers false.
    bool ensure() const;

  private:
    QString path_;
};

}  // namespace kestrix::platform
