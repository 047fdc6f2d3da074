#include "platform/ReplayDialer.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

#include "platform/CaptureFile.h"

namespace kestrix::platform {
namespace {

constexpr std::size_t kFlatOutPieceBytes = 4096;

class ReplayProducer final : public ByteProducer {
  public:
    ReplayProducer(std::unique_ptr<QFile> file, double speed)
        : file_(std::move(file)),
          pieceBytes_(speed > 0 ? kReplayPieceBytes : kFlatOutPieceBytes),
          interval_(speed > 0 ? std::chrono::duration<double, std::milli>(kReplayPieceInterval) / speed
                              : std::chrono::duration<double, std::milli>(0)) {}

    bool next(Piece& piece) override {
        piece.bytes.resize(pieceBytes_);
        const qint64 count =
            file_->read(reinterpret_cast<char*>(piece.bytes.data()), static_cast<qint64>(pieceBytes_));
        piece.closes = false;
        if (count <= 0) return false;
        piece.bytes.resize(static_cast<std::size_t>(count));
        // The fraction of a millisecond is carried on, so that the pace is right at any speed.
        elapsed_ += interval_;
        piece.wait = std::chrono::floor<std::chrono::milliseconds>(elapsed_);
        elapsed_ -= piece.wait;
        return true;
    }

  private:
    std::unique_ptr<QFile> file_;
    std::size_t pieceBytes_;
    std::chrono::duration<double, std::milli> interval_;
    std::chrono::duration<double, std::milli> elapsed_{0};
};

}  // namespace

std::unique_ptr<ByteProducer> makeReplayProducer(const QString& path, double speed, std::string& problem) {
    if (QFileInfo(path).isDir()) {
        problem = "it is a folder";
        return nullptr;
    }
    if (QFileInfo::exists(path) &&
        !QFileInfo(path).isFile()) {  // opening a pipe would wait for its other end
        problem = "it is no regular file";
        return nullptr;
    }
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::ReadOnly)) {
        problem = file->errorString().toStdString();
        return nullptr;
    }
    const QByteArray beginning = file->peek(static_cast<qint64>(kCaptureHeaderMax));
    file->skip(static_cast<qint64>(
        readCaptureStart({beginning.constData(), static_cast<std::size_t>(beginning.size())}).headerLength));
    return std::make_unique<ReplayProducer>(std::move(file), speed);
}

}  // namespace kestrix::platform
