#include "apps/kestrix-cli/Commands.h"

#include <array>

namespace kestrix::cli {

// Each stands in a file of its own, decodeCommand in DecodeCommand.cpp.
extern const Command decodeCommand;
extern const Command monitorCommand;
extern const Command captureCommand;
extern const Command simulateCommand;
extern const Command devicesCommand;

std::span<const Command* const> allCommands() {
    static constexpr std::array kCommands{&decodeCommand, &monitorCommand, &captureCommand, &simulateCommand,
                                          &devicesCommand};
    return kCommands;
}

}  // namespace kestrix::cli
