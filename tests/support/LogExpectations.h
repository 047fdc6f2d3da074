#pragma once

#include <string>
#include <vector>

// The log of the test that runs. A warning that the test has not announced fails it, and so does an announced
// one that never comes.
namespace kestrix::testing {

// The next warning that holds this text is expected, once.
void expectWarning(const std::string& text);

// Every line so far, as "level category: message".
const std::vector<std::string>& logLines();
// So that a long test's log does not look like a leak.
void forgetLogLines();

// Called by the test program.
void startLog();
void checkLog();

}  // namespace kestrix::testing
