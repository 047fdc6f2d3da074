#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

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
        Other,  // the same, and it was started for something else
        Held,   // another process has it and says nothing
    };

    FolderClaim();
    FolderClaim(const FolderClaim&) = delete;
    FolderClaim& operator=(const FolderClaim&) = delete;
    ~FolderClaim();

    // folder: also one that is not there. purpose: what it is wanted for, to tell Shown from Other; empty:
    // whatever it is open for. To be called once. Waits for another process's answer for some seconds at
    // most.
    // choice: a URI, which the process that has the folder takes over, whatever it is open for; empty: none.
    Answer take(const QString& folder, const QByteArray& purpose, const std::string& choice = {});

    // What the folder is wanted for from now on.
    void setPurpose(const QByteArray& purpose);

    // Whether what stands there now is what was claimed; true too while nothing does. A folder that was away
    // and has come back, or another one in its place, is not.
    bool covers() const;
    // Claims what stands there now. False when another process has it; its window is left where it is.
    bool takeAgain();
    // Gives up what stands there.
    void letGo();

    // The process that has the folder, after Held and after false: "process 1234", or "another program".
    const std::string& holder() const { return holder_; }

    // Called from the event loop when somebody starts a second window on the folder, and before that, when he
    // brings a choice, with its URI.
    std::function<void()> secondStart;
    std::function<void(const std::string& uri)> chosen;

  private:
    using Server = std::unique_ptr<QLocalServer>;
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t file = 0;
        bool operator==(const Identity&) const = default;
    };

    // None: there is no such folder.
    std::optional<Identity> present() const;
    // The name at which to ask for the window of who has it; none: it is ours.
    std::optional<QString> takeFolder();
    std::optional<QString> takePlace();
    Answer askFor(const QString& name, const std::string& choice) const;
    // None where another process has the name, or none can be had.
    Server listen(const QString& name);
    void answer(QLocalSocket& caller);

    QString folder_;
    QByteArray purpose_;  // in a form that is one word of any purpose
    std::optional<Identity> claimed_;
    int lock_ = -1;
    std::string holder_;
    Server atFolder_;
    Server atPlace_;
};

}  // namespace kestrix::shell
