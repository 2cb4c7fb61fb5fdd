// Side-cars: a file's packet as a file of its own, "photo.jpg.xmp" for "photo.jpg".
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_SIDE_CAR_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_SIDE_CAR_H_

#include <string>
#include <string_view>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

// Where the side-car of a file goes: beside it, or below the options' folder under the file's own path, without root
// and without ".." at its front.
[[nodiscard]] std::string SideCarPath(const std::string& file, const Options& options);

// Whether the file's side-car may be written; if not, the result says that one exists, or that there is none of
// standard input.
[[nodiscard]] bool MayWriteSideCar(const std::string& file, const Options& options, FileResult* result);

// Writes it, with the folders that it needs. A failure is in the result.
void WriteSideCar(const std::string& file, std::string_view packet, const Options& options, FileResult* result);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SIDE_CAR_H_
