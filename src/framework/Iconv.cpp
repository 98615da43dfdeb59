#include "internal/Iconv.h"

#include <iconv.h>

#include <cerrno>

namespace quarrix::detail {
namespace {

// Owns one conversion descriptor; iconv_t is not safe to share between threads, so each call opens its own.
class Descriptor {
 public:
  Descriptor(const char* to, const char* from) : m_cd(iconv_open(to, from)) {}
  ~Descriptor() {
    if (ok()) iconv_close(m_cd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
  // Converts as much as it can; returns iconv's result and leaves errno as iconv set it.
  std::size_t convert(const char*& in, std::size_t& inLeft, char*& out, std::size_t& outLeft) {
    return iconv(m_cd, const_cast<char**>(&in), &inLeft, &out, &outLeft);
  }
  void reset() { iconv(m_cd, nullptr, nullptr, nullptr, nullptr); }
  // Writes out whatever the descriptor still holds back; false when it does not fit.
  bool flush(char*& out, std::size_t& outLeft) {
    return iconv(m_cd, nullptr, nullptr, &out, &outLeft) != static_cast<std::size_t>(-1);
  }

 private:
  iconv_t m_cd;
};

}  // namespace

bool IconvSingleByteTable(const char* iconvName, std::int32_t (&table)[256]) {
  Descriptor cd("UTF-32LE", iconvName);
  if (!cd.ok()) return false;
  for (int b = 0; b < 256; ++b) {
    const char byte = static_cast<char>(b);
    const char* in = &byte;
    std::size_t inLeft = 1;
    unsigned char buf[16];
    char* out = reinterpret_cast<char*>(buf);
    std::size_t outLeft = sizeof buf;
    cd.reset();
    table[b] = -1;
    // Code pages with combining marks (1255, 1258) hold a base letter back until they see what follows;
    // the flush releases it, else every such letter would look undefined.
    if (cd.convert(in, inLeft, out, outLeft) != static_cast<std::size_t>(-1) && cd.flush(out, outLeft) &&
        sizeof buf - outLeft == 4) {
      table[b] = static_cast<std::int32_t>(buf[0] | buf[1] << 8 | buf[2] << 16 | static_cast<unsigned>(buf[3]) << 24);
    }
  }
  return true;
}

bool IconvDecode(const char* iconvName, std::string_view text, std::u16string& out) {
  Descriptor cd("UTF-16LE", iconvName);
  if (!cd.ok()) return false;
  const char* in = text.data();
  std::size_t inLeft = text.size();
  char16_t buf[1024];
  while (inLeft > 0) {
    char* o = reinterpret_cast<char*>(buf);
    std::size_t oLeft = sizeof buf;
    const std::size_t r = cd.convert(in, inLeft, o, oLeft);
    const int err = errno;
    out.append(buf, (sizeof buf - oLeft) / sizeof(char16_t));
    if (r == static_cast<std::size_t>(-1) && err != E2BIG) {
      // EILSEQ or a sequence cut off at the end: one replacement for the byte that stopped it.
      out.push_back(u'\uFFFD');
      ++in;
      --inLeft;
      cd.reset();
    }
  }
  char* o = reinterpret_cast<char*>(buf);
  std::size_t oLeft = sizeof buf;
  cd.flush(o, oLeft);  // whatever a stateful decoder still holds back
  out.append(buf, (sizeof buf - oLeft) / sizeof(char16_t));
  return true;
}

bool IconvEncode(const char* iconvName, std::u32string_view text, char defaultChar, bool* usedDefault,
                 std::string& out) {
  Descriptor cd(iconvName, "UTF-32LE");
  if (!cd.ok()) return false;
  for (char32_t c : text) {
    const char* in = reinterpret_cast<const char*>(&c);
    std::size_t inLeft = sizeof c;
    char buf[16];
    char* o = buf;
    std::size_t oLeft = sizeof buf;
    if (cd.convert(in, inLeft, o, oLeft) == static_cast<std::size_t>(-1)) {
      cd.reset();
      out.push_back(defaultChar);
      if (usedDefault) *usedDefault = true;
    } else {
      out.append(buf, sizeof buf - oLeft);
    }
  }
  // Stateful encodings end in their initial state.
  char buf[16];
  char* o = buf;
  std::size_t oLeft = sizeof buf;
  cd.flush(o, oLeft);
  out.append(buf, sizeof buf - oLeft);
  return true;
}

}  // namespace quarrix::detail
