#include "apps/kestrix-cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <utility>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/Runner.h"

namespace kestrix::cli {
namespace {

constexpr int kLongestSeconds = 1'000'000;

// The command that was given, ready to run.
struct Chosen {
    const Command* command = nullptr;
    Action action;
    bool verbose = false;
};

// Only the command that is given tells its options, and when it is met: the others cost no time.
void describeProgram(CLI::App& program, const ProgramParts& parts, Runner& runner, Chosen& chosen) {
    program.name("kestrix-cli");
    program.add_option("--settings", runner.settings, "Keep the link state in this file")->type_name("FILE");
    program.add_flag("--verbose", chosen.verbose, "Say on standard error what happens");
    program.set_version_flag("--version", std::string("kestrix-cli ") + KESTRIX_VERSION);
    program.require_subcommand(0, 1);
    program.fallthrough();
    for (const Command* command : parts.commands) {
        CLI::App* described = program.add_subcommand(command->name, command->summary);
        if (command->describe == nullptr) continue;
        described->preparse_callback([described, command, &runner, &chosen](std::size_t) {
            CommandOptions options(*described);
            chosen.command = command;
            chosen.action = command->describe(options);
            described->add_option("--seconds", runner.seconds, "End after N seconds; 0 is never")
                ->check(CLI::Range(0, kLongestSeconds))
                ->type_name("N");
        });
    }
}

// What to say where no command runs: help, version, wrong usage. None when one is chosen.
std::optional<Ending> readArguments(CLI::App& program, Runner& runner, const Chosen& chosen) {
    try {
        program.parse(runner.argc(), runner.argv());
    } catch (const CLI::Success& success) {  // --help, --version
        const bool version = success.get_name() == "CallForVersion";
        runner.output().write(version ? std::string(success.what()) + "\n" : program.help());
        return done();
    } catch (const CLI::ParseError& error) {
        return wrongUsage(std::string(error.what()) + " (--help tells more)");
    }
    if (chosen.command == nullptr) return wrongUsage("a command is needed (--help tells more)");
    return std::nullopt;
}

}  // namespace

int runCommandLine(int argc, char** argv, const ProgramParts& parts) {
    fillClosedDescriptors();
    letFailedWritesAnswer();
    Runner runner(argc, argv);
    Chosen chosen;
    CLI::App program{
        "Kestrix on the command line: a handheld installation tester's readings without a display"};
    describeProgram(program, parts, runner, chosen);
    if (const std::optional<Ending> ending = readArguments(program, runner, chosen))
        return runner.end(*ending);
    if (parts.installLog) parts.installLog(chosen.verbose);
    return runner.run(*chosen.command, chosen.action);
}

}  // namespace kestrix::cli
