#include "platform/DetachedProgram.h"

#include <fcntl.h>
#include <unistd.h>
#include <QProcess>
#include <QSocketNotifier>

#include <array>
#include <utility>

namespace kestrix::platform {
namespace {

constexpr std::size_t kLongestLine = 4096;

}  // namespace

DetachedProgram::DetachedProgram(const QString& program, const QStringList& arguments,
                                 std::function<void(const std::string& lastLine)> ended) {
    std::array<int, 2> ends{-1, -1};
    const bool heard = pipe2(ends.data(), O_CLOEXEC) == 0;
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (heard) process.setStandardErrorFile(QStringLiteral("/proc/self/fd/%1").arg(ends[1]));
    started_ = process.startDetached();
    if (!heard) return;
    close(ends[1]);
    errors_ = ends[0];
    if (!started_) return;
    fcntl(errors_, F_SETFL, O_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(errors_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, told = std::move(ended)] { listen(told); });
}

DetachedProgram::~DetachedProgram() {
    if (notifier_) {
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();  // it may be this that speaks
    }
    if (errors_ >= 0) close(errors_);
}

void DetachedProgram::listen(const std::function<void(const std::string& lastLine)>& ended) {
    std::array<char, 4096> piece{};
    const ssize_t count = read(errors_, piece.data(), piece.size());
    if (count < 0) return;
    if (count > 0) {
        said_.append(piece.data(), static_cast<std::size_t>(count));
        const std::size_t lineEnd =
            said_.size() < 2 ? std::string::npos : said_.rfind('\n', said_.size() - 2);
        if (lineEnd != std::string::npos) said_.erase(0, lineEnd + 1);
        if (said_.size() > kLongestLine) said_.erase(kLongestLine);
        return;
    }
    notifier_->setEnabled(false);
    if (!said_.empty() && said_.back() == '\n') said_.pop_back();
    const auto tell = ended;  // it may destroy this
    tell(std::string(said_));
}

}  // namespace kestrix::platform
