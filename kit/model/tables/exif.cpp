// The tags of the Exif directory (Exif 2.2, 4.6.5), and those that hold a raw converter's settings. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"
#include "kit/model/tables/value_names.h"

// clang-format off
constexpr LxTagRecord kLxExifTags[] = {
  //id     flags    name                          type      n  display                           leads to            label
  // Exif 2.1 and 2.2
  {0x829A, kPlain,  "ExposureTime",               kRatl,    1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/ExposureTime=Exposure Time"},
  {0x829D, kPlain,  "FNumber",                    kRatl,    1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/FNumber=F Number"},
  {0x8822, kPlain,  "ExposureProgram",            kShort,   1, &kLxExposureProgramNames,         nullptr,            "$$$/Exif/ExposureProgram=Exposure Program"},
  {0x8824, kPlain,  "SpectralSensitivity",        kAscii,   0, nullptr,                          nullptr,            "$$$/Exif/SpectralSensitivity=Spectral Sensitivity"},
  {0x8827, kPlain,  "ISOSpeedRatings",            kShort,   0, nullptr,                          nullptr,            "$$$/Exif/ISOSpeedRatings=ISO Speed Ratings"},
  {0x8828, kPlain,  "OECF",                       kUndef,   0, nullptr,                          nullptr,            "$$$/Exif/OECF=OECF"},

  {0x9000, kPlain,  "ExifVersion",                kUndef,   4, nullptr,                          nullptr,            "$$$/Exif/ExifVersion=EXIF Version"},
  {0x9003, kPlain,  "DateTimeOriginal",           kAscii,  20, nullptr,                          nullptr,            "$$$/Exif/DateTimeOriginal=Date Time Original"},
  {0x9004, kPlain,  "DateTimeDigitized",          kAscii,  20, nullptr,                          nullptr,            "$$$/Exif/DateTimeDigitized=Date Time Digitized"},
  {0x9101, kPlain,  "ComponentsConfiguration",    kUndef,   4, &kLxComponentsConfigurationNames, nullptr,            "$$$/Exif/ComponentsConfiguration=Components Configuration"},
  {0x9102, kPlain,  "CompressedBitsPerPixel",     kRatl,    1, nullptr,                          nullptr,            "$$$/Exif/CompressedBitsPerPixel=Compressed Bits Per Pixel"},

  {0x9201, kPlain,  "ShutterSpeedValue",          kSRatl,   1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/ShutterSpeedValue=Shutter Speed Value"},
  {0x9202, kPlain,  "ApertureValue",              kRatl,    1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/ApertureValue=Aperture Value"},
  {0x9203, kPlain,  "BrightnessValue",            kSRatl,   1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/BrightnessValue=Brightness Value"},
  {0x9204, kPlain,  "ExposureBiasValue",          kSRatl,   1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/ExposureBiasValue=Exposure Bias Value"},
  {0x9205, kPlain,  "MaxApertureValue",           kRatl,    1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/MaxApertureValue=Max Aperture Value"},
  {0x9206, kPlain,  "SubjectDistance",            kRatl,    1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/SubjectDistance=Subject Distance"},
  {0x9207, kPlain,  "MeteringMode",               kShort,   1, &kLxMeteringModeNames,            nullptr,            "$$$/Exif/MeteringMode=Metering Mode"},
  {0x9208, kPlain,  "LightSource",                kShort,   1, &kLxLightSourceNames,             nullptr,            "$$$/Exif/LightSource=Light Source"},
  {0x9209, kPlain,  "Flash",                      kShort,   1, &kLxFlashNames,                   nullptr,            "$$$/Exif/Flash=Flash"},
  {0x920A, kPlain,  "FocalLength",                kRatl,    1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif/FocalLength=Focal Length"},

  {0xA20B, kPlain,  "FlashEnergy",                kRatl,    1, nullptr,                          nullptr,            "$$$/Exif/FlashEnergy=Flash Energy"},
  {0xA20C, kPlain,  "SpatialFrequencyResponse",   kUndef,   0, nullptr,                          nullptr,            "$$$/Exif/SpatialFrequencyResponse=Spatial Frequency Response"},
  {0xA20E, kPlain,  "FocalPlaneXResolution",      kRatl,    1, nullptr,                          nullptr,            "$$$/Exif/FocalPlaneXResolution=Focal Plane X Resolution"},
  {0xA20F, kPlain,  "FocalPlaneYResolution",      kRatl,    1, nullptr,                          nullptr,            "$$$/Exif/FocalPlaneYResolution=Focal Plane Y Resolution"},
  {0xA210, kPlain,  "FocalPlaneResolutionUnit",   kShort,   1, &kLxResolutionUnitNames,          nullptr,            "$$$/Exif/FocalPlaneResolutionUnit=Focal Plane Resolution Unit"},
  {0xA214, kPlain,  "SubjectLocation",            kShort,   2, nullptr,                          nullptr,            "$$$/Exif/SubjectLocation=Subject Location"},
  {0xA215, kPlain,  "ExposureIndex",              kRatl,    1, nullptr,                          nullptr,            "$$$/Exif/ExposureIndex=Exposure Index"},
  {0xA217, kPlain,  "SensingMethod",              kShort,   1, &kLxSensingMethodNames,           nullptr,            "$$$/Exif/SensingMethod=Sensing Method"},

  {0x927C, kHidden, "MakerNote",                  kUndef,   0, nullptr,                          &kLxMakerNoteSpace, "$$$/Exif/MakerNote=Maker Note"},
  {0x9286, kPlain,  "UserComment",                kUndef,   0, &kLxCommentText,                  nullptr,            "$$$/Exif/UserComment=User Comment"},
  {0x9290, kPlain,  "SubSecTime",                 kAscii,   0, nullptr,                          nullptr,            "$$$/Exif/SubSecTime=Sub Sec Time"},
  {0x9291, kPlain,  "SubSecTimeOriginal",         kAscii,   0, nullptr,                          nullptr,            "$$$/Exif/SubSecTimeOriginal=Sub Sec Time Original"},
  {0x9292, kPlain,  "SubSecTimeDigitized",        kAscii,   0, nullptr,                          nullptr,            "$$$/Exif/SubSecTimeDigitized=Sub Sec Time Digitized"},

  {0xA000, kPlain,  "FlashPixVersion",            kUndef,   4, nullptr,                          nullptr,            "$$$/Exif/FlashPixVersion=FlashPix Version"},
  {0xA001, kPlain,  "ColorSpace",                 kShort,   1, &kLxColorSpaceNames,              nullptr,            "$$$/Exif/ColorSpace=Color Space"},
  {0xA002, kPlain,  "PixelXDimension",            kLong,    1, nullptr,                          nullptr,            "$$$/Exif/PixelXDimension=Pixel X Dimension"},
  {0xA003, kPlain,  "PixelYDimension",            kLong,    1, nullptr,                          nullptr,            "$$$/Exif/PixelYDimension=Pixel Y Dimension"},
  {0xA004, kPlain,  "RelatedSoundFile",           kAscii,  13, nullptr,                          nullptr,            "$$$/Exif/RelatedSoundFile=Related Sound File"},
  {0xA005, kHidden, "InteroperabilityIFDPointer", kOffset,  1, nullptr,                          &kLxInteropSpace,   "$$$/EXIF/InteroperabilityIFDPointer=Interoperability IFD Pointer"},  // sic: "EXIF"

  {0xA300, kPlain,  "FileSource",                 kUndef,   1, &kLxFileSourceNames,              nullptr,            "$$$/Exif/FileSource=File Source"},
  {0xA301, kPlain,  "SceneType",                  kUndef,   1, &kLxSceneTypeNames,               nullptr,            "$$$/Exif/SceneType=Scene Type"},
  {0xA302, kPlain,  "CFAPattern",                 kUndef,   0, nullptr,                          nullptr,            "$$$/Exif/CFAPattern=CFA Pattern"},

  // New in Exif 2.2
  {0xA401, kPlain,  "CustomRendered",             kShort,   1, &kLxCustomRenderedNames,          nullptr,            "$$$/Exif2/CustomRendered=Custom Rendered"},
  {0xA402, kPlain,  "ExposureMode",               kShort,   1, &kLxExposureModeNames,            nullptr,            "$$$/Exif2/ExposureMode=Exposure Mode"},
  {0xA403, kPlain,  "WhiteBalance",               kShort,   1, &kLxWhiteBalanceNames,            nullptr,            "$$$/Exif2/WhiteBalance=White Balance"},
  {0xA404, kPlain,  "DigitalZoomRatio",           kRatl,    1, nullptr,                          nullptr,            "$$$/Exif2/DigitalZoomRatio=Digital Zoom Ratio"},
  {0xA405, kPlain,  "FocalLengthIn35mmFilm",      kShort,   1, &kLxPhotoQuantity,                nullptr,            "$$$/Exif2/FocalLengthIn35mmFilm=Focal Length In 35mm Film"},
  {0xA406, kPlain,  "SceneCaptureType",           kShort,   1, &kLxSceneCaptureTypeNames,        nullptr,            "$$$/Exif2/SceneCaptureType=Scene Capture Type"},
  {0xA407, kPlain,  "GainControl",                kShort,   1, &kLxGainControlNames,             nullptr,            "$$$/Exif2/GainControl=Gain Control"},
  {0xA408, kPlain,  "Contrast",                   kShort,   1, &kLxContrastNames,                nullptr,            "$$$/Exif2/Contrast=Contrast"},
  {0xA409, kPlain,  "Saturation",                 kShort,   1, &kLxSaturationNames,              nullptr,            "$$$/Exif2/Saturation=Saturation"},
  {0xA40A, kPlain,  "Sharpness",                  kShort,   1, &kLxSharpnessNames,               nullptr,            "$$$/Exif2/Sharpness=Sharpness"},
  {0xA40B, kPlain,  "DeviceSettingDescription",   kUndef,   0, nullptr,                          nullptr,            "$$$/Exif2/DeviceSettingDescription=Device Setting Description"},
  {0xA40C, kPlain,  "SubjectDistanceRange",       kShort,   1, &kLxSubjectDistanceRangeNames,    nullptr,            "$$$/Exif2/SubjectDistanceRange=Subject Distance Range"},
  {0xA420, kPlain,  "ImageUniqueID",              kAscii,  33, nullptr,                          nullptr,            "$$$/Exif2/ImageUniqueID=Image Unique ID"},

  // New in Exif 2.21
  {0xA500, kPlain,  "Gamma",                      kRatl,    1, nullptr,                          nullptr,            "$$$/Exif21/Gamma=Gamma"},

  // Settings of a raw converter, as texts of label and value
  {0xFDE8, kPlain,  "RFOwnerName",                kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/OwnerName=RF Owner Name"},
  {0xFDE9, kPlain,  "RFSerialNumber",             kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/SerialNumber=RF Serial Number"},
  {0xFDEA, kPlain,  "RFLens",                     kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Lens=RF Lens"},
  {0xFE4C, kPlain,  "RFRawFileName",              kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/RawFileName=RF Raw File Name"},
  {0xFE4D, kPlain,  "RFConverter",                kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Converter=RF Converter"},
  {0xFE4E, kPlain,  "RFWhiteBalance",             kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/WhiteBalance=RF White Balance"},
  {0xFE4F, kPlain,  "RFTemperature",              kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Temperature=RF Temperature"},
  {0xFE50, kPlain,  "RFTint",                     kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Tint=RF Tint"},
  {0xFE51, kPlain,  "RFExposure",                 kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Exposure=RF Exposure"},
  {0xFE52, kPlain,  "RFShadows",                  kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Shadows=RF Shadows"},
  {0xFE53, kPlain,  "RFBrightness",               kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Brightness=RF Brightness"},
  {0xFE54, kPlain,  "RFContrast",                 kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Contrast=RF Contrast"},
  {0xFE55, kPlain,  "RFSaturation",               kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Saturation=RF Saturation"},
  {0xFE56, kPlain,  "RFSharpness",                kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Sharpness=RF Sharpness"},
  {0xFE57, kPlain,  "RFSmoothness",               kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/Smoothness=RF Smoothness"},
  {0xFE58, kPlain,  "RFMoireFilter",              kAscii,   0, nullptr,                          nullptr,            "$$$/Rawforge/MoireFilter=RF Moire Filter"},
  kLxEndOfTags,
};
static_assert(std::size(kLxExifTags) == 73 + 1 && IsDictionary(kLxExifTags));
// clang-format on
