#include <gtest/gtest.h>

#ifdef KESTRIX_GUI_TESTS
#include <QGuiApplication>

#include "ui/SystemFont.h"
#else
#include <QCoreApplication>
#endif

#include <QFileInfo>
#include <QLoggingCategory>
#include <QStorageInfo>

#include "tests/support/LogExpectations.h"

namespace {

class LogListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { kestrix::testing::startLog(); }
    void OnTestEnd(const testing::TestInfo&) override { kestrix::testing::checkLog(); }
};

// A disk takes its time for every row that is to survive a power cut, and no test cuts the power. Where
// memory is scarce, or the user names a folder, it stays as it is.
void workInMemory() {
    constexpr qint64 kEnough = 256LL << 20;
    const QString memory = QStringLiteral("/dev/shm");
    if (qEnvironmentVariableIsSet("TMPDIR") || !QFileInfo(memory).isWritable()) return;
    if (QStorageInfo(memory).bytesAvailable() >= kEnough) qputenv("TMPDIR", "/dev/shm");
}

}  // namespace

int main(int argc, char** argv) {
    workInMemory();
    testing::InitGoogleTest(&argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("kestrix.*.info=true"));  // tests read those lines too
#ifdef KESTRIX_GUI_TESTS
    // Windows without a display, drawn by the processor, in the next turn of the event loop.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    const QGuiApplication application(argc, argv);
    kestrix::ui::installSystemFont();
#else
    const QCoreApplication application(argc, argv);
#endif
    // First in line, so that what it finds counts for the test that ends.
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    auto* printer = listeners.Release(listeners.default_result_printer());
    listeners.Append(new LogListener);
    listeners.Append(printer);
    return RUN_ALL_TESTS();
}
