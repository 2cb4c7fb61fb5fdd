// The image resources of an image editor's files ("8BIM" blocks), by resource id. Data only.
// The reader takes the type from here, since the blocks have none.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"
#include "kit/model/tables/value_names.h"

// clang-format off
constexpr LxTagRecord kLxIrTags[] = {
  //id     flags    name                      type    n  display          leads to                    label
  {0x03E8, kHidden, "ImageSizeInfo",          kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ImageSizeInfo=Image Size Info"},
  {0x03E9, kHidden, "PrintInfo",              kUndef, 0, nullptr,         nullptr,                    "$$$/IR/PrintInfo=Print Info"},
  {0x03EA, kHidden, "PageFormat",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/PageFormat=Page Format"},
  {0x03EB, kHidden, "ColorTable",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ColorTable=Color Table"},
  {0x03EC, kHidden, "MultidiskStamp",         kUndef, 0, nullptr,         nullptr,                    "$$$/IR/MultidiskStamp=Multidisk Stamp"},
  {0x03ED, kHidden, "ResolutionInfo",         kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ResolutionInfo=Resolution Info"},
  {0x03EE, kHidden, "AlphaChannelNames",      kUndef, 0, nullptr,         nullptr,                    "$$$/IR/AlphaChannelNames=Alpha Channel Names"},
  {0x03EF, kHidden, "DisplayInfo",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DisplayInfo=Display Info"},
  {0x03F0, kPlain,  "Caption",                kUndef, 0, nullptr,         nullptr,                    "$$$/IR/Caption=Caption"},
  {0x03F1, kHidden, "BorderInformation",      kUndef, 0, nullptr,         nullptr,                    "$$$/IR/BorderInformation=Border Information"},

  {0x03F2, kHidden, "BackgroundColor",        kUndef, 0, nullptr,         nullptr,                    "$$$/IR/BackgroundColor=Background Color"},
  {0x03F3, kHidden, "PrintFlags",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/PrintFlags=Print Flags"},
  {0x03F4, kHidden, "GrayscaleHalftoning",    kUndef, 0, nullptr,         nullptr,                    "$$$/IR/GrayscaleHalftoning=Grayscale Halftoning"},
  {0x03F5, kHidden, "ColorHalftoning",        kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ColorHalftoning=Color Halftoning"},
  {0x03F6, kHidden, "DuotoneHalftoning",      kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DuotoneHalftoning=Duotone Halftoning"},
  {0x03F7, kHidden, "GrayscaleTransfer",      kUndef, 0, nullptr,         nullptr,                    "$$$/IR/GrayscaleTransfer=Grayscale Transfer"},
  {0x03F8, kHidden, "ColorTransfer",          kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ColorTransfer=Color Transfer"},
  {0x03F9, kHidden, "DuotoneTransfer",        kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DuotoneTransfer=Duotone Transfer"},
  {0x03FA, kHidden, "DuotoneInfo",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DuotoneInfo=Duotone Info"},
  {0x03FB, kHidden, "DotRange",               kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DotRange=Dot Range"},

  {0x03FC, kHidden, "Obsolete03fc",           kUndef, 0, nullptr,         nullptr,                    nullptr},
  {0x03FD, kHidden, "EPSOptions.",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/EPSOptions=EPS Options"},  // sic
  {0x03FE, kHidden, "QuickMask",              kUndef, 0, nullptr,         nullptr,                    "$$$/IR/QuickMask=Quick Mask"},
  {0x03FF, kHidden, "Obsolete03ff.",          kUndef, 0, nullptr,         nullptr,                    nullptr},  // sic
  {0x0400, kHidden, "LayerState",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/LayerState=Layer State"},
  {0x0401, kHidden, "WorkingPath",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/WorkingPath=Working Path"},
  {0x0402, kHidden, "LayersGroup",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/LayersGroup=Layers Group"},
  {0x0403, kHidden, "Obsolete03ff",           kUndef, 0, nullptr,         nullptr,                    nullptr},  // sic

  {0x0404, kPlain,  "IptcNaa",                kUndef, 0, nullptr,         &kLxIptcSpace,              "$$$/IR/IptcNaa=IPTC NAA"},
  {0x0405, kHidden, "ImageMode",              kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ImageMode=Image Mode"},
  {0x0406, kPlain,  "JPEGQuality",            kUndef, 0, &kLxJpegQuality, nullptr,                    "$$$/IR/JPEGQuality=JPEG Quality"},
  {0x0408, kHidden, "GridAndGuides",          kUndef, 0, nullptr,         nullptr,                    "$$$/IR/GridAndGuides=Grid And Guides"},
  {0x0409, kClosed, "ThumbnailBGR",           kUndef, 0, nullptr,         &kLxResourceThumbnailSpace, "$$$/IR/ThumbnailBGR=Thumbnail BGR"},
  {0x040A, kPlain,  "CopyrightFlag",          kUndef, 0, nullptr,         nullptr,                    "$$$/IR/CopyrightFlag=Copyright Flag"},
  {0x040B, kPlain,  "URL",                    kAscii, 0, nullptr,         nullptr,                    "$$$/IR/URL=URL"},
  {0x040C, kClosed, "Thumbnail",              kUndef, 0, nullptr,         &kLxResourceThumbnailSpace, "$$$/IR/Thumbnail=Thumbnail"},

  {0x040D, kHidden, "GlobalAngle",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/GlobalAngle=Global Angle"},
  {0x040E, kHidden, "ColorSamplers",          kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ColorSamplers=Color Samplers"},
  {0x040F, kPlain,  "ICCProfile",             kUndef, 0, &kLxIccProfile,  nullptr,                    "$$$/IR/ICCProfile=ICC Profile"},
  {0x0410, kPlain,  "Watermark",              kUndef, 0, nullptr,         nullptr,                    "$$$/IR/Watermark=Watermark"},
  {0x0411, kPlain,  "ICCUntagged",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ICCUntagged=ICC Untagged"},
  {0x0412, kHidden, "EffectsVisible",         kUndef, 0, nullptr,         nullptr,                    "$$$/IR/EffectsVisible=Effects Visible"},
  {0x0413, kHidden, "SpotHalftone",           kUndef, 0, nullptr,         nullptr,                    "$$$/IR/SpotHalftone=Spot Halftone"},
  {0x0414, kHidden, "DocumentSpecificIDs",    kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DocumentSpecificIDs=Document Specific IDs"},

  {0x0415, kHidden, "UnicodeAlphaNames",      kUndef, 0, nullptr,         nullptr,                    "$$$/IR/UnicodeAlphaNames=Unicode Alpha Names"},
  {0x0416, kHidden, "IndexedColorTableCount", kUndef, 0, nullptr,         nullptr,                    "$$$/IR/IndexedColorTableCount=Indexed Color Table Count"},
  {0x0417, kHidden, "TransparentIndex",       kUndef, 0, nullptr,         nullptr,                    "$$$/IR/TransparentIndex=Transparent Index"},
  {0x0419, kHidden, "GlobalAltitude",         kUndef, 0, nullptr,         nullptr,                    "$$$/IR/GlobalAltitude=Global Altitude"},
  {0x041A, kHidden, "Slices",                 kUndef, 0, nullptr,         nullptr,                    "$$$/IR/Slices=Slices"},
  {0x041B, kPlain,  "WorkflowURL",            kUndef, 0, nullptr,         nullptr,                    "$$$/IR/WorkflowURL=Workflow URL"},
  {0x041C, kHidden, "JumpToXPEP",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/JumpToXPEP=Jump To XPEP"},
  {0x041D, kHidden, "AlphaIdentifiers",       kUndef, 0, nullptr,         nullptr,                    "$$$/IR/AlphaIdentifiers=Alpha Identifiers"},
  {0x041E, kHidden, "URLList",                kUndef, 0, nullptr,         nullptr,                    "$$$/IR/URLList=URL List"},
  {0x0421, kPlain,  "VersionInfo",            kUndef, 0, &kLxVersionInfo, nullptr,                    "$$$/IR/VersionInfo=Picturist Version"},
  {0x0BB7, kHidden, "ClippingPath",           kUndef, 0, nullptr,         nullptr,                    "$$$/IR/ClippingPath=Clipping Path"},
  {0x2710, kHidden, "PrintFlagsInfo",         kUndef, 0, nullptr,         nullptr,                    "$$$/IR/PrintFlagsInfo=Print Flags Info"},

  {0x0422, kPlain,  "ExifData1",              kUndef, 0, nullptr,         &kLxTiffSpace,              "$$$/IR/ExifData1=EXIF Data 1"},
  {0x0423, kPlain,  "ExifData3",              kUndef, 0, nullptr,         &kLxTiffSpace,              "$$$/IR/ExifData3=EXIF Data 3"},
  {0x0424, kHidden, "XMPMetadata",            kUndef, 0, nullptr,         &kLxXmpSpace,               "$$$/IR/XMPMetadata=XMP Metadata"},
  {0x0425, kHidden, "CaptionDigest",          kUndef, 0, nullptr,         nullptr,                    "$$$/IR/CaptionDigest=Caption Digest"},
  {0x0426, kHidden, "PrintScale",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/PrintScale=Print Scale"},
  {0x0427, kHidden, "DocumentID",             kUndef, 0, nullptr,         nullptr,                    "$$$/IR/DocumentID=Document ID"},
  {0x0428, kHidden, "PixelHSF",               kUndef, 0, nullptr,         nullptr,                    "$$$/IR/PixelHSF=Pixel HSF"},
  {0x0429, kHidden, "Comps",                  kUndef, 0, nullptr,         nullptr,                    "$$$/IR/Comps=Comps"},
  kLxEndOfTags,
};
static_assert(std::size(kLxIrTags) == 64 + 1 && IsDictionary(kLxIrTags));
// clang-format on
