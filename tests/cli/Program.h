#pragma once

#include <sys/types.h>
#include <QTemporaryDir>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrix::cli {

// An open file, socket or pipe; closed with this object.
class Descriptor {
  public:
    explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { reset(); }

    int get() const { return descriptor_; }
    bool isOpen() const { return descriptor_ >= 0; }
    void reset(int descriptor = -1);

  private:
    int descriptor_;
};

struct Surroundings {
    bool terminal = false;  // input and output are a terminal, and errors too
    unsigned short rows = 30;
    unsigned short columns = 100;
    std::vector<std::string> environment{};  // "NAME=value"
    std::string output{};                    // a file that takes the output instead of output()
    bool stalled = false;                    // nobody reads output and errors, from the start: startReading()
    bool readerGone = false;                 // the output's reader has gone before it starts
    std::vector<int> ignored{};              // signals that it starts with ignored
    std::vector<int> closed{};               // descriptors of 0 to 2 that it starts without
    bool unprivileged = false;               // bound by rights and locks, even as root's program
    bool waitingInput = true;                // false: reading too early answers instead of waiting
    std::string program = "kestrix-cli";
    bool ownSettings = true;  // a settings file of its own, unless the arguments name one
};

// One of our programs, running with settings and a home folder of its own. Killed with this object. Every
// wait takes what the program writes, and gives up after a time that only a program that hangs needs.
class Program {
  public:
    explicit Program(std::vector<std::string> arguments, const Surroundings& setup = {});
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    // False when the program no longer reads.
    bool send(std::string_view input);
    void endInput() { input_.reset(); }
    void closeOutput() { output_.reset(); }

    // False when the program ends, or does nothing of the kind.
    bool waitUntil(const std::function<bool()>& condition);
    bool waitForOutput(std::string_view text);
    bool waitForError(std::string_view text);
    // Ends its input and waits for its end: the exit status, or minus the signal that killed it.
    int wait();
    // The same with its input left open.
    int waitForEnd();

    bool hasEnded() { return ended(); }

    // From now on what a stalled program writes is read.
    void startReading();

    // Whether it has a handler for this signal, or ignores it; as the system says.
    bool waitUntilItCatches(int signal);
    bool ignores(int signal) const;

    void signal(int number) const;
    // From now on none of its files grows beyond so many bytes.
    void limitFileSize(unsigned long bytes) const;
    pid_t id() const { return child_; }
    void resize(unsigned short rows, unsigned short columns) const;

    const std::string& output() const { return outputText_; }
    const std::string& error() const { return errorText_; }
    std::string folder() const { return home_.path().toStdString(); }

    // The most memory that it ever had, in KiB; while it runs.
    long peakKilobytes() const;
    // Waits until it does nothing but wait, however often one looks.
    bool waitUntilItRests();

  private:
    void start(const std::vector<std::string>& arguments, const Surroundings& setup);
    bool takeUntil(const std::function<bool()>& done, short inputEvents);
    void takeAll();
    void take(Descriptor& from, std::string& text);
    bool hasSignal(const char* set, int signal) const;
    bool ended();

    QTemporaryDir home_;
    pid_t child_ = -1;
    Descriptor end_;  // readable once the child has ended
    Descriptor input_;
    Descriptor output_;
    Descriptor error_;
    Descriptor stoppedTerminal_;
    bool stalled_ = false;
    std::string outputText_;
    std::string errorText_;
    bool inputReady_ = false;
    int status_ = 0;
};

struct Result {
    int status = 0;
    std::string output;
    std::string error;
};

// From start to end.
Result run(std::vector<std::string> arguments, std::string_view input = {}, const Surroundings& setup = {});

std::vector<std::string> linesOf(const std::string& text);

// The lines on standard error without those of the log.
std::vector<std::string> complaintsIn(const std::string& error);

std::string contentOf(const std::string& path);
void writeFile(const std::string& path, std::string_view content);

}  // namespace kestrix::cli
