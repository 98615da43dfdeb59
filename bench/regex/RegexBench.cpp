// Counting all matches of seven typical patterns in a generated 10-million-unit text, with CRegex
// (PrepareMatch/MatchNext), PCRE2's 16-bit interpreter (no JIT) and std::wregex. Before timing, the program
// checks that the three engines count the same matches wherever their semantics agree, and stops if not.
#define PCRE2_CODE_UNIT_WIDTH 16
#include <benchmark/benchmark.h>
#include <pcre2.h>

#include <quarrix/regex/CRegex.h>

#include <cstdint>
#include <random>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>

namespace {

using quarrix::CRegex;
using quarrix::CString;

struct Pattern {
  const char* name;
  const char16_t* pattern;
  const wchar_t* stdPattern;  // nullptr: std::regex lacks a construct (look-behind)
  bool stdIgnoreCase;
};

const Pattern kPatterns[] = {
    {"email", u"[\\w\\.+-]+@[\\w\\.-]+\\.[\\w\\.-]+", L"[\\w\\.+-]+@[\\w\\.-]+\\.[\\w\\.-]+", false},
    {"uri", u"[\\w]+://[^/\\s?#]+[^\\s?#]+(?:\\?[^\\s#]*)?(?:#[^\\s]*)?",
     L"[\\w]+://[^/\\s?#]+[^\\s?#]+(?:\\?[^\\s#]*)?(?:#[^\\s]*)?", false},
    {"ipv4",
     u"(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)",
     L"(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)", false},
    {"literal", u"structure", L"structure", false},
    {"severity", u"(?i)(?:error|warning|fatal)", L"(?:error|warning|fatal)", true},
    {"repeated", u"(\\w+)\\s+\\1", L"(\\w+)\\s+\\1", false},
    {"amount", u"(?<=\\$)\\d+(?:\\.\\d\\d)?", nullptr, false},
};


// Prose with e-mail addresses, URIs, IPv4 addresses, severities, repeated words and dollar amounts.
const std::u16string& Text() {
  static const std::u16string text = [] {
    static const char* const kWords[] = {
        "the", "load", "beam", "structure", "of", "a", "steel", "frame", "is", "calculated", "with", "and",
        "for", "each", "member", "section", "bending", "moment", "shear", "force", "at", "support", "in",
        "Design", "values", "are", "given", "by", "engineer", "on", "site", "report", "was", "checked", "to",
        "concrete", "column", "foundation", "slab", "thickness", "reinforcement", "project", "total", "cost",
        "The", "Structural", "analysis", "model", "node", "element", "stiffness", "matrix", "solver", "result",
        "deflection", "limit", "state", "span", "length", "height", "width", "weight", "material", "grade"};
    static const char* const kNames[] = {"anna", "john.smith", "m.mueller", "info", "support+bugs", "k_lee"};
    static const char* const kHosts[] = {"example.com", "mail.site.org", "quarrix-eng.de", "univ.ac.uk"};
    static const char* const kSeverity[] = {"error", "Error", "WARNING", "warning", "fatal", "Fatal"};
    std::mt19937_64 engine(12345);  // the same sequence everywhere, unlike the standard distributions
    struct {
      std::mt19937_64& e;
      int Below(int n) { return static_cast<int>(e() % static_cast<std::uint64_t>(n)); }
    } rng{engine};
    std::string s;
    s.reserve(10100000);
    while (s.size() < 10000000) {
      const int kind = rng.Below(100);
      const char* word = kWords[rng.Below(static_cast<int>(std::size(kWords)))];
      if (kind < 84) {
        s += word;
      } else if (kind < 87) {
        s.append(kNames[rng.Below(6)]).append("@").append(kHosts[rng.Below(4)]);
      } else if (kind < 89) {
        s.append(rng.Below(2) ? "https" : "ftp").append("://www.").append(kHosts[rng.Below(4)]);
        s.append("/docs/").append(word);
        if (rng.Below(2)) s.append("?id=").append(std::to_string(rng.Below(1000)));
        if (!rng.Below(3)) s.append("#top");
      } else if (kind < 91) {
        for (int k = 0; k < 4; ++k) s.append(k ? "." : "").append(std::to_string(rng.Below(k == 0 ? 300 : 256)));
      } else if (kind < 93) {
        s += kSeverity[rng.Below(6)];
      } else if (kind < 95) {
        s.append(word).append(" ").append(word);
      } else if (kind < 97) {
        s.append("$").append(std::to_string(rng.Below(100000)));
        if (rng.Below(2)) s.append(".").append(std::to_string(10 + rng.Below(90)));
      } else {
        s += std::to_string(rng.Below(10000));
      }
      const int sep = rng.Below(20);
      s += sep == 0 ? ".\n" : sep == 1 ? ", " : sep == 2 ? ". " : " ";
    }
    return std::u16string(s.begin(), s.end());
  }();
  return text;
}

const std::wstring& WideText() {
  static const std::wstring text(Text().begin(), Text().end());
  return text;
}

int CountQuarrix(CRegex& re, const CString& text) {
  re.PrepareMatch(text);
  int count = 0;
  while (re.MatchNext()) ++count;  // none of the patterns matches empty
  return count;
}

struct Pcre2 {
  pcre2_code* code;
  pcre2_match_data* data;
  explicit Pcre2(const char16_t* pattern) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED, 0, &error, &offset, nullptr);
    if (!code) std::abort();
    data = pcre2_match_data_create_from_pattern(code, nullptr);
  }
  ~Pcre2() {
    pcre2_match_data_free(data);
    pcre2_code_free(code);
  }
  int Count(const std::u16string& text) {
    int count = 0;
    PCRE2_SIZE start = 0;
    const auto subject = reinterpret_cast<PCRE2_SPTR>(text.data());
    while (pcre2_match(code, subject, text.size(), start, 0, data, nullptr) >= 0) {
      const PCRE2_SIZE* ov = pcre2_get_ovector_pointer(data);
      ++count;
      start = ov[1] > ov[0] ? ov[1] : ov[1] + 1;
    }
    return count;
  }
};

