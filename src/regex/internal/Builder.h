#pragma once
// Compilation of a pattern into the element tree. Never fails: malformed input is read as described in
// CRegex.h. The parser keeps its open groups on a heap stack, so nesting depth costs no native stack.
#include "Elements.h"

#include <memory>
#include <string_view>

namespace quarrix::detail::regex {

std::shared_ptr<const CompiledRegex> CompileRegex(std::u16string_view pattern, int flags);

// Fills in what matching and searching derive from the tree: first sets, minimum lengths, purity, the
// repeats that can never give back usefully, and the search plan (Analysis.cpp).
void AnalyseRegex(CompiledRegex& re);

}  // namespace quarrix::detail::regex
