#include "apps/kestrix-cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <QCoreApplication>

#include <iostream>
#include <string>

#include "apps/kestrix-cli/CaptureCommand.h"
#include "apps/kestrix-cli/DecodeCommand.h"
#include "apps/kestrix-cli/DevicesCommand.h"
#include "apps/kestrix-cli/MonitorCommand.h"
#include "apps/kestrix-cli/Output.h"
#include "apps/kestrix-cli/SimulateCommand.h"
#include "platform/Log.h"

namespace kestrix::cli {
namespace {

constexpr int kLongestSeconds = 1'000'000;
constexpr const char* kUriHelp = "tcp://host:port, serial:PORT?baud=9600, replay:FILE?speed=1 or simulator:";

struct Arguments {
    std::string settings;
    std::string decodeFile = "-";
    std::string frame;
    bool screen = false;
    MonitorOptions monitor;
    CaptureOptions capture;
    SimulateOptions simulate;
    bool listScenarios = false;
    DevicesOptions devices;
};

struct Commands {
    CLI::App* decode;
    CLI::App* monitor;
    CLI::App* capture;
    CLI::App* simulate;
    CLI::App* devices;
    CLI::Option* frame;
};

Commands describe(CLI::App& program, Arguments& arguments) {
    Commands commands{};
    program.add_option("--settings", arguments.settings, "Keep the link state in this file")
        ->type_name("FILE");
    program.set_version_flag("--version", std::string("kestrix-cli ") + KESTRIX_VERSION);
    program.require_subcommand(0, 1);
    program.fallthrough();

    commands.decode = program.add_subcommand("decode", "Raw bytes to one JSON object per record");
    auto* file =
        commands.decode->add_option("file", arguments.decodeFile, "Bytes to decode; - is standard input");
    commands.frame = commands.decode->add_option("--frame", arguments.frame, "Decode one frame text instead");
    commands.frame->type_name("HEX")->excludes(file);
    commands.decode->add_flag("--screen", arguments.screen,
                              "Add what the live screen shows after each record");

    commands.monitor = program.add_subcommand("monitor", "The tester's display, live");
    commands.monitor->add_option("uri", arguments.monitor.uri, kUriHelp)->required();
    commands.monitor->add_option("--seconds", arguments.monitor.seconds, "End after N seconds; 0 is never")
        ->check(CLI::Range(0, kLongestSeconds))
        ->type_name("N");

    commands.capture = program.add_subcommand("capture", "Keep a tester's raw bytes in a file");
    commands.capture->add_option("uri", arguments.capture.uri, kUriHelp)->required();
    commands.capture->add_option("file", arguments.capture.file, "File to write")->required();
    commands.capture->add_option("--seconds", arguments.capture.seconds, "End after N seconds; 0 is never")
        ->check(CLI::Range(0, kLongestSeconds))
        ->type_name("N");
    commands.capture->add_flag("--force", arguments.capture.force, "Overwrite the file");

    commands.simulate = program.add_subcommand("simulate", "A tester in software for other programs");
    auto* place = commands.simulate->add_option_group("place");
    place->add_option("--tcp", arguments.simulate.tcp, "Serve it at this address")->type_name("HOST:PORT");
    place->add_option("--pty", arguments.simulate.pty, "Make a serial port of this name")->type_name("LINK");
    place->add_flag("--list", arguments.listScenarios, "Name the built-in scenarios");
    place->require_option(1);
    commands.simulate
        ->add_option("--scenario", arguments.simulate.scenario, "Built-in scenario or scenario file")
        ->type_name("NAME|FILE");
    commands.simulate->add_option("--seed", arguments.simulate.seed, "Seed of all that happens by chance")
        ->type_name("N");
    commands.simulate->add_option("--speed", arguments.simulate.speed, "Times real time, or max")
        ->type_name("N|max");

    commands.devices = program.add_subcommand("devices", "What each source sees, or which step fails");
    commands.devices->add_option("uri", arguments.devices.uris, kUriHelp);
    commands.devices->add_option("--seconds", arguments.devices.seconds, "Look for N seconds")
        ->check(CLI::Range(1, kLongestSeconds))
        ->type_name("N");
    return commands;
}

ExitStatus run(const Commands& commands, Arguments& arguments) {
    if (commands.decode->parsed())
        return commands.frame->count() > 0 ? decodeFrameText(arguments.frame, arguments.screen)
                                           : decodeFile(arguments.decodeFile, arguments.screen);
    if (commands.monitor->parsed()) {
        arguments.monitor.settings = arguments.settings;
        return monitor(arguments.monitor);
    }
    if (commands.capture->parsed()) return capture(arguments.capture);
    if (commands.simulate->parsed())
        return arguments.listScenarios ? listScenarios() : simulate(arguments.simulate);
    return devices(arguments.devices);
}

}  // namespace

int runCommandLine(int argc, char** argv) {
    fillClosedDescriptors();
    ignoreClosedPipes();
    platform::installLogFormat();
    CLI::App program{
        "Kestrix on the command line: a handheld installation tester's readings without a display"};
    program.name("kestrix-cli");
    Arguments arguments;
    const Commands commands = describe(program, arguments);
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& success) {  // --help, --version
        Output output;
        output.write(success.get_exit_code() == 0 && success.get_name() == "CallForVersion"
                         ? std::string(success.what()) + "\n"
                         : program.help());
        return output.status();
    } catch (const CLI::ParseError& error) {
        return fail(std::string(error.what()) + " (--help tells more)", kWrongUsage);
    }
    if (program.get_subcommands().empty())
        return fail("a command is needed (--help tells more)", kWrongUsage);
    const QCoreApplication application(argc, argv);
    return run(commands, arguments);
}

}  // namespace kestrix::cli
