#include <quarrix/foundation/CLogger.h>

#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/NativePath.h>
#include <quarrix/regex/CRegex.h>

namespace quarrix {
namespace {

unsigned g_publicLoggerCounter = 0;

std::shared_ptr<std::FILE> OpenStream(const CString& path, const char* mode) {
  std::FILE* f = path.IsEmpty() ? nullptr : std::fopen(ToNativePath(path).c_str(), mode);
  if (!f) return nullptr;
  return std::shared_ptr<std::FILE>(f, [](std::FILE* file) { std::fclose(file); });
}

}  // namespace

bool CLogger::Open(const CString& path, bool bOverwrite, bool bCloseAfterWrite) {
  Reset();
  m_file = OpenStream(path, bOverwrite ? "w" : "a");
  if (!m_file) return false;
  m_strPath = path;
  m_bOverwrite = bOverwrite;
  m_bCloseAfterWrite = bCloseAfterWrite;
  return true;
}

bool CLogger::Write(const CString& text) {
  if (!m_file) m_file = OpenStream(m_strPath, "a");
  if (!m_file) return false;
  // A text-mode stream on Windows: LF becomes CR LF, characters go through the ANSI code page.
  CString lines = text;
  lines.Replace(u"\n", u"\r\n");
  const std::string bytes = Utf16ToCodePage(CP_ACP, lines.view());
  std::fwrite(bytes.data(), 1, bytes.size(), m_file.get());
  std::fflush(m_file.get());
  if (m_bCloseAfterWrite) Close();
  return true;
}

void CLogger::Close() { m_file.reset(); }

void CLogger::Reset() {
  Close();
  m_bOverwrite = false;
  m_bCloseAfterWrite = false;
}

CString CLogger::GetFileDirFromPath() const {
  CRegex folder(u"(.*)\\\\[^\\\\]*", 0);
  return folder.Match(m_strPath) ? folder.GetMatchGroupText(1) : CString();
}

void PublicLogger(bool bOverwrite, const CString& strText, const CString& strHeading, bool bResetCounter) {
  CLogger logger;
  if (!logger.Open(u"Log_Public_Logger.txt", bOverwrite, false)) return;
  g_publicLoggerCounter = (bResetCounter ? 0 : g_publicLoggerCounter) + 1;
  logger.Write(cstringf(u"%u %s", g_publicLoggerCounter, strHeading));
  logger.Write(u"\n");
  logger.Write(strText + u"\n");
  logger.Write(CString(u'-', 80));
  logger.Write(u"\n");
  logger.Write(u"\n");
  logger.Close();
}

}  // namespace quarrix
