#include <gtest/gtest.h>

#include <QCoreApplication>

#include "tests/support/LogExpectations.h"

namespace {

class LogListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { kestrix::testing::startLog(); }
    void OnTestEnd(const testing::TestInfo&) override { kestrix::testing::checkLog(); }
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    // First in line, so that what it finds counts for the test that ends.
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    auto* printer = listeners.Release(listeners.default_result_printer());
    listeners.Append(new LogListener);
    listeners.Append(printer);
    return RUN_ALL_TESTS();
}
