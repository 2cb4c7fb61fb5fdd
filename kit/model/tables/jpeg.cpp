// JPEG markers by code, and the known application segments by marker and identifier. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxJpegMarkers[] = {
  //id     flags   name     type    n  display  leads to label
  {0xFFC0, kPlain, "SOF0",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC1, kPlain, "SOF1",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC2, kPlain, "SOF2",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC3, kPlain, "SOF3",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC4, kPlain, "DHT",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC5, kPlain, "SOF5",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC6, kPlain, "SOF6",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC7, kPlain, "SOF7",  kUndef, 0, nullptr, nullptr, nullptr},

  {0xFFC8, kPlain, "JPG",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFC9, kPlain, "SOF9",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFCA, kPlain, "SOF10", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFCB, kPlain, "SOF11", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFCC, kPlain, "DAC",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFCD, kPlain, "SOF13", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFCE, kPlain, "SOF14", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFCF, kPlain, "SOF15", kUndef, 0, nullptr, nullptr, nullptr},

  {0xFFD0, kPlain, "RST0",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD1, kPlain, "RST1",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD2, kPlain, "RST2",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD3, kPlain, "RST3",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD4, kPlain, "RST4",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD5, kPlain, "RST5",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD6, kPlain, "RST6",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD7, kPlain, "RST7",  kUndef, 0, nullptr, nullptr, nullptr},

  {0xFFD8, kPlain, "SOI",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFD9, kPlain, "EOI",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFDA, kPlain, "SOS",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFDB, kPlain, "DQT",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFDC, kPlain, "DNL",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFDD, kPlain, "DRI",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFDE, kPlain, "DHP",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFDF, kPlain, "EXP",   kUndef, 0, nullptr, nullptr, nullptr},

  {0xFFE0, kPlain, "APP0",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE1, kPlain, "APP1",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE2, kPlain, "APP2",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE3, kPlain, "APP3",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE4, kPlain, "APP4",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE5, kPlain, "APP5",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE6, kPlain, "APP6",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE7, kPlain, "APP7",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE8, kPlain, "APP8",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFE9, kPlain, "APP9",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFEA, kPlain, "APP10", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFEB, kPlain, "APP11", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFEC, kPlain, "APP12", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFED, kPlain, "APP13", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFEE, kPlain, "APP14", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFEF, kPlain, "APP15", kUndef, 0, nullptr, nullptr, nullptr},

  {0xFFF0, kPlain, "JPG0",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF1, kPlain, "JPG1",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF2, kPlain, "JPG2",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF3, kPlain, "JPG3",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF4, kPlain, "JPG4",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF5, kPlain, "JPG5",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF6, kPlain, "JPG6",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF7, kPlain, "JPG7",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF8, kPlain, "JPG8",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFF9, kPlain, "JPG9",  kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFFA, kPlain, "JPG10", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFFB, kPlain, "JPG11", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFFC, kPlain, "JPG12", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFFD, kPlain, "JPG13", kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFFE, kPlain, "COM",   kUndef, 0, nullptr, nullptr, nullptr},
  {0xFFFF, kPlain, "JPG15", kUndef, 0, nullptr, nullptr, nullptr},

  {0x0000, kPlain, "",      kUndef, 0, nullptr, nullptr, nullptr},  // catch-all
  kLxEndOfTags,
};
static_assert(std::size(kLxJpegMarkers) == 64 + 1 + 1 && IsDictionary(kLxJpegMarkers));

namespace {

// The contents of segments. Variant 6: the length of "Exif" and two zero bytes.
constexpr LxNamespaceDescriptor kJfifSegment          = {"jpegappjfif", kLxReadJfifSegment,     nullptr, 0};
constexpr LxNamespaceDescriptor kExifSegment          = {"jpegappexif", kLxReadExifSegment,     nullptr, 6};
constexpr LxNamespaceDescriptor kXmpSegment           = {"jpegappXmp",  kLxReadXmpSegment,      nullptr, 0};
constexpr LxNamespaceDescriptor kFlashPixSegment      = {"jpegappFpxr", kLxReadFlashPixSegment, nullptr, 0};
constexpr LxNamespaceDescriptor kIccSegment           = {"jpegappIcc",  kLxReadIccSegment,      nullptr, 0};
constexpr LxNamespaceDescriptor kImageResourceSegment = {"jpegappir",   kLxReadResourceSegment, nullptr, 0};

}  // namespace

// A segment is looked up by its marker and the text before its first zero byte. The text of kLxXmpSegmentId is written out:
// with sanitizers the compiler does not take the address of an inline variable for non-null, and the shape goes unchecked.
constexpr LxTagRecord kLxJpegSegmentIds[] = {
  //id     flags    name                            type    n  display  leads to                label
  {0xFFE0, kPlain,  "JFIF",                         kUndef, 0, nullptr, &kJfifSegment,          nullptr},
  {0xFFE1, kPlain,  "PIC",                          kUndef, 0, nullptr, nullptr,                nullptr},
  {0xFFE1, kPlain,  "Meta",                         kUndef, 0, nullptr, &kExifSegment,          nullptr},
  {0xFFE1, kPlain,  "Exif",                         kUndef, 0, nullptr, &kExifSegment,          nullptr},
  {0xFFE1, kPlain,  "http://ns.adobe.com/xap/1.0/", kUndef, 0, nullptr, &kXmpSegment,           nullptr},
  {0xFFE2, kClosed, "FPXR",                         kUndef, 0, nullptr, &kFlashPixSegment,      nullptr},
  {0xFFE2, kPlain,  "ICC_PROFILE",                  kUndef, 0, nullptr, &kIccSegment,           nullptr},
  {0xFFE3, kPlain,  "Exif",                         kUndef, 0, nullptr, &kExifSegment,          nullptr},
  {0xFFE3, kPlain,  "Meta",                         kUndef, 0, nullptr, &kExifSegment,          nullptr},
  {0xFFEC, kPlain,  "Ducky",                        kUndef, 0, nullptr, nullptr,                nullptr},
  {0xFFED, kClosed, "Velto_CM",                     kUndef, 0, nullptr, nullptr,                nullptr},
  {0xFFED, kPlain,  "Picturist 3.0",                kUndef, 0, nullptr, &kImageResourceSegment, nullptr},
  {0xFFEE, kPlain,  "Velto",                        kUndef, 0, nullptr, nullptr,                nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxJpegSegmentIds) == 13 + 1 && IsDictionary(kLxJpegSegmentIds));
// clang-format on
