// Side-cars: a file's packet as a separate file, "photo.jpg.xmp" for "photo.jpg".
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_SIDE_CAR_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_SIDE_CAR_H_

#include <string>
#include <string_view>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/options.h"

namespace lxbridge::command {

// The path of a file's side-car: in the same folder, or in the options' folder under the file's own path, without root
// and without leading "..".
[[nodiscard]] std::string SideCarPath(const std::string& file, const Options& options);

// Whether the file's side-car may be written; if not, the result tells that one exists, or that standard input has
// none.
[[nodiscard]] bool MayWriteSideCar(const std::string& file, const Options& options, FileResult* result);

// Writes the side-car, creating missing folders. A failure is in the result.
void WriteSideCar(const std::string& file, std::string_view packet, const Options& options, FileResult* result);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SIDE_CAR_H_