std::wregex MakeStd(const Pattern& p) {
  const auto syntax = p.stdIgnoreCase ? std::regex::ECMAScript | std::regex::icase : std::regex::ECMAScript;
  return std::wregex(p.stdPattern, syntax);
}

int CountStd(const std::wregex& re, const std::wstring& text) {
  return static_cast<int>(std::distance(std::wsregex_iterator(text.begin(), text.end(), re), std::wsregex_iterator()));
}

void BM_Quarrix(benchmark::State& state, const Pattern* p) {
  const CString text(Text());
  CRegex re(p->pattern, 0);
  int count = 0;
  for (auto _ : state) benchmark::DoNotOptimize(count = CountQuarrix(re, text));
  state.counters["matches"] = count;
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(Text().size()) * 2);
}

void BM_Pcre2(benchmark::State& state, const Pattern* p) {
  Pcre2 re(p->pattern);
  int count = 0;
  for (auto _ : state) benchmark::DoNotOptimize(count = re.Count(Text()));
  state.counters["matches"] = count;
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(Text().size()) * 2);
}

void BM_StdRegex(benchmark::State& state, const Pattern* p) {
  const std::wregex re = MakeStd(*p);
  int count = 0;
  for (auto _ : state) benchmark::DoNotOptimize(count = CountStd(re, WideText()));
  state.counters["matches"] = count;
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(Text().size()) * 2);
}

// What a one-shot static call costs: compiling a short pattern and matching a short text, as the number
// formatting does for every number it trims.
void BM_QuarrixStaticReplace(benchmark::State& state) {
  const CString number(u"12.5000");
  for (auto _ : state) benchmark::DoNotOptimize(CRegex::Replace(u"0{2,}$", 0, number, u"0"));
}

void BM_QuarrixCompile(benchmark::State& state, const Pattern* p) {
  for (auto _ : state) benchmark::DoNotOptimize(CRegex(p->pattern, 0));
}

// The engines must agree before their times mean anything.
bool CountsAgree() {
  bool agree = true;
  const CString text(Text());
  for (const Pattern& p : kPatterns) {
    CRegex re(p.pattern, 0);
    const int ours = CountQuarrix(re, text);
    const int pcre = Pcre2(p.pattern).Count(Text());
    const int std = p.stdPattern ? CountStd(MakeStd(p), WideText()) : -1;
    std::printf("%-9s quarrix %7d  pcre2 %7d  std::wregex %7d%s\n", p.name, ours, pcre, std,
                p.stdPattern ? "" : " (n/a: no look-behind)");
    agree = agree && ours == pcre && (std < 0 || std == ours);
  }
  return agree;
}

}  // namespace

int main(int argc, char** argv) {
  std::printf("text: %zu UTF-16 units\n", Text().size());
  // --no_check skips the comparison of counts (for profiling one engine).
  const bool check = !(argc > 1 && std::string(argv[1]) == "--no_check");
  if (check && !CountsAgree()) {
    std::fprintf(stderr, "match counts differ between the engines\n");
    return 1;
  }
  for (const Pattern& p : kPatterns) {
    benchmark::RegisterBenchmark((std::string("quarrix/") + p.name).c_str(), BM_Quarrix, &p)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((std::string("pcre2/") + p.name).c_str(), BM_Pcre2, &p)->Unit(benchmark::kMillisecond);
    if (p.stdPattern)
      benchmark::RegisterBenchmark((std::string("std_wregex/") + p.name).c_str(), BM_StdRegex, &p)
          ->Unit(benchmark::kMillisecond);
  }
  benchmark::RegisterBenchmark("quarrix_compile/ipv4", BM_QuarrixCompile, &kPatterns[2]);
  benchmark::RegisterBenchmark("quarrix_static_replace/trailing_zeros", BM_QuarrixStaticReplace);
  if (!check) {
    argv[1] = argv[0];
    ++argv;
    --argc;
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
