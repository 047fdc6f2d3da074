#include "live/SessionList.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrix::live {
namespace {

SessionRow rowNamed(const char* name) {
    return {name, "Low Ohm", "Mode=Auto", "0.12Ω", "2024-06-03 09:08:07", " "};
}

class SessionListTest : public ::testing::Test {
  protected:
    QVariant value(int row, int role) const { return list_.data(list_.index(row), role); }
    SessionList list_;
};

TEST_F(SessionListTest, IsEmptyAtFirst) {
    EXPECT_EQ(list_.count(), 0);
    EXPECT_EQ(list_.rowCount(), 0);
}

TEST_F(SessionListTest, ItsRolesAreTheKeysOfARowAndTheHeight) {
    const QHash<int, QByteArray> names{
        {SessionList::DataNameRole, "DataName"},     {SessionList::FunctionRole, "Function"},
        {SessionList::ParametersRole, "Parameters"}, {SessionList::ResultRole, "Result"},
        {SessionList::DateTimeRole, "DateTime"},     {SessionList::CommentsRole, "Comments"},
        {SessionList::HeightRole, "height"}};
    EXPECT_EQ(list_.roleNames(), names);
}

TEST_F(SessionListTest, EachRoleGivesItsText) {
    list_.append(rowNamed("S_1"), 20);
    EXPECT_EQ(value(0, SessionList::DataNameRole).toString(), QStringLiteral("S_1"));
    EXPECT_EQ(value(0, SessionList::FunctionRole).toString(), QStringLiteral("Low Ohm"));
    EXPECT_EQ(value(0, SessionList::ParametersRole).toString(), QStringLiteral("Mode=Auto"));
    EXPECT_EQ(value(0, SessionList::ResultRole).toString(), QStringLiteral("0.12Ω"));
    EXPECT_EQ(value(0, SessionList::DateTimeRole).toString(), QStringLiteral("2024-06-03 09:08:07"));
    EXPECT_EQ(value(0, SessionList::CommentsRole).toString(), QStringLiteral(" "));
    EXPECT_FALSE(value(0, Qt::DisplayRole).isValid());
    EXPECT_FALSE(list_.data({}, SessionList::ResultRole).isValid());
}

TEST_F(SessionListTest, RowsStandInOrderEachWithItsHeight) {
    list_.append(rowNamed("S_1"), 20);
    list_.append(rowNamed("S_2"), 47.5);
    EXPECT_EQ(list_.count(), 2);
    EXPECT_EQ(list_.rowCount(), 2);
    EXPECT_EQ(list_.rowCount(list_.index(0)), 0);
    EXPECT_EQ(list_.row(0).DataName, "S_1");
    EXPECT_EQ(list_.row(1).DataName, "S_2");
    EXPECT_EQ(list_.height(0), 20);
    EXPECT_EQ(value(1, SessionList::HeightRole).toDouble(), 47.5);
}

TEST_F(SessionListTest, ARowIsToldAsInsertedBehindTheOthers) {
    std::vector<int> inserted;
    std::vector<int> counts;
    QObject::connect(&list_, &QAbstractItemModel::rowsInserted, &list_,
                     [&](const QModelIndex&, int first, int last) {
                         EXPECT_EQ(first, last);
                         inserted.push_back(first);
                     });
    QObject::connect(&list_, &SessionList::countChanged, &list_, [&] { counts.push_back(list_.count()); });
    list_.append(rowNamed("S_1"), 20);
    list_.append(rowNamed("S_2"), 20);
    EXPECT_EQ(inserted, (std::vector<int>{0, 1}));
    EXPECT_EQ(counts, (std::vector<int>{1, 2}));
}

TEST_F(SessionListTest, RemovingAllEmptiesItAndIsTold) {
    list_.append(rowNamed("S_1"), 20);
    list_.append(rowNamed("S_2"), 20);
    int resets = 0;
    int counted = -1;
    QObject::connect(&list_, &QAbstractItemModel::modelReset, &list_, [&] { ++resets; });
    QObject::connect(&list_, &SessionList::countChanged, &list_, [&] { counted = list_.count(); });
    list_.removeAll();
    EXPECT_EQ(list_.rowCount(), 0);
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(counted, 0);
    list_.append(rowNamed("S_1"), 20);
    EXPECT_EQ(list_.count(), 1);
}

}  // namespace
}  // namespace kestrix::live
