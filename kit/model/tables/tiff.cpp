// The tags of TIFF directories: TIFF 6.0, TIFF/EP and later registered ones. Data only.
// Label groups, here and in exif.cpp and gps.cpp: Tiff6 for the tags of TIFF 6.0, Exif2 for those new in Exif 2.2,
// Exif21 for those new in Exif 2.21, Exif for all others.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"
#include "kit/model/tables/value_names.h"

// clang-format off
constexpr LxTagRecord kLxTiffTags[] = {
  //id     flags    name                           type      n  display                             leads to                  label
  // TIFF 6.0
  {0x00FE, kHidden, "NewSubfileType",              kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/NewSubfileType=New Subfile Type"},
  {0x00FF, kHidden, "SubfileType",                 kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/SubfileType=Subfile Type"},
  {0x0100, kPlain,  "ImageWidth",                  kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/ImageWidth=Image Width"},
  {0x0101, kPlain,  "ImageLength",                 kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/ImageLength=Image Length"},
  {0x0102, kPlain,  "BitsPerSample",               kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/BitsPerSample=Bits Per Sample"},
  {0x0103, kPlain,  "Compression",                 kShort,   1, &kLxCompressionNames,               nullptr,                  "$$$/Tiff6/Compression=Compression"},
  {0x0106, kPlain,  "PhotometricInterpretation",   kShort,   1, &kLxPhotometricInterpretationNames, nullptr,                  "$$$/Tiff6/PhotometricInterpretation=Photometric Interpretation"},
  {0x0107, kPlain,  "Threshholding",               kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/Threshholding=Thresholding"},  // sic
  {0x0108, kPlain,  "CellWidth",                   kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/CellWidth=Cell Width"},
  {0x0109, kPlain,  "CellLength",                  kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/CellLength=Cell Length"},
  {0x010A, kPlain,  "FillOrder",                   kShort,   1, &kLxFillOrderNames,                 nullptr,                  "$$$/Tiff6/FillOrder=Fill Order"},

  {0x010D, kPlain,  "DocumentName",                kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/DocumentName=Document Name"},
  {0x010E, kPlain,  "ImageDescription",            kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/ImageDescription=Image Description"},
  {0x010F, kPlain,  "Make",                        kAscii,   0, nullptr,                            &kLxMakeSpace,            "$$$/Tiff6/Make=Make"},
  {0x0110, kPlain,  "Model",                       kAscii,   0, nullptr,                            &kLxModelSpace,           "$$$/Tiff6/Model=Model"},

  {0x0111, kHidden, "StripOffsets",                kOffset,  0, nullptr,                            nullptr,                  "$$$/Tiff6/StripOffsets=Strip Offsets"},
  {0x0112, kPlain,  "Orientation",                 kShort,   1, &kLxOrientationNames,               nullptr,                  "$$$/Tiff6/Orientation=Orientation"},
  {0x0115, kPlain,  "SamplesPerPixel",             kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/SamplesPerPixel=Samples Per Pixel"},
  {0x0116, kHidden, "RowsPerStrip",                kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/RowsPerStrip=Rows Per Strip"},
  {0x0117, kHidden, "StripByteCounts",             kLong,    0, nullptr,                            nullptr,                  "$$$/Tiff6/StripByteCounts=Strip Byte Counts"},

  {0x0118, kPlain,  "MinSampleValue",              kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/MinSampleValue=Min Sample Value"},
  {0x0119, kPlain,  "MaxSampleValue",              kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/MaxSampleValue=Max Sample Value"},
  {0x011A, kPlain,  "XResolution",                 kRatl,    1, nullptr,                            nullptr,                  "$$$/Tiff6/XResolution=X Resolution"},
  {0x011B, kPlain,  "YResolution",                 kRatl,    1, nullptr,                            nullptr,                  "$$$/Tiff6/YResolution=Y Resolution"},
  {0x011C, kPlain,  "PlanarConfiguration",         kShort,   1, &kLxPlanarConfigurationNames,       nullptr,                  "$$$/Tiff6/PlanarConfiguration=Planar Configuration"},
  {0x011D, kPlain,  "PageName",                    kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/PageName=Page Name"},
  {0x011E, kPlain,  "XPosition",                   kRatl,    1, nullptr,                            nullptr,                  "$$$/Tiff6/XPosition=X Position"},
  {0x011F, kPlain,  "YPosition",                   kRatl,    1, nullptr,                            nullptr,                  "$$$/Tiff6/YPosition=Y Position"},

  {0x0120, kHidden, "FreeOffsets",                 kLong,    0, nullptr,                            nullptr,                  "$$$/Tiff6/FreeOffsets=Free Offsets"},
  {0x0121, kHidden, "FreeByteCounts",              kLong,    0, nullptr,                            nullptr,                  "$$$/Tiff6/FreeByteCounts=Free Byte Counts"},
  {0x0122, kPlain,  "GrayResponseUnit",            kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/GrayResponseUnit=Gray Response Unit"},
  {0x0123, kPlain,  "GrayResponseCurve",           kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/GrayResponseCurve=Gray Response Curve"},
  {0x0124, kPlain,  "T4Options",                   kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/T4Options=T4 Options"},
  {0x0125, kPlain,  "T6Options",                   kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/T6Options=T6 Options"},

  {0x0128, kPlain,  "ResolutionUnit",              kShort,   1, &kLxResolutionUnitNames,            nullptr,                  "$$$/Tiff6/ResolutionUnit=Resolution Unit"},
  {0x0129, kPlain,  "PageNumber",                  kShort,   2, nullptr,                            nullptr,                  "$$$/Tiff6/PageNumber=Page Number"},
  {0x012D, kPlain,  "TransferFunction",            kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/TransferFunction=Transfer Function"},
  {0x0131, kPlain,  "Software",                    kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/Software=Software"},
  {0x0132, kPlain,  "DateTime",                    kAscii,  20, nullptr,                            nullptr,                  "$$$/Tiff6/DateTime=Date Time"},
  {0x013B, kPlain,  "Artist",                      kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/Artist=Artist"},
  {0x013C, kPlain,  "HostComputer",                kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/HostComputer=Host Computer"},
  {0x013D, kPlain,  "Predictor",                   kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/Predictor=Predictor"},
  {0x013E, kPlain,  "WhitePoint",                  kRatl,    2, nullptr,                            nullptr,                  "$$$/Tiff6/WhitePoint=White Point"},
  {0x013F, kPlain,  "PrimaryChromaticities",       kRatl,    6, nullptr,                            nullptr,                  "$$$/Tiff6/PrimaryChromaticities=Primary Chromaticities"},
  {0x0140, kPlain,  "ColorMap",                    kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/ColorMap=Color Map"},

  {0x0141, kPlain,  "HalftoneHints",               kShort,   2, nullptr,                            nullptr,                  "$$$/Tiff6/HalftoneHints=Halftone Hints"},
  {0x0142, kHidden, "TileWidth",                   kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/TileWidth=Tile Width"},
  {0x0143, kHidden, "TileLength",                  kLong,    1, nullptr,                            nullptr,                  "$$$/Tiff6/TileLength=Tile Length"},
  {0x0144, kHidden, "TileOffsets",                 kOffset,  0, nullptr,                            nullptr,                  "$$$/Tiff6/TileOffsets=Tile Offsets"},
  {0x0145, kHidden, "TileByteCounts",              kLong,    0, nullptr,                            nullptr,                  "$$$/Tiff6/TileByteCounts=Tile Byte Counts"},
  {0x014A, kClosed, "SubIFDs",                     kOffset,  0, nullptr,                            &kLxSubIfdSpace,          "$$$/Tiff6/SubIFDs=Sub IFDs"},

  {0x014C, kPlain,  "InkSet",                      kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/InkSet=Ink Set"},
  {0x014D, kPlain,  "InkNames",                    kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/InkNames=Ink Names"},
  {0x014E, kPlain,  "NumberOfInks",                kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/NumberOfInks=Number Of Inks"},
  {0x0150, kPlain,  "DotRange",                    kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/DotRange=Dot Range"},
  {0x0151, kPlain,  "TargetPrinter",               kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/TargetPrinter=Target Printer"},
  {0x0152, kPlain,  "ExtraSamples",                kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/ExtraSamples=Extra Samples"},
  {0x0153, kPlain,  "SampleFormat",                kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/SampleFormat=Sample Format"},
  {0x0154, kPlain,  "SMinSampleValue",             kNone,    0, nullptr,                            nullptr,                  "$$$/Tiff6/SMinSampleValue=S Min Sample Value"},
  {0x0155, kPlain,  "SMaxSampleValue",             kNone,    0, nullptr,                            nullptr,                  "$$$/Tiff6/SMaxSampleValue=S Max Sample Value"},
  {0x0156, kPlain,  "TransferRange",               kShort,   6, nullptr,                            nullptr,                  "$$$/Tiff6/TransferRange=Transfer Range"},

  {0x0200, kHidden, "JPEGProc",                    kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGProc=JPEG Proc"},
  {0x0201, kHidden, "JPEGInterchangeFormat",       kLong,    1, nullptr,                            &kLxThumbnailSpace,       "$$$/Tiff6/JPEGInterchangeFormat=JPEG Interchange Format"},
  {0x0202, kHidden, "JPEGInterchangeFormatLength", kLong,    1, nullptr,                            &kLxThumbnailLengthSpace, "$$$/Tiff6/JPEGInterchangeFormatLength=JPEG Interchange Format Length"},
  {0x0203, kHidden, "JPEGRestartInterval",         kShort,   1, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGRestartInterval=JPEG Restart Interval"},
  {0x0205, kHidden, "JPEGLosslessPredictors",      kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGLosslessPredictors=JPEG Lossless Predictors"},
  {0x0206, kHidden, "JPEGPointTransforms",         kShort,   0, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGPointTransforms=JPEG Point Transforms"},
  {0x0207, kHidden, "JPEGQTables",                 kOffset,  0, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGQTables=JPEG Q Tables"},
  {0x0208, kHidden, "JPEGDCTables",                kOffset,  0, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGDCTables=JPEG DC Tables"},
  {0x0209, kHidden, "JPEGACTables",                kOffset,  0, nullptr,                            nullptr,                  "$$$/Tiff6/JPEGACTables=JPEG AC Tables"},

  {0x0211, kPlain,  "YCbCrCoefficients",           kRatl,    3, nullptr,                            nullptr,                  "$$$/Tiff6/YCbCrCoefficients=YCbCr Coefficients"},
  {0x0212, kPlain,  "YCbCrSubSampling",            kShort,   2, nullptr,                            nullptr,                  "$$$/Tiff6/YCbCrSubSampling=YCbCr Sub Sampling"},
  {0x0213, kPlain,  "YCbCrPositioning",            kShort,   1, &kLxYCbCrPositioningNames,          nullptr,                  "$$$/Tiff6/YCbCrPositioning=YCbCr Positioning"},
  {0x0214, kPlain,  "ReferenceBlackWhite",         kLong,    6, nullptr,                            nullptr,                  "$$$/Tiff6/ReferenceBlackWhite=Reference Black White"},  // sic: TIFF 6.0's list of tags; rational in its section 20
  {0x8298, kPlain,  "Copyright",                   kAscii,   0, nullptr,                            nullptr,                  "$$$/Tiff6/Copyright=Copyright"},

  // TIFF/EP, Exif, and registered tags
  {0x8769, kHidden, "ExifOffset",                  kOffset,  1, nullptr,                            &kLxExifSpace,            "$$$/Exif/ExifOffset=EXIF Offset"},
  {0x015B, kPlain,  "JPEGTables",                  kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/JPEGTables=JPEG Tables"},
  {0x828D, kPlain,  "CFARepeatPatternDim",         kShort,   2, nullptr,                            nullptr,                  "$$$/Exif/CFARepeatPatternDim=CFA Repeat Pattern Dim"},
  {0x828E, kPlain,  "CFAPattern",                  kByte,    0, nullptr,                            nullptr,                  "$$$/Exif/CFAPattern=CFA Pattern"},
  {0x828F, kPlain,  "BatteryLevel",                kNone,    0, nullptr,                            nullptr,                  "$$$/Exif/BatteryLevel=Battery Level"},
  {0x829A, kPlain,  "ExposureTime",                kRatl,    1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/ExposureTime=Exposure Time"},
  {0x829D, kPlain,  "FNumber",                     kRatl,    1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/FNumber=F Number"},
  {0x83BB, kPlain,  "IptcNaa",                     kNone,    0, nullptr,                            &kLxIptcSpace,            "$$$/Exif/IptcNaa=IPTC NAA"},
  {0x8773, kPlain,  "InterColorProfile",           kUndef,   0, &kLxIccProfile,                     nullptr,                  "$$$/Exif/InterColorProfile=Inter Color Profile"},
  {0x8822, kPlain,  "ExposureProgram",             kShort,   1, &kLxExposureProgramNames,           nullptr,                  "$$$/Exif/ExposureProgram=Exposure Program"},
  {0x8824, kPlain,  "SpectralSensitivity",         kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/SpectralSensitivity=Spectral Sensitivity"},

  {0x8825, kHidden, "GPSInfoIFD",                  kOffset,  1, nullptr,                            &kLxGpsSpace,             "$$$/Exif/GPSInfoIFD=GPS Info IFD"},
  {0x8827, kPlain,  "ISOSpeedRatings",             kShort,   0, nullptr,                            nullptr,                  "$$$/Exif/ISOSpeedRatings=ISO Speed Ratings"},
  {0x8828, kPlain,  "OECF",                        kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/OECF=OECF"},
  {0x8829, kPlain,  "Interlace",                   kShort,   1, nullptr,                            nullptr,                  "$$$/Exif/Interlace=Interlace"},
  {0x882A, kPlain,  "TimeZoneOffset",              kSShort, -2, nullptr,                            nullptr,                  "$$$/Exif/TimeZoneOffset=Time Zone Offset"},
  {0x882B, kPlain,  "SelfTimerMode",               kShort,   1, nullptr,                            nullptr,                  "$$$/Exif/SelfTimerMode=Self Timer Mode"},

  {0x9003, kPlain,  "DateTimeOriginal",            kAscii,  20, nullptr,                            nullptr,                  "$$$/Exif/DateTimeOriginal=Date Time Original"},
  {0x9102, kPlain,  "CompressedBitsPerPixel",      kRatl,    1, nullptr,                            nullptr,                  "$$$/Exif/CompressedBitsPerPixel=Compressed Bits Per Pixel"},
  {0x9201, kPlain,  "ShutterSpeedValue",           kSRatl,   1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/ShutterSpeedValue=Shutter Speed Value"},
  {0x9202, kPlain,  "ApertureValue",               kRatl,    1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/ApertureValue=Aperture Value"},
  {0x9203, kPlain,  "BrightnessValue",             kSRatl,   1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/BrightnessValue=Brightness Value"},
  {0x9204, kPlain,  "ExposureBiasValue",           kSRatl,   1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/ExposureBiasValue=Exposure Bias Value"},
  {0x9205, kPlain,  "MaxApertureValue",            kRatl,    1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/MaxApertureValue=Max Aperture Value"},
  {0x9206, kPlain,  "SubjectDistance",             kRatl,    1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/SubjectDistance=Subject Distance"},
  {0x9207, kPlain,  "MeteringMode",                kShort,   1, &kLxMeteringModeNames,              nullptr,                  "$$$/Exif/MeteringMode=Metering Mode"},
  {0x9208, kPlain,  "LightSource",                 kShort,   1, &kLxLightSourceNames,               nullptr,                  "$$$/Exif/LightSource=Light Source"},
  {0x9209, kPlain,  "Flash",                       kShort,   1, &kLxFlashNames,                     nullptr,                  "$$$/Exif/Flash=Flash"},
  {0x920A, kPlain,  "FocalLength",                 kRatl,    1, &kLxPhotoQuantity,                  nullptr,                  "$$$/Exif/FocalLength=Focal Length"},
  {0x920B, kPlain,  "FlashEnergy",                 kRatl,    1, nullptr,                            nullptr,                  "$$$/Exif/FlashEnergy=Flash Energy"},
  {0x920C, kPlain,  "SpatialFrequencyResponse",    kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/SpatialFrequencyResponse=Spatial Frequency Response"},
  {0x920D, kPlain,  "Noise",                       kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/Noise=Noise"},
  {0x920E, kPlain,  "FocalPlaneXResolution",       kRatl,    1, nullptr,                            nullptr,                  "$$$/Exif/FocalPlaneXResolution=Focal Plane X Resolution"},
  {0x920F, kPlain,  "FocalPlaneYResolution",       kRatl,    1, nullptr,                            nullptr,                  "$$$/Exif/FocalPlaneYResolution=Focal Plane Y Resolution"},
  {0x9210, kPlain,  "FocalPlaneResolutionUnit",    kShort,   1, nullptr,                            nullptr,                  "$$$/Exif/FocalPlaneResolutionUnit=Focal Plane Resolution Unit"},

  {0x9211, kPlain,  "ImageNumber",                 kLong,    1, nullptr,                            nullptr,                  "$$$/Exif/ImageNumber=Image Number"},
  {0x9212, kPlain,  "SecurityClassification",      kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/SecurityClassification=Security Classification"},
  {0x9213, kPlain,  "ImageHistory",                kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/ImageHistory=Image History"},
  {0x9214, kPlain,  "SubjectArea",                 kShort,  -4, nullptr,                            nullptr,                  "$$$/Exif2/SubjectArea=Subject Area"},
  {0x9215, kPlain,  "ExposureIndex",               kRatl,    1, nullptr,                            nullptr,                  "$$$/Exif/ExposureIndex=Exposure Index"},
  {0x9216, kPlain,  "TIFFEPStandardID",            kByte,    4, nullptr,                            nullptr,                  "$$$/Exif/TIFFEPStandardID=TIFF/EP Standard ID"},
  {0x9217, kPlain,  "SensingMethod",               kShort,   1, nullptr,                            nullptr,                  "$$$/Exif/SensingMethod=Sensing Method"},

  // Film scanning
  {0xC350, kPlain,  "FilmProductCode",             kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/FilmProductCode=Film Product Code"},
  {0xC351, kPlain,  "ImageSource",                 kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/ImageSource=Image Source"},
  {0xC352, kPlain,  "IntendedPrintArea",           kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/IntendedPrintArea=Intended Print Area"},
  {0xC355, kPlain,  "GroupCaption",                kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/GroupCaption=Group Caption"},
  {0xC356, kPlain,  "DealerID",                    kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/DealerID=Dealer ID"},
  {0xC357, kPlain,  "OrderID",                     kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/OrderID=Order ID"},
  {0xC359, kPlain,  "ScanFram-SeqNum",             kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/ScanFramSeqNum=Scan Frame Sequence Number"},  // sic
  {0xC35A, kPlain,  "FilmCategory",                kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/FilmCategory=Film Category"},
  {0xC35B, kPlain,  "FilmgenCode",                 kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/FilmgenCode=Filmgen Code"},
  {0xC35C, kPlain,  "Scanner-Software",            kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/ScannerSoftware=Scanner Software"},  // sic
  {0xC35D, kPlain,  "FilmSize",                    kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/FilmSize=Film Size"},
  {0xC35E, kPlain,  "SBARGBShifts",                kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/SBARGBShifts=SBA RGB Shifts"},
  {0xC35F, kPlain,  "SBAinputColorSpace",          kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/SBAinputColorSpace=SBA Input Color Space"},  // sic
  {0xC360, kPlain,  "SBAInputChannelDepth",        kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/SBAInputChannelDepth=SBA Input Channel Depth"},
  {0xC361, kPlain,  "CompleteExposureRecord",      kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/CompleteExposureRecord=Complete Exposure Record"},
  {0xC362, kPlain,  "UserAdjSBARGBShifts",         kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/UserAdjSBARGBShifts=User Adj SBA RGB Shifts"},
  {0xC363, kPlain,  "ImageRotation-Status",        kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/ImageRotationStatus=Image Rotation Status"},  // sic
  {0xC364, kPlain,  "RollGUID",                    kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/RollGUID=Roll GUID"},
  {0xC365, kPlain,  "MetaDataVersion",             kAscii,   0, nullptr,                            nullptr,                  "$$$/Exif/MetaDataVersion=Metadata Version"},
  {0xC366, kPlain,  "EditTagArray",                kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/EditTagArray=Edit Tag Array"},

  // UTF-16, little-endian
  {0x9C9B, kPlain,  "XPTitle",                     kShort,   0, &kLxCommentText,                    nullptr,                  "$$$/Exif/XPTitle=XP Title"},
  {0x9C9C, kPlain,  "XPComment",                   kShort,   0, &kLxCommentText,                    nullptr,                  "$$$/Exif/XPComment=XP Comment"},
  {0x9C9D, kPlain,  "XPAuthor",                    kShort,   0, &kLxCommentText,                    nullptr,                  "$$$/Exif/XPAuthor=XP Author"},
  {0x9C9E, kPlain,  "XPKeywords",                  kShort,   0, &kLxCommentText,                    nullptr,                  "$$$/Exif/XPKeywords=XP Keywords"},
  {0x9C9F, kPlain,  "XPSubject",                   kShort,   0, &kLxCommentText,                    nullptr,                  "$$$/Exif/XPSubject=XP Subject"},

  // Embedded by other programs
  {0x02BC, kHidden, "XMPMetadata",                 kByte,    0, nullptr,                            &kLxXmpSpace,             "$$$/Exif/XMPMetadata=XMP Metadata"},
  {0x8649, kHidden, "PicturistMetadata",           kUndef,   0, nullptr,                            &kLxImageResourceSpace,   "$$$/Exif/PicturistMetadata=Picturist Metadata"},
  {0x935C, kHidden, "PicturistLayers",             kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/PicturistLayers=Picturist Layers"},
  {0xC44F, kHidden, "PicturistAnnotations",        kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/PicturistAnnotations=Picturist Annotations"},
  {0xA421, kPlain,  "ImageSourceIDs",              kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/ImageSourceIDs=Image Source IDs"},
  {0xC4A5, kPlain,  "PrintIM",                     kUndef,   0, nullptr,                            nullptr,                  "$$$/Exif/PrintIM=PrintIM"},
  kLxEndOfTags,
};
static_assert(std::size(kLxTiffTags) == 148 + 1 && IsDictionary(kLxTiffTags));
// clang-format on
