#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QLocalServer;
class QLocalSocket;

namespace kestrix::shell {

// One window a folder: two would number their measurements alike and file each other's. The window holds a
// lock on "kestrix.lock" in the folder, and two local sockets, named after the folder itself and after where
// it stands; the kernel releases all of them with its process, however that ends. Whoever has one of them has
// the folder: a folder that can take no lock has one window too, and so has one that is not there yet. A
// second start finds the first one over a socket and has its window brought forward.
class FolderClaim {
  public:
    enum class Answer {
        Ours,   // this process has the folder
        Shown,  // another process has it, and has brought its window forward
        Held,   // another process has it and says nothing
    };

    FolderClaim();
    FolderClaim(const FolderClaim&) = delete;
    FolderClaim& operator=(const FolderClaim&) = delete;
    ~FolderClaim();

    // folder: also one that is not there. To be called once. Waits for another process's answer for some
    // seconds at most.
    Answer take(const QString& folder);

    // The process that has the folder, after Held: "process 1234", or "another program".
    const std::string& holder() const { return holder_; }

    // Called from the event loop when somebody starts a second window on the folder.
    std::function<void()> secondStart;

  private:
    bool listen(const QString& name);
    void answer(QLocalSocket& caller);

    int lock_ = -1;
    std::string holder_ = "another program";
    std::vector<std::unique_ptr<QLocalServer>> servers_;
};

}  // namespace kestrix::shell
