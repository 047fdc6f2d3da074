#include "tests/cli/CommandExamples.h"

namespace kestrix::cli {

const std::vector<CommandExample>& commandExamples() {
    static const std::vector<CommandExample> examples{
        {"decode", {"decode"}, {"decode", "--frame", "7e0d1e"}},
        {"monitor", {"monitor", "simulator:flood?speed=max"}, {}},
        {"capture", {"capture", "simulator:flood", "FOLDER/kept.kxc", "--force"}, {}},
        {"simulate", {"simulate", "--pty", "FOLDER/port"}, {"simulate", "--list"}},
        {"devices", {"devices", "serial:/dev/no-such-port"}, {"devices"}},
        {"records", {}, {"records", "--documents", "FOLDER"}},
        {"show", {}, {"show", "1", "--documents", "FOLDER"}},
        {"export", {}, {"export", "1", "--format", "json", "--output", "-", "--documents", "FOLDER"}},
        {"delete", {}, {}},
        {"log", {"log", "simulator:flood", "--project", "House", "--documents", "FOLDER/log"}, {}},
        {"verify", {}, {"verify", "--documents", "FOLDER"}},
    };
    return examples;
}

std::vector<std::string> inFolder(std::vector<std::string> words, const std::string& folder) {
    for (std::string& word : words) {
        if (const auto place = word.find("FOLDER"); place != std::string::npos)
            word.replace(place, std::string("FOLDER").size(), folder);
    }
    return words;
}

}  // namespace kestrix::cli
