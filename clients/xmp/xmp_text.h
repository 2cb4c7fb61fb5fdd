// Copying texts of the toolkit; for the files of this folder.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_TEXT_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_TEXT_H_

#include <string>

#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_abi.h"

// Copies the text and unlocks its owner, even if there is no memory for the copy: until then the toolkit keeps the
// text. `unlock` returns the result of the unlocking procedure.
template <typename Unlock>
void TakeText(const XMPTextOut& text, std::string* copy, Unlock unlock) {
  try {
    if (text.text) {
      copy->assign(text.text, text.length);
    } else {
      copy->clear();
    }
  } catch (...) {
    const TAL_T_NMT::CTALError dropped(unlock());  // The first failure is the one reported.
    throw;
  }
  TAL_T_NMT::ThrowIfError(unlock());
}

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_TEXT_H_
