#include "apps/kestrix-cli/CommandOptions.h"

#include <CLI/CLI.hpp>

namespace kestrix::cli {

void CommandOptions::word(const char* name, std::string& to, const char* help) {
    command_.add_option(name, to, help);
}

void CommandOptions::neededWord(const char* name, std::string& to, const char* help) {
    command_.add_option(name, to, help)->required();
}

void CommandOptions::words(const char* name, std::vector<std::string>& to, const char* help) {
    command_.add_option(name, to, help);
}

void CommandOptions::text(const char* name, const char* value, std::string& to, const char* help) {
    command_.add_option(name, to, help)->type_name(value);
}

void CommandOptions::text(const char* name, const char* value, std::optional<std::string>& to,
                          const char* help) {
    command_.add_option(name, to, help)->type_name(value);
}

void CommandOptions::neededText(const char* name, const char* value, std::string& to, const char* help) {
    command_.add_option(name, to, help)->type_name(value)->required()->check([](const std::string& given) {
        return given.find_first_not_of(" \t\n") == std::string::npos ? "is empty" : std::string();
    });
}

void CommandOptions::number(const char* name, const char* value, std::optional<int>& to, Range range,
                            const char* help) {
    command_.add_option(name, to, help)->check(CLI::Range(range.least, range.most))->type_name(value);
}

void CommandOptions::flag(const char* name, bool& to, const char* help) {
    command_.add_flag(name, to, help);
}

void CommandOptions::excludeEachOther(const char* one, const char* other) {
    command_.get_option(one)->excludes(command_.get_option(other));
}

void CommandOptions::exactlyOneOf(std::initializer_list<const char*> names) {
    CLI::Option_group* group = command_.add_option_group("place");
    for (const char* name : names) group->add_option(command_.get_option(name));
    group->require_option(1);
    group->fallthrough(false);  // a word that nobody wants would go round between the group and its command
}

}  // namespace kestrix::cli
