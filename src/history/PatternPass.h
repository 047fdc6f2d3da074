#pragma once

#include <string>
#include <string_view>

namespace kestrix::history {

// A text used as a formatting pattern whose only argument is the time stamp.
//   %@                 becomes the time stamp, each of them
//   %%                 becomes %
//   a whole directive  is dropped, whatever it asks for: there is nothing else to be had
//   any other %        stays as it is
// A whole directive is a %, then in this order
//   a position      digits and $                                      may be missing
//   flags           of - + # 0 ' and the blank, each at most once     may be missing
//   a width         digits, or * with or without a position           may be missing
//   a precision     a point, and behind it the like of a width        may be missing
//   a length        hh h l ll q L z t j                               may be missing
//   a conversion    one of @ d D i u U x X o O f F e E g G a A c C s S p n
// so "%5@" and "%1$@" are dropped too. As a flag counts once only, a % before the five blanks of a separator
// begins no directive, and the field behind them keeps its first letter. A line feed is no part of one: what
// is done line by line comes to the same.
//
// Appends to `text` what becomes of the pattern. UTF-8 stays UTF-8; a byte that is none stays as well. In
// time and memory linear in the pattern.
void appendPatternPass(std::string& text, std::string_view pattern, std::string_view timeStamp);

}  // namespace kestrix::history
