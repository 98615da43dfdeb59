// CString::Format(u"%.3f", x) against snprintf with the same format into a stack buffer.
#include <quarrix/framework/CString.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <vector>

namespace {

using quarrix::CString;

std::vector<double> Values() {
  std::mt19937_64 rng(42);
  std::uniform_real_distribution<double> mantissa(-1000.0, 1000.0);
  std::uniform_int_distribution<int> scale(-3, 6);
  std::vector<double> v(4096);
  for (double& x : v) x = mantissa(rng) * std::pow(10.0, scale(rng) - 2);
  return v;
}

const std::vector<double>& Data() {
  static const std::vector<double> values = Values();
  return values;
}

void BM_Snprintf_3f(benchmark::State& state) {
  const auto& values = Data();
  std::size_t i = 0;
  char buf[64];
  for (auto _ : state) {
    const int n = std::snprintf(buf, sizeof buf, "%.3f", values[i++ & 4095]);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buf);
  }
}
BENCHMARK(BM_Snprintf_3f);

void BM_CStringFormat_3f(benchmark::State& state) {
  const auto& values = Data();
  std::size_t i = 0;
  CString s;
  for (auto _ : state) {
    s.Format(u"%.3f", values[i++ & 4095]);
    benchmark::DoNotOptimize(s.GetString());
  }
}
BENCHMARK(BM_CStringFormat_3f);

// A mixed line of the kind applications build for reports and logs.
void BM_Snprintf_Mixed(benchmark::State& state) {
  const auto& values = Data();
  std::size_t i = 0;
  char buf[128];
  for (auto _ : state) {
    const int n = std::snprintf(buf, sizeof buf, "%-10s %6d %10.3f %08X", "beam", static_cast<int>(i), values[i & 4095],
                                static_cast<unsigned>(i * 2654435761u));
    ++i;
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buf);
  }
}
BENCHMARK(BM_Snprintf_Mixed);

void BM_CStringFormat_Mixed(benchmark::State& state) {
  const auto& values = Data();
  std::size_t i = 0;
  CString s;
  for (auto _ : state) {
    s.Format(u"%-10s %6d %10.3f %08X", u"beam", static_cast<int>(i), values[i & 4095],
             static_cast<unsigned>(i * 2654435761u));
    ++i;
    benchmark::DoNotOptimize(s.GetString());
  }
}
BENCHMARK(BM_CStringFormat_Mixed);

}  // namespace
