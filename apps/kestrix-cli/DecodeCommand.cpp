#include "apps/kestrix-cli/DecodeCommand.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/ReadingJson.h"
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
class JsonWriter {
  public:
    JsonWriter(Output& output, bool screen) : output_(output), lines_(screen) {}

    // False once the output is closed.
    bool receive(std::span<const std::uint8_t> bytes) {
        hexText_.clear();
        protocol::appendHexText(hexText_, bytes);
        frames_.append(hexText_);
        while (const auto frame = frames_.nextFrame()) {
            lines_.append(json_, *frame);
            ++records_;
            if (json_.size() >= kFlushBytes) flush();
        }
        flush();
        return output_.good();
    }
    std::uint64_t records() const { return records_; }

  private:
    void flush() {
        output_.write(json_);
        json_.clear();
    }

    Output& output_;
    RecordLines lines_;
    link::FrameExtractor frames_;
    std::string hexText_;
    std::string json_;
    std::uint64_t records_ = 0;
};

std::string systemMessage(int error) {
    return std::generic_category().message(error);
}

// Reads all, except after an error.
class Input {
  public:
    explicit Input(const std::string& file)
        : descriptor_(file == "-" ? 0 : open(file.c_str(), O_RDONLY | O_CLOEXEC)), owned_(file != "-") {
        if (descriptor_ < 0) error_ = errno;
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input() {
        if (owned_ && descriptor_ >= 0) close(descriptor_);
    }

    // As many bytes as there are, at least one; 0 at the end or after an error.
    std::size_t read(std::span<std::uint8_t> buffer) {
        while (error_ == 0) {
            const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
            if (count >= 0) return static_cast<std::size_t>(count);
            if (errno == EAGAIN) {  // somebody made our input non-blocking
                pollfd ready{descriptor_, POLLIN, 0};
                poll(&ready, 1, -1);
            } else if (errno != EINTR) {
                error_ = errno;
            }
        }
        return 0;
    }
    int error() const { return error_; }

  private:
    int descriptor_;
    bool owned_;
    int error_ = 0;
};

// The header is told apart only at the very beginning, where the first piece holds it whole or not at all.
std::span<const std::uint8_t> withoutHeader(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return bytes.subspan(platform::readCaptureStart(text).headerLength);
}

}  // namespace

ExitStatus decodeFile(const std::string& file, bool screen) {
    Input input(file);
    Output output;
    JsonWriter writer(output, screen);
    const auto buffer = std::make_unique<std::array<std::uint8_t, kPieceBytes>>();
    std::uint64_t total = 0;
    while (const std::size_t count = input.read(*buffer)) {
        const auto bytes = std::span<const std::uint8_t>(*buffer).first(count);
        if (!writer.receive(total == 0 ? withoutHeader(bytes) : bytes)) return output.status();
        total += count;
    }
    if (input.error() != 0) return fail(file + ": " + systemMessage(input.error()));
    if (total > 0 && writer.records() == 0) say(file + ": no frame in " + std::to_string(total) + " bytes");
    return output.status();
}

ExitStatus decodeFrameText(const std::string& hexText, bool screen) {
    Output output;
    std::string json;
    RecordLines(screen).append(json, hexText);
    output.write(json);
    return output.status();
}

}  // namespace kestrix::cli
