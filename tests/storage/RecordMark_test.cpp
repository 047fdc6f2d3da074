#include "storage/RecordMark.h"

#include <gtest/gtest.h>

#include "tests/storage/WorkedExample.h"

namespace kestrix::storage {
namespace {

RecordMark mark() {
    return {3, sha256("record"), {17, sha256("head")}};
}

TEST(RecordMark, IsOneLineAndBack) {
    EXPECT_EQ(textOf(mark()),
              "record 3 sha256 " + hexOf(sha256("record")) + ", evidence 17 sha256 " + hexOf(sha256("head")));
    EXPECT_EQ(recordMarkIn(textOf(mark())), mark());
    EXPECT_EQ(recordMarkIn("Kestrix; " + textOf(mark())), mark());
}

TEST(RecordMark, WithoutEvidenceEndsBeforeIt) {
    const RecordMark without{3, sha256("record"), {}};
    EXPECT_EQ(textOf(without), "record 3 sha256 " + hexOf(sha256("record")));
    EXPECT_EQ(recordMarkIn("Kestrix; " + textOf(without)), without);
}

TEST(RecordMark, OfAnyOtherTextIsNone) {
    const std::string whole = textOf(mark());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        if (whole[length] == ',') continue;
        EXPECT_FALSE(recordMarkIn(whole.substr(0, length))) << length;
    }
    for (const std::string& text :
         {std::string("Kestrix"), whole + " ", whole + "\n", "a" + whole, "record 0" + whole.substr(8),
          "record -3" + whole.substr(8), "record 1234567890123456789" + whole.substr(8),
          "Record" + whole.substr(6), std::string("\xff\xfe")})
        EXPECT_FALSE(recordMarkIn(text)) << text;
}

}  // namespace
}  // namespace kestrix::storage
