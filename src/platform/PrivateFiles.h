#pragma once

#include <QByteArray>
#include <QString>

namespace kestrix::platform {

// Files and folders that only their owner may read and write. Each answers false, with the reason in errno,
// when it cannot.

// Makes the folder and those above it that are missing, each for the owner alone. One that is there stays as
// it is.
bool makePrivateFolder(const QString& path);

// Makes an empty file for the owner alone. One that is there stays as it is; that is an answer of true.
bool makePrivateFile(const QString& path);

// Takes away what group and others may do with it. True for one that does not exist.
bool keepPrivate(const QString& path);

// The file holds these bytes, on the disk, or still what it held before, whatever happens in between; it is
// its owner's alone. A link is followed.
bool replacePrivateFile(const QString& path, const QByteArray& content);

// Holds other processes off that ask for the same folder, until it is destroyed; a process that is killed
// holds nobody off. Waits for another one, but not for ever: then it goes on without.
class FolderLock {
  public:
    explicit FolderLock(const QString& folder);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

  private:
    int descriptor_;
};

}  // namespace kestrix::platform
