#include "ui/ListModel.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestrix::ui {
namespace {

const Columns kThreeColumns{{QStringLiteral("Name"), QStringLiteral("Title of names"), 0, 50},
                            {QStringLiteral("Result"), QStringLiteral("Title of results"), 51, 60},
                            {QStringLiteral("Comments"), QStringLiteral("Title of comments"), 112, 50}};

TableRow rowNamed(const char* name) {
    return {.texts = {QString::fromUtf8(name), QStringLiteral("1V,2A"), QStringLiteral(" ")}, .mark = {}};
}

class ListModelTest : public ::testing::Test {
  protected:
    int role(const char* name) const { return list_.roleNames().key(name, -1); }
    QVariant value(int row, const char* roleName) const {
        return list_.data(list_.index(row), role(roleName));
    }
    ListModel list_{kThreeColumns};
};

TEST_F(ListModelTest, IsEmptyAtFirst) {
    EXPECT_EQ(list_.count(), 0);
    EXPECT_EQ(list_.rowCount(), 0);
}

TEST_F(ListModelTest, ItsRolesAreThoseOfTheColumnsAndOfTheRow) {
    QList<QByteArray> names = list_.roleNames().values();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (QList<QByteArray>{"Comments", "Name", "Result", "group", "mark", "rowHeight", "struck",
                                        "texts", "words"}));
}

TEST_F(ListModelTest, EachRoleGivesItsText) {
    list_.append(rowNamed("S_1"));
    EXPECT_EQ(value(0, "Name").toString(), QStringLiteral("S_1"));
    EXPECT_EQ(value(0, "Result").toString(), QStringLiteral("1V,2A"));
    EXPECT_EQ(value(0, "Comments").toString(), QStringLiteral(" "));
    EXPECT_EQ(list_.text(0, QStringLiteral("Result")), QStringLiteral("1V,2A"));
    EXPECT_EQ(list_.text(0, QStringLiteral("Nobody's")), QString());
    EXPECT_FALSE(list_.data(list_.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(list_.data(list_.index(0), role("Comments") + 1).isValid());
    EXPECT_FALSE(list_.data({}, role("Name")).isValid());
}

TEST_F(ListModelTest, TheCellsGetAllTextsWithPlacesToBreakThem) {
    list_.append(rowNamed("S_1"));
    EXPECT_EQ(value(0, "texts").toStringList(), (QStringList{"S_1", QStringLiteral("1V,\u200B2A"), " "}));
}

TEST_F(ListModelTest, RowsStandInOrderEachWithItsHeight) {
    list_.append(rowNamed("S_1"));
    TableRow tall = rowNamed("S_2");
    tall.height = 47.5;
    list_.append(tall);
    EXPECT_EQ(list_.rowCount(), 2);
    EXPECT_EQ(list_.rowCount(list_.index(0)), 0);
    EXPECT_EQ(list_.at(1).texts.first(), QStringLiteral("S_2"));
    EXPECT_EQ(list_.height(0), 20);
    EXPECT_EQ(value(1, "rowHeight").toDouble(), 47.5);
}

TEST_F(ListModelTest, AMarkIsSaidBeforeTheRowAndToldToTheView) {
    list_.append(rowNamed("S_1"));
    EXPECT_EQ(value(0, "words").toString(), QStringLiteral("S_1, 1V,2A"));
    int told = 0;
    QObject::connect(&list_, &QAbstractItemModel::dataChanged, &list_, [&](auto, auto, const auto& roles) {
        told += roles.contains(role("mark")) && roles.contains(role("words")) ? 1 : 0;
    });
    list_.setMark(0, QStringLiteral("Not stored"));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(value(0, "mark").toString(), QStringLiteral("Not stored"));
    EXPECT_EQ(value(0, "words").toString(), QStringLiteral("Not stored, S_1, 1V,2A"));
}

TEST_F(ListModelTest, ARowIsToldAsInsertedBehindTheOthers) {
    std::vector<int> inserted;
    std::vector<int> counts;
    QObject::connect(&list_, &QAbstractItemModel::rowsInserted, &list_,
                     [&](const QModelIndex&, int first, int last) {
                         EXPECT_EQ(first, last);
                         inserted.push_back(first);
                     });
    QObject::connect(&list_, &ListModel::countChanged, &list_, [&] { counts.push_back(list_.count()); });
    list_.append(rowNamed("S_1"));
    list_.append(rowNamed("S_2"));
    EXPECT_EQ(inserted, (std::vector<int>{0, 1}));
    EXPECT_EQ(counts, (std::vector<int>{1, 2}));
}

TEST_F(ListModelTest, ARowComesGoesAndChangesAtItsPlaceAndIsTold) {
    list_.setRows({rowNamed("S_1"), rowNamed("S_3")});
    std::vector<std::string> told;
    const auto listen = [this, &told](auto signal, const char* what) {
        QObject::connect(&list_, signal, &list_, [&told, what](const QModelIndex&, int first, int) {
            told.push_back(what + std::to_string(first));
        });
    };
    listen(&QAbstractItemModel::rowsInserted, "inserted ");
    listen(&QAbstractItemModel::rowsRemoved, "removed ");
    int changed = -1;
    QObject::connect(&list_, &QAbstractItemModel::dataChanged, &list_,
                     [&changed](const QModelIndex& first) { changed = first.row(); });
    list_.insert(1, rowNamed("S_2"));
    list_.remove(0);
    TableRow other = rowNamed("S_4");
    other.group = QStringLiteral("Later");
    other.struck = true;
    list_.setRow(1, other);
    EXPECT_EQ(told, (std::vector<std::string>{"inserted 1", "removed 0"}));
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(list_.count(), 2);
    EXPECT_EQ(value(0, "Name").toString(), QStringLiteral("S_2"));
    EXPECT_EQ(value(1, "Name").toString(), QStringLiteral("S_4"));
    EXPECT_EQ(value(1, "group").toString(), QStringLiteral("Later"));
    EXPECT_TRUE(value(1, "struck").toBool());
}

TEST_F(ListModelTest, RemovingAllEmptiesItAndIsTold) {
    list_.append(rowNamed("S_1"));
    int resets = 0;
    int counted = -1;
    QObject::connect(&list_, &QAbstractItemModel::modelReset, &list_, [&] { ++resets; });
    QObject::connect(&list_, &ListModel::countChanged, &list_, [&] { counted = list_.count(); });
    list_.removeAll();
    EXPECT_EQ(list_.rowCount(), 0);
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(counted, 0);
}

}  // namespace
}  // namespace kestrix::ui
