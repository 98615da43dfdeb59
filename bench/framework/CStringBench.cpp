// Appending 10 million characters to a CString one at a time, and in short runs, against std::u16string.
#include <quarrix/framework/CString.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr int kCount = 10'000'000;

void BM_CStringAppendChar(benchmark::State& state) {
  for (auto _ : state) {
    quarrix::CString s;
    for (int i = 0; i < kCount; ++i) s += static_cast<char16_t>(u'a' + (i & 15));
    benchmark::DoNotOptimize(s.GetString());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_CStringAppendChar)->Unit(benchmark::kMillisecond);

void BM_U16StringAppendChar(benchmark::State& state) {
  for (auto _ : state) {
    std::u16string s;
    for (int i = 0; i < kCount; ++i) s += static_cast<char16_t>(u'a' + (i & 15));
    benchmark::DoNotOptimize(s.data());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_U16StringAppendChar)->Unit(benchmark::kMillisecond);

void BM_CStringAppendText(benchmark::State& state) {
  for (auto _ : state) {
    quarrix::CString s;
    for (int i = 0; i < kCount / 10; ++i) s += u"0123456789";
    benchmark::DoNotOptimize(s.GetString());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_CStringAppendText)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
