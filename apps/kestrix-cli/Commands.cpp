#include "apps/kestrix-cli/Commands.h"

#include <array>

#include "apps/kestrix-cli/OtherRows.h"

namespace kestrix::cli {

// Each stands in a file of its own, decodeCommand in DecodeCommand.cpp.
extern const Command decodeCommand;
extern const Command monitorCommand;
extern const Command captureCommand;
extern const Command simulateCommand;
extern const Command devicesCommand;
extern const Command recordsCommand;
extern const Command showCommand;
extern const Command deleteCommand;
extern const Command logCommand;

std::span<const Command* const> allCommands() {
    static constexpr std::array kCommands{&decodeCommand,  &monitorCommand, &captureCommand, &simulateCommand,
                                          &devicesCommand, &recordsCommand, &showCommand,    &kExportRow,
                                          &deleteCommand,  &logCommand,     &kVerifyRow};
    return kCommands;
}

}  // namespace kestrix::cli
