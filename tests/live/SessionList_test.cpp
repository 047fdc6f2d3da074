#include "live/SessionList.h"

#include <gtest/gtest.h>

namespace kestrix::live {
namespace {

SessionRow rowNamed(const char* name) {
    return {name, "Low Ohm", "Mode=Auto,Lead=0.1", "0.12Ω", "2024-06-03 09:08:07", " "};
}

class SessionListTest : public ::testing::Test {
  protected:
    QString value(int row, const char* role) const {
        return list_.data(list_.index(row), list_.roleNames().key(role, -1)).toString();
    }
    SessionList list_;
};

TEST_F(SessionListTest, ItsRolesAreTheKeysOfARow) {
    list_.append(rowNamed("S_1"), 20);
    EXPECT_EQ(value(0, "DataName"), QStringLiteral("S_1"));
    EXPECT_EQ(value(0, "Function"), QStringLiteral("Low Ohm"));
    EXPECT_EQ(value(0, "Parameters"), QStringLiteral("Mode=Auto,Lead=0.1"));
    EXPECT_EQ(value(0, "Result"), QStringLiteral("0.12Ω"));
    EXPECT_EQ(value(0, "DateTime"), QStringLiteral("2024-06-03 09:08:07"));
    EXPECT_EQ(value(0, "Comments"), QStringLiteral(" "));
}

TEST_F(SessionListTest, ARowComesBackAsItWasAppendedWithItsHeight) {
    list_.append(rowNamed("S_1"), 20);
    list_.append(rowNamed("S_2"), 47.5);
    EXPECT_EQ(list_.row(0).DataName, "S_1");
    EXPECT_EQ(list_.row(1).DataName, "S_2");
    EXPECT_EQ(list_.row(1).Parameters, "Mode=Auto,Lead=0.1");
    EXPECT_EQ(list_.row(1).Result, "0.12Ω");
    EXPECT_EQ(list_.height(1), 47.5);
}

struct ColumnPlace {
    const char* role;
    const char* title;
    double x;
    double width;
};
constexpr ColumnPlace kPlacesOfColumns[] = {
    {"DataName", "Data Name", 0, 50},     {"Function", "Function", 51, 44},
    {"Parameters", "Parameters", 96, 61}, {"Result", "Result", 158, 60},
    {"DateTime", "Date Time", 219, 50},   {"Comments", "Comments", 270, 50},
};

TEST_F(SessionListTest, ItsColumnsStandAtTheirPlacesWithALineBetweenThem) {
    const ui::Columns& columns = list_.columns();
    ASSERT_EQ(columns.size(), std::ssize(kPlacesOfColumns));
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const ColumnPlace& wanted = kPlacesOfColumns[i];
        EXPECT_EQ(columns[i].role.toStdString(), wanted.role);
        EXPECT_EQ(columns[i].title.toStdString(), wanted.title);
        EXPECT_EQ(columns[i].x, wanted.x) << wanted.role;
        EXPECT_EQ(columns[i].width, wanted.width) << wanted.role;
        if (i > 0) {
            EXPECT_EQ(columns[i].x, columns[i - 1].x + columns[i - 1].width + 1) << wanted.role;
        }
    }
}

}  // namespace
}  // namespace kestrix::live
