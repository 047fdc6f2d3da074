#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <string>

class QLocalServer;
class QLocalSocket;

namespace kestrix::shell {

// One window a folder: two would number their measurements alike and file each other's. The window holds a
// lock on "kestrix.lock" in the folder, which the kernel releases with its process, however that ends. A
// second start finds the first one over a local socket of the same user and has its window brought forward.
class FolderClaim {
  public:
    enum class Answer {
        Ours,   // this process has the folder; also where the folder can take no lock
        Shown,  // another process has it, and has brought its window forward
        Held,   // another process has it and says nothing
    };

    FolderClaim();
    FolderClaim(const FolderClaim&) = delete;
    FolderClaim& operator=(const FolderClaim&) = delete;
    ~FolderClaim();

    // folder: an existing one. Waits for another process's answer for some seconds at most.
    Answer take(const QString& folder);

    // The process that has the folder, after Held: "process 1234", or "another program".
    const std::string& holder() const { return holder_; }

    // Called from the event loop when somebody starts a second window on the folder.
    std::function<void()> secondStart;

  private:
    void listen(const QString& name);
    void answer(QLocalSocket& caller);

    int lock_ = -1;
    std::string holder_;
    std::unique_ptr<QLocalServer> server_;
};

}  // namespace kestrix::shell
