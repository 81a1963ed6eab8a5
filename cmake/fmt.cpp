// The compiled part of fmt for a target without a package of it. Header-only, it would be compiled again
// with every file that formats a text.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail
{
template auto thousands_sep_impl<char>(locale_ref) -> thousands_sep_result<char>;
template auto decimal_point_impl<char>(locale_ref) -> char;
} // namespace detail
FMT_END_NAMESPACE
