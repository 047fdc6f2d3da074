#pragma once

#include <string>
#include <vector>

namespace kestrix::bench {

// A folder that only its user can enter, gone with this. Programs that are run meanwhile take it as the
// session's, unless there is one: without any the toolkit complains at every start.
class TemporaryFolder {
  public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Runs a program to its end. Answers what it printed; ends this program when that one fails.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace kestrix::bench
