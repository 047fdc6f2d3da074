// From the start of the process to the first picture, and the memory until then: the application beside a
// bare Qt Quick program with as many items, in turns: start_against_bare [--quick].
#include <cstdio>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/window/Child.h"
#include "bench/window/Figures.h"

namespace {

using namespace kestrix::bench;

struct Start {
    double time = 0;                 // ms
    double memory = 0;               // MiB
    std::vector<std::string> items;  // shown texts, hidden ones, shown rectangles, hidden ones
};

Start start(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> words{std::to_string(nanoseconds(Clock::now()))};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::istringstream figures(outputOf(program, words));
    Start figure;
    figures >> figure.time >> figure.memory;
    figure.memory /= 1024;
    for (std::string count; figures >> count;) figure.items.push_back(count);
    return figure;
}

int total(const Start& figure) {
    int items = 0;
    for (const std::string& count : figure.items) items += static_cast<int>(numberOf(count.c_str()));
    return items;
}

// The arguments with which the bare program has as many items, its own ones included.
std::vector<std::string> asManyAs(const Start& other) {
    static const int ownItems = total(start(START_BARE, {"0", "0", "0", "0"}));
    std::vector<std::string> items = other.items;
    items[2] = std::to_string(numberOf(items[2].c_str()) - ownItems);
    return items;
}

struct Starts {
    void add(const Start& figure) {
        times.push_back(figure.time);
        memories.push_back(figure.memory);
    }
    void print(const char* name, int items) const {
        std::printf("%-14s %4d items  %7.1f ms (%.1f to %.1f)  %6.1f MiB\n", name, items, median(times),
                    percentile(times, 0), percentile(times, 1), median(memories));
    }
    std::vector<double> times;
    std::vector<double> memories;
};

}  // namespace

int main(int argc, char** argv) {
    const bool quick = argc > 1 && std::string_view(argv[1]) == "--quick";
    const int pairs = quick ? 2 : 25;
    const TemporaryFolder folder;

    start(START_KESTRIX, {folder.path()});  // makes the database and the settings
    const Start ours = start(START_KESTRIX, {folder.path()});
    const Start bare = start(START_BARE, asManyAs(ours));
    Starts allOurs;
    Starts allBare;
    for (int pair = 0; pair < pairs; ++pair) {
        allBare.add(start(START_BARE, asManyAs(ours)));
        allOurs.add(start(START_KESTRIX, {folder.path()}));
    }

    std::printf("== start to the first picture, medians of %d in turns\n", pairs);
    allBare.print("bare Qt Quick", total(bare));
    allOurs.print("kestrix", total(ours));
    std::printf("ratio of the times   %.2f    (goal: at most 1.4)\n",
                median(allOurs.times) / median(allBare.times));
    std::printf("ratio of the memory  %.2f    (goal: at most 1.2)\n",
                median(allOurs.memories) / median(allBare.memories));
    return 0;
}
