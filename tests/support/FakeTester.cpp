#include "tests/support/FakeTester.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <variant>

#include "simulator/Player.h"

namespace kestrix::testing {
namespace {

std::uint32_t nextConnectionId() {
    static std::uint32_t last = 0;
    return ++last;
}

}  // namespace

FakeTester::FakeTester(platform::AccessoryManager& accessories) {
    auto source = std::make_unique<FakeSource>();
    source_ = source.get();
    accessories.addSource(std::move(source));
}

void FakeTester::appear() {
    accessory_ = std::make_shared<platform::Accessory>(
        platform::Accessory{nextConnectionId(), "Tester", {"tester"}, nullptr, source_});
    source_->appear(accessory_);
}

void FakeTester::play(std::string_view scenario) {
    auto parsed = simulator::parseScenario(scenario);
    if (const auto* error = std::get_if<simulator::ScenarioError>(&parsed)) {
        ADD_FAILURE() << error->text();
        return;
    }
    simulator::Player player(std::get<simulator::Scenario>(std::move(parsed)));
    while (!player.finished()) send(player.next().bytes);
}

void FakeTester::leave() {
    source_->disappear(accessory_);
    accessory_.reset();
}

}  // namespace kestrix::testing
