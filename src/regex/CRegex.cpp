#include <quarrix/regex/CRegex.h>

#include "internal/Builder.h"
#include "internal/Matcher.h"

namespace quarrix {

using detail::regex::CContext;
using detail::regex::CompileRegex;

namespace {

// The static operations report the limit per thread, since they keep no object to ask.
thread_local bool t_staticLimitHit = false;

}  // namespace

CRegex::CRegex() = default;

CRegex::CRegex(CString expression, int flags) : m_expression(std::move(expression)), m_flags(flags) { Compile(); }

CRegex::CRegex(const CRegex& other)
    : m_compiled(other.m_compiled), m_result(other.m_result), m_prepared(other.m_prepared),
      m_expression(other.m_expression), m_flags(other.m_flags), m_text(other.m_text),
      m_nextStart(other.m_nextStart), m_limitHit(other.m_limitHit) {}

CRegex& CRegex::operator=(const CRegex& other) {
  if (this != &other) {
    // The compiled form is immutable, so the copy shares it; the search scratch stays each object's own.
    m_compiled = other.m_compiled;
    m_result = other.m_result;
    m_prepared = other.m_prepared;
    m_expression = other.m_expression;
    m_flags = other.m_flags;
    m_text = other.m_text;
    m_nextStart = other.m_nextStart;
    m_limitHit = other.m_limitHit;
  }
  return *this;
}

CRegex::CRegex(CRegex&& other) noexcept = default;
CRegex& CRegex::operator=(CRegex&& other) noexcept = default;
CRegex::~CRegex() = default;

void CRegex::Init() {
  m_expression.Empty();
  m_text.Empty();
  m_flags = 0;
  m_prepared = 0;
  m_nextStart = 0;
}

void CRegex::SetExpression(CString expression) {
  m_expression = std::move(expression);
  m_nextStart = 0;
  Compile();
}

void CRegex::SetSearchFlags(int flags) {
  m_flags = flags;
  m_nextStart = 0;
  Compile();
}

void CRegex::Compile() {
  // Compiling again what is compiled already would give the same immutable tree.
  if (m_compiled && m_compiled->flags == m_flags && m_compiled->pattern == m_expression.view()) return;
  m_compiled = CompileRegex(m_expression.view(), m_flags);
}

detail::regex::CContext& CRegex::Context() {
  if (!m_context) m_context = std::make_unique<CContext>();
  return *m_context;
}

int CRegex::Search(int start) {
  m_limitHit = false;
  if (!m_compiled) {  // never given an expression
    m_result.Values().clear();
    return 0;
  }
  CContext& context = Context();
  context.Search(*m_compiled, m_text.view(), start, m_result.Values());
  m_limitHit = context.LimitHit();
  return m_result.GetAt(0) > 0 ? m_result.GetAt(0) : 0;
}

int CRegex::IsMatch(CString expression, const CString& text, int flags) {
  const auto compiled = CompileRegex(expression.view(), flags);
  CContext context;
  std::vector<int> result;
  const bool found = context.Search(*compiled, text.view(), -1, result);
  t_staticLimitHit = context.LimitHit();
  return found ? 1 : 0;
}

int CRegex::Match(const CString& text) {
  m_text = text;
  return Search(0);
}

int CRegex::MatchExact(const CString& text) {
  m_flags &= FlagSingleLine;
  m_expression = CString(u"^") + m_expression + u"$";
  Compile();
  return Match(text);
}

void CRegex::PrepareMatch(const CString& text) {
  m_text = text;
  m_prepared = 1;
  m_nextStart = 0;
  Compile();
}

int CRegex::MatchNext() {
  if (!m_prepared) return 0;
  const int found = Search(m_nextStart);
  if (found) m_nextStart = m_result.GetSize() > 3 ? m_result.GetAt(3) : -1;
  return found;
}

void CRegex::ResetMatch() { m_nextStart = 0; }

int CRegex::IsLastMatchSuccessfull() const noexcept { return m_result.IsEmpty() ? 0 : m_result.GetAt(0); }

CString CRegex::GetMatchGroupText(const MatchResult* result, const CString& text, int group) {
  const int start = result ? result->GetGroupStart(group) : -1;
  const int end = result ? result->GetGroupEnd(group) : -1;
  return text.Mid(start, end - start);
}

CString CRegex::GetMatchText(const MatchResult* result, const CString& text) {
  return GetMatchGroupText(result, text, 0);
}

CString CRegex::GetMatchText() const { return GetMatchGroupText(&m_result, m_text, 0); }

CString CRegex::GetMatchGroupText(int group) const { return GetMatchGroupText(&m_result, m_text, group); }

CString CRegex::ReplaceSubStr(const CString& text, int start, int end, const CString& replacement) {
  return text.Left(start) + replacement + text.Right(text.GetLength() - end);
}

CString CRegex::Replace(CString expression, int flags, const CString& text, CString replaceWith, int start,
                        int count) {
  const auto compiled = CompileRegex(expression.view(), flags);
  CContext context;
  bool limitHit = false;
  CString result(detail::regex::Replace(*compiled, context, text.view(), replaceWith.view(), start, count, limitHit));
  t_staticLimitHit = limitHit;
  return result;
}

CString CRegex::Replace(const CString& text, CString replaceWith, int start, int count) {
  m_limitHit = false;
  if (!m_compiled) return text;
  return CString(detail::regex::Replace(*m_compiled, Context(), text.view(), replaceWith.view(), start, count,
                                        m_limitHit));
}

CString CRegex::ReplaceMatchGroupText(CString expression, int flags, const CString& text, CString replacement,
                                      int group) {
  CRegex regex(std::move(expression), flags);
  const int found = regex.Match(text);
  t_staticLimitHit = regex.m_limitHit;
  if (!found) return CString();
  return ReplaceSubStr(text, regex.GetMatchGroupStart(group), regex.GetMatchGroupEnd(group), replacement);
}

CString CRegex::ReplaceMatchGroupText(CString replacement, int group) const {
  if (!IsLastMatchSuccessfull()) return CString();
  return ReplaceSubStr(m_text, GetMatchGroupStart(group), GetMatchGroupEnd(group), replacement);
}

int CRegex::GetNamedGroupNumber(const CString& name) const {
  return m_compiled ? m_compiled->GroupNumber(name.view()) : 0;
}

void CRegex::SetMatchLimit(int limit) noexcept { detail::regex::SetMatchLimit(limit); }
int CRegex::GetMatchLimit() noexcept { return detail::regex::GetMatchLimit(); }
bool CRegex::IsStaticMatchLimitHit() noexcept { return t_staticLimitHit; }

}  // namespace quarrix
