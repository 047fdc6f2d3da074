#include "storage/Moments.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace kestrix::storage {
namespace {

class Moments : public ::testing::Test {
  protected:
    Moments() {
        if (const char* const zone = std::getenv("TZ")) before_ = zone;
    }
    void TearDown() override {
        if (before_) {
            setenv("TZ", before_->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    static std::int32_t offsetIn(const char* zone) {
        setenv("TZ", zone, 1);
        return momentNow().utcOffset;
    }

  private:
    std::optional<std::string> before_;
};

TEST_F(Moments, NowHasTheOffsetOfTheZoneThatHoldsNow) {
    EXPECT_EQ(offsetIn("UTC"), 0);
    EXPECT_EQ(offsetIn("Asia/Kathmandu"), 20'700);
    EXPECT_EQ(offsetIn("America/Phoenix"), -25'200);
    EXPECT_EQ(offsetIn("Europe/Berlin"), QDateTime::currentDateTime().offsetFromUtc());
}

TEST_F(Moments, NowIsInMillisecondsSince1970AndSinceTheStart) {
    const std::int64_t before = QDateTime::currentMSecsSinceEpoch();
    const Moment now = momentNow();
    EXPECT_GE(now.utc, before);
    EXPECT_LE(now.utc, QDateTime::currentMSecsSinceEpoch());
    EXPECT_GT(now.sinceBoot, 0);
    EXPECT_LE(now.sinceBoot, momentNow().sinceBoot);
}

}  // namespace
}  // namespace kestrix::storage
