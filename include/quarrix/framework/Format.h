#pragma once
// The one printf-style formatter of the library, behind CString::Format, AppendFormat and cstringf.
//
// Syntax: %[flags][width][.precision][size]conversion with flags "-+ 0#", width and precision as digits or
// '*' (taken from an int argument; a negative width left-justifies, a negative precision counts as none),
// sizes hh h l ll L I I32 I64 w z j t, and conversions d i u o x X c C s S f F e E g G a A p %.
// Sizes follow Windows: no size and l mean 32 bits, ll and I64 64 bits, I, z, j and t the pointer width.
//
// Arguments are checked against their conversions at run time, and unsupported argument types do not
// compile. Any integer type (bool, char types and enums included) fits d i u o x X c, converted to the width
// that the size names; float, double and long double fit the floating conversions; CString, CStringA,
// std::(u16)string(_view) and const char16_t*, const char* and const wchar_t* fit s and S (8-bit text is
// decoded with the ANSI code page, wchar_t text as UTF-32; a null pointer prints "(null)"); any pointer fits
// p. A conversion whose argument does not fit, or has no argument, writes a visible marker instead of reading
// anything: "%!d(double)", "%!s(MISSING)", "%!q(BADVERB)". %n is refused the same way ("%!n(UNSUPPORTED)"),
// and so is a width or precision above 1,000,000 ("%!d(BADWIDTH)", "%!f(BADPREC)"). Surplus arguments are
// ignored, as printf ignores them.
//
// Floating conversions give exactly the text glibc's snprintf gives. %p prints the pointer's value in
// upper-case hexadecimal, zero-padded to the pointer width, as MSVC does; a '0' flag pads %s and %c with zeros,
// also as MSVC does.
#include <quarrix/framework/Export.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace quarrix::detail {

// One argument of a formatting call, reduced to what the conversions need.
struct FormatArg {
  enum Kind : std::uint8_t { Signed, Unsigned, Double, LongDouble, Pointer, Text16, Text8, Text32 };
  Kind kind;
  std::uint8_t size = 0;  // width in bytes of an integer argument (1 for char: decoded as 8-bit text by %c)
  union {
    long long i;
    unsigned long long u;
    double d;
    long double ld;
    const void* p;
    struct {
      const void* data;  // null for a null string pointer
      std::size_t length;
    } text;
  };
};

template <class T>
concept StringClass = requires(const T& t) {
  t.GetString();
  t.GetLength();
};

template <class T>
FormatArg MakeFormatArg(const T& v) {
  using U = std::remove_cv_t<T>;
  FormatArg a{};
  if constexpr (std::is_enum_v<U>) {
    return MakeFormatArg(static_cast<std::underlying_type_t<U>>(v));
  } else if constexpr (std::is_integral_v<U>) {
    a.size = static_cast<std::uint8_t>(sizeof(U));
    if constexpr (std::is_signed_v<U>) {
      a.kind = FormatArg::Signed;
      a.i = v;
    } else {
      a.kind = FormatArg::Unsigned;
      a.u = v;
    }
  } else if constexpr (std::is_same_v<U, float> || std::is_same_v<U, double>) {
    a.kind = FormatArg::Double;
    a.d = v;
  } else if constexpr (std::is_same_v<U, long double>) {
    a.kind = FormatArg::LongDouble;
    a.ld = v;
  } else if constexpr (std::is_same_v<U, std::nullptr_t>) {
    a.kind = FormatArg::Pointer;
    a.p = nullptr;
  } else if constexpr (std::is_same_v<U, const char16_t*> || std::is_same_v<U, char16_t*>) {
    a.kind = FormatArg::Text16;
    a.text = {v, v ? std::char_traits<char16_t>::length(v) : 0};
  } else if constexpr (std::is_same_v<U, const char*> || std::is_same_v<U, char*>) {
    a.kind = FormatArg::Text8;
    a.text = {v, v ? std::char_traits<char>::length(v) : 0};
  } else if constexpr (std::is_same_v<U, const wchar_t*> || std::is_same_v<U, wchar_t*>) {
    a.kind = FormatArg::Text32;
    a.text = {v, v ? std::char_traits<wchar_t>::length(v) : 0};
  } else if constexpr (std::is_array_v<U>) {
    return MakeFormatArg(static_cast<const std::remove_extent_t<U>*>(v));
  } else if constexpr (StringClass<U>) {
    return MakeFormatArg(std::basic_string_view(v.GetString(), static_cast<std::size_t>(v.GetLength())));
  } else if constexpr (requires { typename U::traits_type; v.data(); v.size(); }) {
    using Ch = typename U::value_type;
    static_assert(std::is_same_v<Ch, char16_t> || std::is_same_v<Ch, char> || std::is_same_v<Ch, wchar_t>,
                  "only char16_t, char and wchar_t strings can be formatted");
    a.kind = std::is_same_v<Ch, char16_t> ? FormatArg::Text16
             : std::is_same_v<Ch, char>   ? FormatArg::Text8
                                          : FormatArg::Text32;
    a.text = {v.data(), v.size()};
  } else if constexpr (std::is_pointer_v<U>) {
    a.kind = FormatArg::Pointer;
    a.p = reinterpret_cast<const void*>(v);
  } else {
    static_assert(sizeof(U) == 0, "this argument type cannot be formatted with a printf-style conversion");
  }
  return a;
}

// Appends the expansion of the NUL-terminated format to out. Never reads past args.
template <class Ch>
QUARRIX_API void FormatAppend(std::basic_string<Ch>& out, const Ch* format, std::span<const FormatArg> args);

extern template QUARRIX_API void FormatAppend<char16_t>(std::u16string&, const char16_t*,
                                                        std::span<const FormatArg>);
extern template QUARRIX_API void FormatAppend<char>(std::string&, const char*, std::span<const FormatArg>);

template <class Ch, class... Args>
void FormatAppendArgs(std::basic_string<Ch>& out, const Ch* format, const Args&... args) {
  if constexpr (sizeof...(Args) == 0) {
    FormatAppend<Ch>(out, format, {});
  } else {
    const FormatArg packed[] = {MakeFormatArg(args)...};
    FormatAppend<Ch>(out, format, packed);
  }
}

}  // namespace quarrix::detail
