// UTF-8 to UTF-16 conversion of a 100 MB text: the library's codec against glibc's iconv, and back.
#include <quarrix/framework/CodePage.h>

#include <benchmark/benchmark.h>

#include <iconv.h>

#include <memory>
#include <random>
#include <string>

namespace {

// Mostly ASCII with accented Latin, Greek, CJK and a few emoji, like engineering documents with names and units.
const std::string& Text() {
  static const std::string text = [] {
    const char* pieces[] = {"The beam ", "carries ", "12.5 kN ", "over ", "6 m. ", "Träger ", "Länge ", "Maß ",
                            "σ = 235 N/mm² ", "\xE9\x92\xA2\xE6\xA2\x81 ", "\xF0\x9F\x94\xA9 ", "\n"};
    std::mt19937 rng(7);
    std::discrete_distribution<int> pick({30, 20, 10, 15, 10, 5, 4, 3, 2, 1, 0.2, 4});
    std::string s;
    s.reserve(100u << 20);
    while (s.size() < (100u << 20)) s += pieces[pick(rng)];
    return s;
  }();
  return text;
}

void BM_Utf8ToUtf16_Quarrix(benchmark::State& state) {
  const std::string& text = Text();
  for (auto _ : state) {
    std::u16string out = quarrix::Utf8ToUtf16(text);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Utf8ToUtf16_Quarrix)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_Utf8ToUtf16_Win32(benchmark::State& state) {
  const std::string& text = Text();
  std::u16string out(text.size(), u'\0');
  for (auto _ : state) {
    const int n = quarrix::MultiByteToWideChar(quarrix::CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                               out.data(), static_cast<int>(out.size()));
    benchmark::DoNotOptimize(n);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Utf8ToUtf16_Win32)->Unit(benchmark::kMillisecond);

void BM_Utf8ToUtf16_Iconv(benchmark::State& state) {
  const std::string& text = Text();
  std::u16string out(text.size(), u'\0');
  iconv_t cd = iconv_open("UTF-16LE", "UTF-8");
  for (auto _ : state) {
    char* in = const_cast<char*>(text.data());
    std::size_t inLeft = text.size();
    char* o = reinterpret_cast<char*>(out.data());
    std::size_t oLeft = out.size() * 2;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    const std::size_t r = iconv(cd, &in, &inLeft, &o, &oLeft);
    if (r == static_cast<std::size_t>(-1) || inLeft != 0) state.SkipWithError("iconv failed");
    benchmark::DoNotOptimize(out.data());
  }
  iconv_close(cd);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Utf8ToUtf16_Iconv)->Unit(benchmark::kMillisecond);

// iconv into fresh memory on every pass, as the allocating conversion has it.
void BM_Utf8ToUtf16_IconvFresh(benchmark::State& state) {
  const std::string& text = Text();
  iconv_t cd = iconv_open("UTF-16LE", "UTF-8");
  for (auto _ : state) {
    std::unique_ptr<char16_t[]> out(new char16_t[text.size()]);
    char* in = const_cast<char*>(text.data());
    std::size_t inLeft = text.size();
    char* o = reinterpret_cast<char*>(out.get());
    std::size_t oLeft = text.size() * 2;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    const std::size_t r = iconv(cd, &in, &inLeft, &o, &oLeft);
    if (r == static_cast<std::size_t>(-1) || inLeft != 0) state.SkipWithError("iconv failed");
    benchmark::DoNotOptimize(out.get());
  }
  iconv_close(cd);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Utf8ToUtf16_IconvFresh)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_Utf16ToUtf8_Win32(benchmark::State& state) {
  const std::u16string wide = quarrix::Utf8ToUtf16(Text());
  std::string out(wide.size() * 3, '\0');
  for (auto _ : state) {
    const int n = quarrix::WideCharToMultiByte(quarrix::CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()),
                                               out.data(), static_cast<int>(out.size()), nullptr, nullptr);
    benchmark::DoNotOptimize(n);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size()));
}
BENCHMARK(BM_Utf16ToUtf8_Win32)->Unit(benchmark::kMillisecond);

void BM_Utf16ToUtf8_Quarrix(benchmark::State& state) {
  const std::u16string wide = quarrix::Utf8ToUtf16(Text());
  for (auto _ : state) {
    std::string out = quarrix::Utf16ToUtf8(wide);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size()));
}
BENCHMARK(BM_Utf16ToUtf8_Quarrix)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_Utf16ToUtf8_Iconv(benchmark::State& state) {
  const std::u16string wide = quarrix::Utf8ToUtf16(Text());
  std::string out(wide.size() * 3, '\0');
  iconv_t cd = iconv_open("UTF-8", "UTF-16LE");
  for (auto _ : state) {
    char* in = reinterpret_cast<char*>(const_cast<char16_t*>(wide.data()));
    std::size_t inLeft = wide.size() * 2;
    char* o = out.data();
    std::size_t oLeft = out.size();
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    const std::size_t r = iconv(cd, &in, &inLeft, &o, &oLeft);
    if (r == static_cast<std::size_t>(-1) || inLeft != 0) state.SkipWithError("iconv failed");
    benchmark::DoNotOptimize(out.data());
  }
  iconv_close(cd);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size()));
}
BENCHMARK(BM_Utf16ToUtf8_Iconv)->Unit(benchmark::kMillisecond);

// A single-byte code page through the iconv-built table, 1252 being the common Windows ANSI code page.
void BM_Cp1252ToUtf16_Quarrix(benchmark::State& state) {
  const std::string latin = quarrix::Utf16ToCodePage(1252, quarrix::Utf8ToUtf16(Text().substr(0, 10u << 20)));
  for (auto _ : state) {
    std::u16string out = quarrix::CodePageToUtf16(1252, latin);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * latin.size()));
}
BENCHMARK(BM_Cp1252ToUtf16_Quarrix)->Unit(benchmark::kMillisecond);

void BM_Cp1252ToUtf16_Iconv(benchmark::State& state) {
  const std::string latin = quarrix::Utf16ToCodePage(1252, quarrix::Utf8ToUtf16(Text().substr(0, 10u << 20)));
  std::u16string out(latin.size(), u'\0');
  iconv_t cd = iconv_open("UTF-16LE", "CP1252");
  for (auto _ : state) {
    char* in = const_cast<char*>(latin.data());
    std::size_t inLeft = latin.size();
    char* o = reinterpret_cast<char*>(out.data());
    std::size_t oLeft = out.size() * 2;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    iconv(cd, &in, &inLeft, &o, &oLeft);
    benchmark::DoNotOptimize(out.data());
  }
  iconv_close(cd);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * latin.size()));
}
BENCHMARK(BM_Cp1252ToUtf16_Iconv)->Unit(benchmark::kMillisecond);

}  // namespace
