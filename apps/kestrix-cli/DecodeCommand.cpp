#include "apps/kestrix-cli/DecodeCommand.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <span>
#include <string_view>
#include <system_error>

#include "apps/kestrix-cli/Link.h"
#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/ReadingJson.h"
#include "link/BluetoothConnect.h"
#include "platform/CaptureFile.h"
#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"

namespace kestrix::cli {
namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;
constexpr std::size_t kFlushBytes = 128 * 1024;

class JsonWriter final : public link::BusinessCommunicationDelegate {
  public:
    explicit JsonWriter(Output& output) : output_(output) {}

    void didReceive3820Data(const protocol::MeterReading& record, bool) override {
        ++records_;
        appendReadingJson(json_, record);
        json_ += '\n';
        if (json_.size() >= kFlushBytes) flush();
    }
    bool flush() {
        const bool good = output_.write(json_);
        json_.clear();
        return good;
    }
    std::uint64_t records() const { return records_; }

  private:
    Output& output_;
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
            if (errno != EINTR) error_ = errno;
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

ExitStatus decodeFile(const std::string& file) {
    Input input(file);
    Output output;
    JsonWriter writer(output);
    Link pipeline{{}};
    pipeline.connect.setDelegate(&writer);

    const auto buffer = std::make_unique<std::array<std::uint8_t, kPieceBytes>>();
    std::string hexText;
    std::uint64_t total = 0;
    while (const std::size_t count = input.read(*buffer)) {
        std::span<const std::uint8_t> bytes = std::span(*buffer).first(count);
        if (total == 0) bytes = withoutHeader(bytes);
        total += count;
        hexText.clear();
        protocol::appendHexText(hexText, bytes);
        pipeline.connect.analyticalData(hexText);
        if (!writer.flush()) return output.status();
    }
    if (input.error() != 0) return fail(file + ": " + systemMessage(input.error()));
    if (total > 0 && writer.records() == 0) fail(file + ": no frame in " + std::to_string(total) + " bytes");
    return output.status();
}

ExitStatus decodeFrameText(const std::string& hexText) {
    Output output;
    protocol::KV3820protocal decoder;
    std::string json;
    appendReadingJson(json, decoder.initFromString(hexText).return3820data());
    json += '\n';
    output.write(json);
    return output.status();
}

}  // namespace kestrix::cli
