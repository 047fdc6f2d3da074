#include "storage/StatementText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace kestrix::storage {
namespace {

using namespace std::string_literals;

std::string text(std::string_view statement, std::initializer_list<StatementValue> values) {
    const StatementText composed = statementText(statement, values);
    return composed ? composed.get() : "none";
}

TEST(StatementText, WithoutPlaceholdersItIsTheText) {
    EXPECT_EQ(text("SELECT *FROM t", {}), "SELECT *FROM t");
}

TEST(StatementText, PlaceholdersAreFilledInOrder) {
    EXPECT_EQ(text("a='%@',b='%d' WHERE c = '%d'", {"x", std::int64_t{1}, std::int64_t{-2}}),
              "a='x',b='1' WHERE c = '-2'");
}

TEST(StatementText, AnEmptyTextLeavesTheQuotesEmpty) {
    EXPECT_EQ(text("a = '%@'", {std::string_view()}), "a = ''");
}

TEST(StatementText, SingleQuotesAreDoubledAndNothingElseChanges) {
    EXPECT_EQ(text("'%@'", {"Smith's \"a\" `b` %@ %d %s \\ ''"}), "'Smith''s \"a\" `b` %@ %d %s \\ '''''");
}

TEST(StatementText, ANulIsComposed) {
    EXPECT_EQ(text("'%@'", {"\0a\0'b\0\0"s}), "''||char(0)||'a'||char(0)||'''b'||char(0)||''||char(0)||''");
}

TEST(StatementText, NumbersAreThirtyTwoBitSigned) {
    struct Row {
        std::int64_t number;
        const char* text;
    };
    for (const Row& row :
         {Row{0, "0"}, Row{-1, "-1"}, Row{2147483647, "2147483647"}, Row{2147483648, "-2147483648"},
          Row{-2147483648, "-2147483648"}, Row{-2147483649, "2147483647"}, Row{4294967296, "0"},
          Row{4294967301, "5"}, Row{std::numeric_limits<std::int64_t>::max(), "-1"},
          Row{std::numeric_limits<std::int64_t>::min(), "0"}}) {
        EXPECT_EQ(text("%d", {row.number}), row.text) << row.number;
    }
}

}  // namespace
}  // namespace kestrix::storage
