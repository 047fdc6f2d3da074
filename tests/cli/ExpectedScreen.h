#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace kestrix::cli {

// What the live screen shows after each record, told a second time and as plainly as it can be: the tests
// hold the program against it. It starts with the link up and in a new process.
class ExpectedScreen {
  public:
    ExpectedScreen();

    // A record as `decode` writes it.
    void receive(const nlohmann::ordered_json& record);
    // What `decode --screen` adds to that record.
    const nlohmann::ordered_json& json() const { return screen_; }

  private:
    void showRcdSequence(const nlohmann::ordered_json& record);
    void hide(const std::string& label, bool hidden);
    void hideRows(int first, int last, bool hidden);
    void hideReadings(bool hidden);
    void hideRcdValues();
    void clearRcdValues();
    std::string rcdRows() const;
    nlohmann::ordered_json& text(const std::string& label);
    bool hidden(const std::string& label) const;

    nlohmann::ordered_json screen_;
};

}  // namespace kestrix::cli
