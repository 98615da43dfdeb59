#include <quarrix/framework/Unicode.h>

#include <clocale>
#include <cwctype>
#include <locale.h>
#include <memory>

namespace quarrix::detail {
namespace {

void Build(UnicodeTables& t) {
  // A fixed locale rather than the process's: the answers must not change with the user's LANG.
  locale_t loc = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
  for (unsigned c = 0; c < 0x10000; ++c) {
    t.upper[c] = t.lower[c] = static_cast<char16_t>(c);
    t.flags[c] = 0;
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    const bool ascii = c < 0x80;
    if (!loc && !ascii) continue;
    const auto w = static_cast<wint_t>(c);
    std::uint16_t f = 0;
    auto test = [&](int (*fn)(wint_t, locale_t), int (*asciiFn)(wint_t), std::uint16_t flag) {
      if (loc ? fn(w, loc) : asciiFn(w)) f |= flag;
    };
    test(iswalpha_l, iswalpha, kCharAlpha);
    test(iswspace_l, iswspace, kCharSpace);
    test(iswupper_l, iswupper, kCharUpper);
    test(iswlower_l, iswlower, kCharLower);
    test(iswpunct_l, iswpunct, kCharPunct);
    test(iswcntrl_l, iswcntrl, kCharCntrl);
    test(iswprint_l, iswprint, kCharPrint);
    test(iswgraph_l, iswgraph, kCharGraph);
    test(iswblank_l, iswblank, kCharBlank);
    if (c >= '0' && c <= '9') f |= kCharDigit;
    if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')) f |= kCharXDigit;
    if ((f & (kCharAlpha | kCharDigit)) || c == '_') f |= kCharWord;
    t.flags[c] = f;
    const wint_t up = loc ? towupper_l(w, loc) : towupper(w);
    const wint_t lo = loc ? towlower_l(w, loc) : towlower(w);
    // Mappings that leave the BMP (none today) or land on a surrogate are not simple mappings: keep c.
    if (up < 0x10000 && (up < 0xD800 || up > 0xDFFF)) t.upper[c] = static_cast<char16_t>(up);
    if (lo < 0x10000 && (lo < 0xD800 || lo > 0xDFFF)) t.lower[c] = static_cast<char16_t>(lo);
  }
  if (loc) freelocale(loc);
}

}  // namespace

const UnicodeTables& GetUnicodeTables() noexcept {
  static const std::unique_ptr<UnicodeTables> tables = [] {
    auto t = std::make_unique<UnicodeTables>();
    Build(*t);
    return t;
  }();
  return *tables;
}

}  // namespace quarrix::detail
