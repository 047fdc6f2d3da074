#pragma once

#include <string>
#include <vector>

// A report's texts as another program reads them.
namespace kestrix::history {

// In points from the page's left top.
struct Word {
    double x = 0;
    double y = 0;
    double height = 0;
    std::string text;
};

std::vector<Word> wordsOf(const std::string& pdf);

// The words of one line from left to right, with a blank between them.
std::string lineAt(const std::vector<Word>& words, double y);

// All of it, in lines.
std::string textOf(const std::string& pdf);

}  // namespace kestrix::history
