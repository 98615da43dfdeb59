// Storing and loading a 10-million-element CIntArray through a CMemFile, against memcpy of the same bytes.
#include <quarrix/collections/CIntArray.h>
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CMemFile.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using quarrix::BYTE;
using quarrix::CArchive;
using quarrix::CIntArray;
using quarrix::CMemFile;
using quarrix::UINT;

constexpr int kElements = 10'000'000;
constexpr std::size_t kBytes = 8 + 4 * static_cast<std::size_t>(kElements);  // version, count, elements

const CIntArray& Source() {
  static const CIntArray source = [] {
    CIntArray a;
    a.SetSize(kElements);
    for (int i = 0; i < kElements; ++i) a[i] = i * 7;
    return a;
  }();
  return source;
}

const std::vector<BYTE>& Stored() {
  static const std::vector<BYTE> bytes = [] {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    const_cast<CIntArray&>(Source()).Serialize(ar);
    ar.Close();
    return file.GetBytes();
  }();
  return bytes;
}

// The yardstick: the same bytes copied into memory that is already there.
void BM_MemcpyIntoExistingBuffer(benchmark::State& state) {
  const std::vector<BYTE>& bytes = Stored();
  std::vector<BYTE> target(bytes.size());
  for (auto _ : state) {
    std::memcpy(target.data(), bytes.data(), bytes.size());
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}
BENCHMARK(BM_MemcpyIntoExistingBuffer)->Unit(benchmark::kMillisecond);

// The same with fresh memory each time, which is what storing into a new CMemFile must pay as well.
void BM_MemcpyIntoFreshBuffer(benchmark::State& state) {
  const std::vector<BYTE>& bytes = Stored();
  for (auto _ : state) {
    void* target = std::malloc(bytes.size());
    std::memcpy(target, bytes.data(), bytes.size());
    benchmark::DoNotOptimize(target);
    benchmark::ClobberMemory();
    std::free(target);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}
BENCHMARK(BM_MemcpyIntoFreshBuffer)->Unit(benchmark::kMillisecond);

void BM_CIntArrayStore(benchmark::State& state) {
  CIntArray& source = const_cast<CIntArray&>(Source());
  for (auto _ : state) {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    source.Serialize(ar);
    ar.Close();
    benchmark::DoNotOptimize(file.GetLength());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}
BENCHMARK(BM_CIntArrayStore)->Unit(benchmark::kMillisecond);

void BM_CIntArrayLoad(benchmark::State& state) {
  std::vector<BYTE> bytes = Stored();
  for (auto _ : state) {
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&file, CArchive::load);
    CIntArray target;
    target.Serialize(ar);
    benchmark::DoNotOptimize(target.GetData());
    if (target.GetSize() != kElements) state.SkipWithError("wrong size");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}
BENCHMARK(BM_CIntArrayLoad)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
