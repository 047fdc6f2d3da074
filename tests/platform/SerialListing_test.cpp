#include "platform/SerialListing.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

using testing::spinUntil;

class SerialListingTest : public ::testing::Test {
  protected:
    QString node(const char* name) const { return folder_.filePath(QLatin1String(name)); }
    void appear(const char* name) const { ASSERT_TRUE(QFile(node(name)).open(QIODevice::WriteOnly)); }
    std::vector<SerialPort> ports() const {
        std::vector<SerialPort> all;
        for (const QString& name : QDir(folder_.path()).entryList(QDir::Files))
            all.push_back(
                {folder_.filePath(name), name == QStringLiteral("ttyB") ? name : QStringLiteral(" ")});
        return {all.rbegin(), all.rend()};
    }
    void look() {
        listing_ = std::make_unique<SerialListing>([this] { return ports(); }, folder_.path());
        listing_->changed = [this] { ++changes_; };
    }

    QTemporaryDir folder_;
    std::unique_ptr<SerialListing> listing_;
    int changes_ = 0;
};

TEST_F(SerialListingTest, PortsAreListedByTheirNodes) {
    appear("ttyA");
    appear("ttyB");
    look();
    const std::vector<SeenAccessory> seen = listing_->seen();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].uri, "serial:" + node("ttyA").toStdString());
    EXPECT_EQ(seen[0].name, "ttyA");  // it has no description
    EXPECT_EQ(seen[0].state, "a serial port");
    EXPECT_EQ(seen[0].problem, "");
    EXPECT_EQ(seen[1].uri, "serial:" + node("ttyB").toStdString());
    EXPECT_EQ(listing_->problem(), "");
    EXPECT_EQ(listing_->step(), FailedStep::None);
}

TEST_F(SerialListingTest, WithoutAPortItSaysSo) {
    look();
    EXPECT_TRUE(listing_->seen().empty());
    EXPECT_EQ(listing_->problem(), "this computer has no serial port");
    EXPECT_EQ(listing_->step(), FailedStep::Missing);
}

TEST_F(SerialListingTest, PortsThatComeAndGoAreFollowed) {
    look();
    appear("ttyA");
    EXPECT_TRUE(spinUntil([&] { return changes_ == 1; }));
    EXPECT_EQ(listing_->seen().size(), 1U);
    ASSERT_TRUE(QFile::remove(node("ttyA")));
    EXPECT_TRUE(spinUntil([&] { return changes_ == 2; }));
    EXPECT_TRUE(listing_->seen().empty());
}

// The administrator may open everything, so this looks as nobody does.
class AsNobody {
  public:
    AsNobody() {
        if (!wasRoot_) return;
        EXPECT_EQ(setresgid(65534, 65534, 0), 0);
        EXPECT_EQ(setresuid(65534, 65534, 0), 0);
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
    ~AsNobody() {
        if (!wasRoot_) return;
        EXPECT_EQ(setresuid(0, 0, 0), 0);
        EXPECT_EQ(setresgid(0, 0, 0), 0);
    }

  private:
    bool wasRoot_ = geteuid() == 0;
};

TEST_F(SerialListingTest, RightsThatComeAndGoAreFollowed) {
    const AsNobody nobody;
    const QTemporaryDir own;
    const QString path = own.filePath(QStringLiteral("ttyA"));
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    SerialListing listing([&] { return std::vector<SerialPort>{{path, {}}}; }, own.path());
    int changes = 0;
    listing.changed = [&] { ++changes; };
    EXPECT_EQ(listing.seen().front().problem, "");
    ASSERT_TRUE(QFile::setPermissions(path, {}));
    EXPECT_TRUE(spinUntil([&] { return changes == 1; }));
    EXPECT_EQ(listing.seen().front().step, FailedStep::Rights);
    EXPECT_EQ(listing.seen().front().problem.rfind("no right to open it: members of the group ", 0), 0U);
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_TRUE(spinUntil([&] { return changes == 2; }));
    EXPECT_EQ(listing.seen().front().problem, "");
}

}  // namespace
}  // namespace kestrix::platform
