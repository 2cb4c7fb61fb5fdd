// Writes a file that other programs see completely or not at all. Each system has one implementation
// (new_file_posix.cpp, new_file_windows.cpp).
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_NEW_FILE_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_NEW_FILE_H_

#include <string>
#include <string_view>

namespace lxbridge::command {

enum class NewFile { kWritten, kExists, kFailed };

// Writes the bytes to a temporary file in the same folder and renames it to the path. Without `overwrite`, an existing
// file is kept: kExists. kFailed: `problem` tells why. The temporary file is removed in both cases.
[[nodiscard]] NewFile WriteNewFile(const std::string& path, std::string_view bytes, bool overwrite,
                                   std::string* problem);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_NEW_FILE_H_
