#pragma once
// The copy that the integer maps share: the target is emptied, then receives every pair of the source in
// the source's iteration order. Pairs that share a bucket therefore come out in the reverse chain order, so a
// copy may archive its pairs in another order than its source; that is the Windows library's behaviour.

namespace quarrix::detail {

template <class Map>
void CopyPairs(Map& target, const Map& source) {
  if (&target == &source) return;
  target.RemoveAll();
  for (const auto& pair : source) target[pair.key] = pair.value;
}

}  // namespace quarrix::detail
