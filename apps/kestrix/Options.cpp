#include "apps/kestrix/Options.h"

#include <CLI/CLI.hpp>

#include <initializer_list>
#include <iostream>
#include <utility>

#include "platform/AccessorySources.h"

namespace kestrix {
namespace {

constexpr int kWrongUsage = 2;

std::string notEmpty(const std::string& value) {
    return value.empty() ? "is empty" : std::string();
}

using Others = std::initializer_list<std::pair<const char*, bool>>;

void refuseBeside(const char* option, bool given, Others others) {
    if (!given) return;
    for (const auto& [name, also] : others) {
        if (also) throw CLI::ValidationError(option, std::string("goes without ") + name);
    }
}

// A tour has folder, settings and tester of its own; the console keeps nothing.
void refuseWhatDoesNotGoTogether(const Options& options) {
    const bool documents = !options.documents.empty();
    const bool settings = !options.settings.empty();
    refuseBeside("--tour", !options.tour.empty(),
                 {{"--connect", !options.uris.empty()},
                  {"--choose", !options.choice.empty()},
                  {"--documents", documents},
                  {"--settings", settings},
                  {"--console", options.console}});
    refuseBeside(
        "--console", options.console,
        {{"--choose", !options.choice.empty()}, {"--documents", documents}, {"--settings", settings}});
    refuseBeside("--choose", !options.choice.empty(), {{"--connect", !options.uris.empty()}});
}

}  // namespace

std::optional<Options> readOptions(int argc, char** argv, int& exitStatus) {
    CLI::App program{"Kestrix shows the display of a handheld installation tester, and records it",
                     "kestrix"};
    Options options;
    program.add_option("--connect", options.uris, "Where the tester is: " + platform::sourceForms())
        ->type_name("URI")
        ->allow_extra_args(false);
    program
        .add_option(
            "--choose", options.choice,
            "Look for the tester there from now on, in the window that is open already if there is one, "
            "and keep that")
        ->type_name("URI")
        ->check(notEmpty);
    program.add_option("--documents", options.documents, "Keep the database and its settings in this folder")
        ->type_name("DIR")
        ->check(notEmpty);
    program.add_option("--settings", options.settings, "Keep the settings in this file")
        ->type_name("FILE")
        ->check(notEmpty);
    program
        .add_option("--tour", options.tour,
                    "Show every screen with the built-in tester, into this folder; it is new or an earlier "
                    "tour's")
        ->type_name("DIR")
        ->check(notEmpty);
    program.add_flag("--console", options.console,
                     "Look at the line itself: show the bytes that come, and send some; keeps nothing");
    program.add_flag("--verbose", options.verbose, "Say on standard error what happens");
    program.set_version_flag("--version", std::string("kestrix ") + KESTRIX_VERSION);
    try {
        program.parse(argc, argv);
        refuseWhatDoesNotGoTogether(options);
    } catch (const CLI::Success& success) {  // --help, --version
        exitStatus = program.exit(success, std::cout, std::cerr);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        std::cerr << "kestrix: " << error.what() << "; see kestrix --help\n";
        exitStatus = kWrongUsage;
        return std::nullopt;
    }
    return options;
}

}  // namespace kestrix
