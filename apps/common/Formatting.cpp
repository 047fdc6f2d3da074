// The functions of fmt, compiled once. Debian has them as headers, with which every source compiles them
// again, and as a library that each program would have to load at its start.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

// What the headers promise to be elsewhere, of what formatting into a string needs.
template FMT_API auto thousands_sep_impl<char>(locale_ref) -> thousands_sep_result<char>;
template FMT_API auto decimal_point_impl<char>(locale_ref) -> char;

}  // namespace detail
FMT_END_NAMESPACE
