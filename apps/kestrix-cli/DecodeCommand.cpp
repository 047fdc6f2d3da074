// Raw bytes (a capture or any stream) to one JSON object a record, through the application's own pipeline, in
// constant memory. Records come out as soon as their bytes are read.

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/ReadingJson.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/ScreenJson.h"
#include "display/Steps.h"
#include "link/FrameExtractor.h"
#include "platform/CaptureFile.h"
#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"

namespace kestrix::cli {
namespace {

constexpr std::size_t kPieceBytes = 65'536;
constexpr std::size_t kFlushBytes = 131'072;

// One frame after the other to one JSON object a line. All records go to the one display, in order.
class RecordLines {
  public:
    explicit RecordLines(bool screen) {
        if (screen) display_ = connectedDisplay();
    }

    void append(std::string& json, std::string_view frame) {
        protocol::KV3820protocal decoder;
        const protocol::MeterReading& record = decoder.initFromString(frame).return3820data();
        appendReadingJson(json, record);
        if (display_) {
            display::recordCame(*display_, record);
            json.back() = ',';  // the object's brace: it has one member more
            json += "\"screen\":";
            appendScreenJson(json, *display_);
            json += '}';
        }
        json += '\n';
    }

  private:
    std::optional<display::Display> display_;
};

// The link's own steps from text to records, without the link: a file has no state to follow or to keep.
class RecordWriter {
  public:
    RecordWriter(Runner& runner, bool screen) : runner_(runner), lines_(screen) {}

    // False once the command is to stop.
    bool receive(std::span<const std::uint8_t> bytes) {
        hexText_.clear();
        protocol::appendHexText(hexText_, bytes);
        frames_.append(hexText_);
        while (const auto frame = frames_.nextFrame()) {
            lines_.append(json_, *frame);
            ++records_;
            if (json_.size() >= kFlushBytes && !flush()) return false;
        }
        return flush();
    }
    std::uint64_t records() const { return records_; }

  private:
    // Goes on when the reader has taken everything: until then nothing more is read.
    bool flush() {
        const bool good = runner_.output().write(json_);
        json_.clear();
        return good && runner_.flush(runner_.output()) && runner_.output().good();
    }

    Runner& runner_;
    RecordLines lines_;
    link::FrameExtractor frames_;
    std::string hexText_;
    std::string json_;
    std::uint64_t records_ = 0;
};

// A file, pipe, terminal or device; without a wait that a signal could not end. Opening a pipe does not wait
// for the one who writes into it: read() does.
class Input {
  public:
    explicit Input(const std::string& file)
        : descriptor_(file == "-" ? STDIN_FILENO
                                  : open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
        if (descriptor_ < 0) error_ = errno;
        struct stat status {};
        mayWait_ = fstat(descriptor_, &status) == 0 && !S_ISREG(status.st_mode);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input() {
        if (descriptor_ > STDIN_FILENO) close(descriptor_);
    }

    // As many bytes as there are, at least one; 0 at the end, after an error, or when the command is to stop.
    std::size_t read(std::span<std::uint8_t> buffer, const Runner& runner) {
        while (error_ == 0) {
            if (mayWait_ ? !runner.waitFor(descriptor_, POLLIN) : runner.stopping()) return 0;
            const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
            if (count >= 0) return static_cast<std::size_t>(count);
            // Another one who reads here too may have taken what there was.
            if (errno != EAGAIN && errno != EINTR) error_ = errno;
        }
        return 0;
    }
    // Why there is nothing more to read; empty at the end.
    std::string problem() const {
        return error_ == 0 ? std::string() : std::generic_category().message(error_);
    }

  private:
    int descriptor_;
    bool mayWait_ = false;
    int error_ = 0;  // errno
};

// The header is told apart only at the very beginning, where the first piece holds it whole or not at all.
std::span<const std::uint8_t> withoutHeader(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return bytes.subspan(platform::readCaptureStart(text).headerLength);
}

struct DecodeOptions {
    std::string file = "-";
    std::optional<std::string> frame;
    bool screen = false;
};

Ending decodeFile(Runner& runner, const std::string& file, bool screen) {
    Input input(file);
    RecordWriter writer(runner, screen);
    const auto buffer = std::make_unique<std::array<std::uint8_t, kPieceBytes>>();
    std::uint64_t total = 0;
    while (const std::size_t count = input.read(*buffer, runner)) {
        const auto bytes = std::span<const std::uint8_t>(*buffer).first(count);
        if (!writer.receive(total == 0 ? withoutHeader(bytes) : bytes)) return done();
        total += count;
    }
    if (!input.problem().empty()) return failed(file + ": " + input.problem());
    if (total > 0 && writer.records() == 0)
        return done(file + ": no frame in " + std::to_string(total) + " bytes");
    return done();
}

Ending decodeFrameText(Runner& runner, const std::string& hexText, bool screen) {
    std::string json;
    RecordLines(screen).append(json, hexText);
    runner.output().write(json);
    return done();
}

Action describeDecode(CommandOptions& options) {
    auto given = std::make_shared<DecodeOptions>();
    options.word("file", given->file, "Bytes to decode; - is standard input");
    options.text("--frame", "HEX", given->frame, "Decode one frame text instead");
    options.flag("--screen", given->screen, "Add what the live screen shows after each record");
    options.excludeEachOther("--frame", "file");
    return [given](Runner& runner) {
        runner.limitUnlessGiven(0);
        return given->frame ? decodeFrameText(runner, *given->frame, given->screen)
                            : decodeFile(runner, given->file, given->screen);
    };
}

}  // namespace

extern const Command decodeCommand;
const Command decodeCommand{"decode", "Raw bytes to one JSON object per record", AtSignal::CutsItShort,
                            describeDecode};

}  // namespace kestrix::cli
