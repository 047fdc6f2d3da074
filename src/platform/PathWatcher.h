#pragma once

#include <QFileSystemWatcher>
#include <QString>

#include <functional>
#include <string>

namespace kestrix::platform {

// Watches one path, whether it is there or not: tells when what stands there has changed, which is another
// file, another link, other rights, or its coming and going. Its folders may come and go as well. What is
// written to it is no change.
class PathWatcher {
  public:
    // path: absolute. changed is called from the event loop.
    PathWatcher(QString path, std::function<void()> changed);
    // Whether what comes and goes in this folder is looked at now.
    bool isWatching(const QString& folder) const { return watcher_.directories().contains(folder); }

  private:
    void watchFolders();
    void look();

    QString path_;
    std::function<void()> changed_;
    QFileSystemWatcher watcher_;
    std::string seen_;
};

}  // namespace kestrix::platform
