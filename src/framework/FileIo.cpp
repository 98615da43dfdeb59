#include "internal/FileIo.h"

#include <quarrix/framework/CFile.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quarrix::detail {

int FileOpen(const std::string& path, UINT nOpenFlags, int& fd) {
  fd = -1;
  int flags = O_CLOEXEC;
  switch (nOpenFlags & 3) {
    case CFile::modeRead: flags |= O_RDONLY; break;
    case CFile::modeWrite: flags |= O_WRONLY; break;
    case CFile::modeReadWrite: flags |= O_RDWR; break;
    default: return EINVAL;
  }
  if (nOpenFlags & CFile::modeCreate) {
    flags |= O_CREAT;
    if (!(nOpenFlags & CFile::modeNoTruncate)) flags |= O_TRUNC;
  }
  int handle;
  do {
    handle = ::open(path.c_str(), flags, 0666);
  } while (handle < 0 && errno == EINTR);
  if (handle < 0) return errno;
  // Linux opens a folder for reading; Windows refuses, and nothing of a folder reads like a file.
  struct stat st {};
  if (::fstat(handle, &st) == 0 && S_ISDIR(st.st_mode)) {
    ::close(handle);
    return EISDIR;
  }
  fd = handle;
  return 0;
}

int FileRead(int fd, void* buffer, std::size_t n, std::size_t& nRead) {
  nRead = 0;
  auto* p = static_cast<char*>(buffer);
  while (nRead < n) {
    const ssize_t got = ::read(fd, p + nRead, n - nRead);
    if (got < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    if (got == 0) break;
    nRead += static_cast<std::size_t>(got);
  }
  return 0;
}

int FileWrite(int fd, const void* buffer, std::size_t n) {
  const auto* p = static_cast<const char*>(buffer);
  while (n > 0) {
    const ssize_t put = ::write(fd, p, n);
    if (put < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    p += put;
    n -= static_cast<std::size_t>(put);
  }
  return 0;
}

int FileSeek(int fd, LONGLONG offset, int whence, ULONGLONG& newPosition) {
  static constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  if (whence < 0 || whence > 2) return EINVAL;
  const off_t pos = ::lseek(fd, static_cast<off_t>(offset), kWhence[whence]);
  if (pos < 0) return errno;
  newPosition = static_cast<ULONGLONG>(pos);
  return 0;
}

int FileSize(int fd, ULONGLONG& size) {
  struct stat st {};
  if (::fstat(fd, &st) != 0) return errno;
  size = static_cast<ULONGLONG>(st.st_size);
  return 0;
}

int FileTruncate(int fd, ULONGLONG size) {
  int rc;
  do {
    rc = ::ftruncate(fd, static_cast<off_t>(size));
  } while (rc != 0 && errno == EINTR);
  return rc == 0 ? 0 : errno;
}

int FileSync(int fd) { return ::fsync(fd) == 0 || errno == EINVAL ? 0 : errno; }

// close() is not retried on EINTR: on Linux the descriptor is gone either way.
int FileClose(int fd) { return ::close(fd) == 0 || errno == EINTR ? 0 : errno; }

int FileRemove(const std::string& path) { return ::unlink(path.c_str()) == 0 ? 0 : errno; }

// Windows' MoveFile refuses to replace an existing file, and ported code relies on that.
int FileRename(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // A file system without RENAME_NOREPLACE: check, then rename (not atomic, but the best it offers).
  struct stat st {};
  if (::lstat(to.c_str(), &st) == 0) return EEXIST;
  return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace quarrix::detail
