// The memory advice behind large buffers (CMemFile's storage, CArray's elements), kept apart as the one
// place where the library talks to the OS about memory.
#include <quarrix/framework/CollectionHelpers.h>

#include <cstdint>
#include <sys/mman.h>

namespace quarrix::detail {

void AdviseLargeBlock(void* p, std::size_t n) noexcept {
  // Fresh memory costs a page fault per 4 KiB on first touch, which for a block of tens of megabytes takes
  // several times as long as filling it. Transparent huge pages cut the faults 512-fold; they can only back
  // the whole 2 MiB pieces inside the block, so only those are advised.
  constexpr std::uintptr_t kHuge = std::uintptr_t{2} << 20;
  const auto start = (reinterpret_cast<std::uintptr_t>(p) + kHuge - 1) & ~(kHuge - 1);
  const auto end = (reinterpret_cast<std::uintptr_t>(p) + n) & ~(kHuge - 1);
  if (end > start) ::madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

}  // namespace quarrix::detail
