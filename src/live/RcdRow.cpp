#include "live/RcdRow.h"

#include <string>

namespace kestrix::live {
namespace {

std::string named(int number, const char* part) {
    return "RCD" + std::to_string(number) + part;
}

}  // namespace

RcdRow::RcdRow(ui::Screen& screen, int number)
    : Row(screen, named(number, "Row").c_str()),
      Angle(screen, named(number, "Angle").c_str()),
      Value(screen, named(number, "Value").c_str()),
      Unit(screen, named(number, "Unit").c_str()) {}

}  // namespace kestrix::live
