#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kestrix::cli {

// How a command tells which options it has. What is read is stored where the command says; the places must
// outlive the reading. An option's name begins with "--"; `value` is how the help calls its value.
class CommandOptions {
  public:
    explicit CommandOptions(CLI::App& command) : command_(command) {}

    // Words without a dash, by their places. A word that is needed and not given is wrong usage.
    void word(const char* name, std::string& to, const char* help);
    void neededWord(const char* name, std::string& to, const char* help);
    void words(const char* name, std::vector<std::string>& to, const char* help);

    void text(const char* name, const char* value, std::string& to, const char* help);
    void text(const char* name, const char* value, std::optional<std::string>& to, const char* help);
    // A text that is needed: without it, it is wrong usage.
    void neededText(const char* name, const char* value, std::string& to, const char* help);
    struct Range {
        int least;
        int most;
    };
    void number(const char* name, const char* value, std::optional<int>& to, Range range, const char* help);
    void flag(const char* name, bool& to, const char* help);

    // Of these options and words at most one, or exactly one, may be given.
    void excludeEachOther(const char* one, const char* other);
    void exactlyOneOf(std::initializer_list<const char*> names);

  private:
    CLI::App& command_;
};

}  // namespace kestrix::cli
