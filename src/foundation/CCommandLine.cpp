#include <quarrix/foundation/CCommandLine.h>

#include <quarrix/framework/CodePage.h>
#include <quarrix/regex/CRegex.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>

namespace quarrix {
namespace {

struct Arguments {
  std::mutex mutex;
  bool loaded = false;
  std::vector<CString> argv;
};

Arguments& State() {
  static Arguments state;
  return state;
}

std::vector<CString> ReadProcessArguments() {
  std::ifstream in("/proc/self/cmdline", std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<CString> args;
  std::size_t start = 0;
  while (start < bytes.size()) {
    std::size_t end = bytes.find('\0', start);
    if (end == std::string::npos) end = bytes.size();
    args.emplace_back(CodePageToUtf16(CP_ACP, std::string_view(bytes).substr(start, end - start)));
    start = end + 1;
  }
  return args;
}

// A copy, so that no lock is held while the patterns run.
std::vector<CString> Args() {
  Arguments& s = State();
  std::lock_guard lock(s.mutex);
  if (!s.loaded) {
    s.argv = ReadProcessArguments();
    s.loaded = true;
  }
  return s.argv;
}

}  // namespace

void CCommandLine::SetArguments(int argc, const char* const* argv) {
  std::vector<CString> args;
  for (int i = 0; argv && i < argc; ++i) args.emplace_back(CodePageToUtf16(CP_ACP, argv[i] ? argv[i] : ""));
  SetArguments(std::move(args));
}

void CCommandLine::SetArguments(std::vector<CString> args) {
  Arguments& s = State();
  std::lock_guard lock(s.mutex);
  s.argv = std::move(args);
  s.loaded = true;
}

void CCommandLine::ResetArguments() {
  Arguments& s = State();
  std::lock_guard lock(s.mutex);
  s.argv.clear();
  s.loaded = false;
}

int CCommandLine::GetParameterCount() { return static_cast<int>(Args().size()); }

bool CCommandLine::GetParameter(int i, CString& value) {
  value.Empty();
  const std::vector<CString> args = Args();
  if (i < 0 || i > static_cast<int>(args.size())) return false;
  if (i < static_cast<int>(args.size())) value = args[static_cast<std::size_t>(i)];
  return true;
}

bool CCommandLine::IsFlagSet(CString flag, int nPos, int* pIndex) {
  const std::vector<CString> args = Args();
  const int argc = static_cast<int>(args.size());
  CRegex pattern(cstringf(u"[-/]%s\\b", flag), 0);
  const int first = nPos <= 0 ? 1 : nPos;
  const int last = nPos <= 0 ? argc - 1 : std::min(nPos, argc - 1);
  for (int i = first; i <= last; ++i) {
    if (pattern.Match(args[static_cast<std::size_t>(i)])) {
      if (pIndex) *pIndex = i;
      return true;
    }
  }
  return false;
}

bool CCommandLine::GetParameterValue(CString name, CString& value) {
  CRegex pattern(cstringf(u"[-/]%s[\\:=](.*)", name), 0);
  for (const CString& arg : Args()) {
    if (pattern.Match(arg)) {
      value = pattern.GetMatchGroupText(1);
      return true;
    }
  }
  return false;
}

CString CCommandLine::GetParamList() {
  const std::vector<CString> args = Args();
  CString list;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (i) list += u"\n";
    list.AppendFormat(u"- Param %d: '%s'", static_cast<int>(i), args[i]);
  }
  return list;
}

CString CCommandLine::GetCommandLineW() {
  const std::vector<CString> args = Args();
  CString line;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (i) line += u" ";
    line += args[i];
  }
  return line;
}

}  // namespace quarrix
