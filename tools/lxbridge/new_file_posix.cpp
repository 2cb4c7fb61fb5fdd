// New files on POSIX: link() fails if the name exists, rename() replaces the file.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/lxbridge/new_file.h"

namespace lxbridge::command {

namespace {

NewFile Fail(int error, std::string* problem) {
  problem->assign(std::strerror(error));
  return NewFile::kFailed;
}

// Creates a temporary file next to the path. -1: see errno.
int OpenTemporary(const std::string& path, std::string* temporary) {
  static unsigned number = 0;
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
  for (;;) {
    *temporary = folder + ".lxbridge-" + std::to_string(::getpid()) + '-' + std::to_string(number++) + ".tmp";
    const int descriptor = ::open(temporary->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t done = ::write(descriptor, bytes.data(), bytes.size());
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
  return true;
}

bool Exists(const std::string& path) {
  struct stat status = {};
  return ::lstat(path.c_str(), &status) == 0;
}

// 0, or the error.
int Name(const std::string& temporary, const std::string& path, bool overwrite) {
  if (!overwrite) {
    if (::link(temporary.c_str(), path.c_str()) == 0) {
      (void)::unlink(temporary.c_str());
      return 0;
    }
    // A file system without links: checking before renaming is the best that can be done.
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) return errno;
    if (Exists(path)) return EEXIST;
  }
  return ::rename(temporary.c_str(), path.c_str()) == 0 ? 0 : errno;
}

}  // namespace

NewFile WriteNewFile(const std::string& path, std::string_view bytes, bool overwrite, std::string* problem) {
  std::string temporary;
  const int descriptor = OpenTemporary(path, &temporary);
  if (descriptor < 0) return Fail(errno, problem);
  int error = WriteAll(descriptor, bytes) ? 0 : errno;
  if (::close(descriptor) != 0 && error == 0) error = errno;  // Network file systems report a full disk here.
  if (error == 0) error = Name(temporary, path, overwrite);
  if (error == 0) return NewFile::kWritten;
  (void)::unlink(temporary.c_str());
  return error == EEXIST ? NewFile::kExists : Fail(error, problem);
}

}  // namespace lxbridge::command
