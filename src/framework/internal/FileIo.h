#pragma once
// The operating-system calls behind CFile, CMemFile's neighbours and CStdioFile, all in FileIo.cpp, so that a
// test build can replace that one file to inject failures (a full disk, an interrupted call). Each function
// returns 0 on success or the errno value of the failure; none of them throws.
#include <quarrix/framework/Types.h>

#include <cstddef>
#include <string>

namespace quarrix::detail {

// Opens with the CFile mode flags (share flags are accepted and not enforced). Refuses folders (EISDIR).
int FileOpen(const std::string& path, UINT nOpenFlags, int& fd);
// Reads up to n bytes, retrying interrupted calls; nRead < n only at the end of the file.
int FileRead(int fd, void* buffer, std::size_t n, std::size_t& nRead);
// Writes all n bytes, retrying interrupted calls and short writes.
int FileWrite(int fd, const void* buffer, std::size_t n);
// whence is 0, 1 or 2 (begin, current, end).
int FileSeek(int fd, LONGLONG offset, int whence, ULONGLONG& newPosition);
int FileSize(int fd, ULONGLONG& size);
int FileTruncate(int fd, ULONGLONG size);
int FileSync(int fd);
int FileClose(int fd);
int FileRemove(const std::string& path);
int FileRename(const std::string& from, const std::string& to);

}  // namespace quarrix::detail
