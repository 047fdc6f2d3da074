#include "bench/window/KestrixSubject.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <variant>
#include <vector>

namespace kestrix::bench {
namespace {

constexpr const char* kRising = R"(
rate max
repeat forever
function insulation voltage=500
on test
reading 1 ramp 0.0 to 6000.0 within 60000 frames Mohm
reading 2 ramp 0 to 60000 within 60000 frames V
show 60000 frames
)";

}  // namespace

KestrixSubject::KestrixSubject() : player_(std::get<simulator::Scenario>(simulator::parseScenario(kRising))) {
    auto source = std::make_unique<testing::FakeSource>();
    tester_ = source.get();
    application_.delegate().accessories().addSource(std::move(source));
    auto accessory = std::make_shared<platform::Accessory>();
    accessory->connectionId = 1;
    accessory->protocolStrings = {"tester"};
    accessory->opener = tester_;
    tester_->appear(accessory);
    text_ = item("D1Value").childItems().constFirst();
}

QString KestrixSubject::push(int count) {
    std::vector<std::uint8_t> bytes;
    while (count-- > 0) {
        const simulator::Emission frame = player_.next();
        bytes.insert(bytes.end(), frame.bytes.begin(), frame.bytes.end());
    }
    tester_->line.receive(bytes);
    tester_->line.reads.clear();
    return screen().D1Value.text();
}

QPoint KestrixSubject::recordButton() {
    const QQuickItem& button = item("btnRecord");
    return button.mapToScene(QPointF(button.width() / 2, button.height() / 2)).toPoint();
}

QQuickItem& KestrixSubject::item(const char* name) {
    QQuickItem* found = application_.window().rootObject()->findChild<QQuickItem*>(QLatin1String(name));
    if (found != nullptr) return *found;
    std::fprintf(stderr, "the window has no %s\n", name);
    std::exit(1);
}

}  // namespace kestrix::bench
