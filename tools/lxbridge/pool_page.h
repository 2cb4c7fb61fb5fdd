// A file's pool, its bytes and its XMP object as a self-contained page of HTML.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_POOL_PAGE_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_POOL_PAGE_H_

#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/result.h"
#include "kit/model/pool.h"

namespace lxbridge::command {

// Appends the page. `xmp` is the object of the same file.
void WritePoolPage(std::string* out, std::string_view file, LxResult status, const LxMetadataPool& pool,
                   const XmpView& xmp);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_POOL_PAGE_H_
