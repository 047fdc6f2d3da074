// Exports a file that is too large for a small disk into a folder, and says why that failed.
#include <QCoreApplication>

#include <iostream>

#include "history/ExportFile.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    constexpr std::size_t kPiece = 10'000;
    const kestrix::platform::DocumentsFolder folder(application.arguments().value(1));
    const auto outcome = kestrix::history::writeFileInFolder(
        folder, "20260304050607.csv", [](const kestrix::history::ExportSink& sink) {
            for (int i = 0; i < 100; ++i) {
                if (auto piece = sink(std::string(kPiece, 'x')); !piece.done) return piece;
            }
            return kestrix::storage::Outcome{};
        });
    std::cout << outcome.reason << std::endl;
    return outcome.done ? 1 : 0;
}
