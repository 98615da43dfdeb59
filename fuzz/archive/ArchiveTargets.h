#pragma once
// The classes the archive fuzzer loads, chosen by the first byte of an input; shared with the program that
// writes the seed corpus, so that every seed starts with the right selector.
#include <cstdint>

namespace quarrix::fuzz {

enum ArchiveTarget : std::uint8_t {
  kIntArray,
  kIntList,
  kIntListArray,
  kIntToIntListMap,
  kMapIntToInt,
  kMapIntToDouble,
  kString,
  kStringA,
  kStringArray,
  kStringList,
  kStringToIntMap,
  kDoubleArray,
  kByteArray,
  kPrimitives,
  kTargetCount
};

// Bit 7 of the selector picks the smallest archive buffer (64 bytes), so that values straddle refills.
inline constexpr std::uint8_t kSmallBuffer = 0x80;

}  // namespace quarrix::fuzz
