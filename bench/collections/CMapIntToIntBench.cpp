// Inserting and looking up a million int keys: CMap<int, int, int, int> against std::unordered_map.
#include <quarrix/framework/CMap.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace {

using IntMap = quarrix::CMap<int, int, int, int>;

constexpr int kKeys = 1'000'000;
// CMap never grows its table (the archive order depends on its size); like MFC code that expects many keys,
// the benchmark gives it a prime about a fifth above the count.
constexpr quarrix::UINT kBuckets = 1'200'007;

// Distinct keys in a scattered order (multiplying by an odd constant is a bijection modulo 2^32).
const std::vector<int>& Keys() {
  static const std::vector<int> keys = [] {
    std::vector<int> k(kKeys);
    for (int i = 0; i < kKeys; ++i) k[i] = static_cast<int>(static_cast<std::uint32_t>(i) * 2654435761u);
    return k;
  }();
  return keys;
}

void BM_CMapInsert(benchmark::State& state) {
  for (auto _ : state) {
    IntMap map;
    map.InitHashTable(kBuckets);
    for (int key : Keys()) map[key] = key;
    benchmark::DoNotOptimize(map.GetCount());
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_CMapInsert)->Unit(benchmark::kMillisecond);

void BM_UnorderedMapInsert(benchmark::State& state) {
  const bool reserve = state.range(0) != 0;
  for (auto _ : state) {
    std::unordered_map<int, int> map;
    if (reserve) map.reserve(kKeys);
    for (int key : Keys()) map[key] = key;
    benchmark::DoNotOptimize(map.size());
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_UnorderedMapInsert)->Arg(0)->Arg(1)->ArgName("reserve")->Unit(benchmark::kMillisecond);

void BM_CMapLookup(benchmark::State& state) {
  IntMap map;
  map.InitHashTable(kBuckets);
  for (int key : Keys()) map[key] = key;
  for (auto _ : state) {
    long long sum = 0;
    int value = 0;
    for (int key : Keys()) sum += map.Lookup(key, value) ? value : 0;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_CMapLookup)->Unit(benchmark::kMillisecond);

void BM_UnorderedMapLookup(benchmark::State& state) {
  std::unordered_map<int, int> map;
  for (int key : Keys()) map[key] = key;
  for (auto _ : state) {
    long long sum = 0;
    for (int key : Keys()) {
      const auto it = map.find(key);
      sum += it != map.end() ? it->second : 0;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}
BENCHMARK(BM_UnorderedMapLookup)->Unit(benchmark::kMillisecond);

}  // namespace
