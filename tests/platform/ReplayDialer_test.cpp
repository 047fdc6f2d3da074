#include "platform/ReplayDialer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <vector>

#include "platform/CaptureFile.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;

class ReplayTest : public ::testing::Test {
  protected:
    QString write(const QByteArray& content) {
        QString path = folder_.filePath(QStringLiteral("capture.kxc"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    std::vector<ByteProducer::Piece> play(const QString& path, double speed) {
        std::string problem;
        const auto producer = makeReplayProducer(path, speed, problem);
        EXPECT_EQ(problem, "");
        std::vector<ByteProducer::Piece> pieces;
        ByteProducer::Piece piece;
        while (producer && producer->next(piece)) pieces.push_back(piece);
        return pieces;
    }
    QTemporaryDir folder_;
};

TEST_F(ReplayTest, FourFramesASecondAtTheTestersOwnSpeed) {
    const auto pieces = play(write(QByteArray(100, 'x')), 1);
    ASSERT_EQ(pieces.size(), 3U);
    EXPECT_EQ(pieces[0].bytes.size(), 36U);
    EXPECT_EQ(pieces[2].bytes.size(), 28U);
    for (const auto& piece : pieces) EXPECT_EQ(piece.wait, milliseconds(250));
}

TEST_F(ReplayTest, FractionsOfAMillisecondAreCarriedOn) {
    milliseconds total{0};
    const auto pieces = play(write(QByteArray(10'800, 'x')), 100);  // 2.5 ms each
    for (const auto& piece : pieces) total += piece.wait;
    EXPECT_EQ(total, milliseconds(750));
}

TEST_F(ReplayTest, FlatOutDoesNotWait) {
    std::size_t bytes = 0;
    for (const auto& piece : play(write(QByteArray(10'000, 'x')), 0)) {
        EXPECT_EQ(piece.wait, milliseconds(0));
        bytes += piece.bytes.size();
    }
    EXPECT_EQ(bytes, 10'000U);
}

TEST_F(ReplayTest, TheHeaderIsNotPlayed) {
    const std::string header = captureHeaderLine({"tcp://a:1", "2026-11-21T05:00:00Z"});
    const auto pieces = play(write(QByteArray::fromStdString(header) + "bytes"), 1);
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(pieces[0].bytes, (std::vector<std::uint8_t>{'b', 'y', 't', 'e', 's'}));
}

TEST_F(ReplayTest, AnEmptyFilePlaysNothing) {
    EXPECT_TRUE(play(write({}), 1).empty());
}

TEST_F(ReplayTest, AMissingFileAndAFolderAreRefused) {
    std::string problem;
    EXPECT_EQ(makeReplayProducer(folder_.filePath(QStringLiteral("none.kxc")), 1, problem), nullptr);
    EXPECT_EQ(problem, "No such file or directory");
    EXPECT_EQ(makeReplayProducer(folder_.path(), 1, problem), nullptr);
    EXPECT_EQ(problem, "it is a folder");
}

}  // namespace
}  // namespace kestrix::platform
