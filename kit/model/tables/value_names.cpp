// How tagged values become display texts: the named values of TIFF and Exif tags, and the descriptors of all formats.
// Data only. The first entry of a value names it.
#include "kit/model/tables/value_names.h"

#include "kit/model/tables/table_row.h"

namespace {

// clang-format off
// TIFF 6.0, TIFF/EP.
constexpr LxValueName kPhotometricInterpretation[] = {
  {    1, "BlackIsZero",       "$$$/Exif/PhotometricInterpretation/BlackIsZero=Black Is Zero"},
  {    2, "RGB",               "$$$/Exif/PhotometricInterpretation/RGB=RGB"},
  {    3, "RGB Palette",       "$$$/Exif/PhotometricInterpretation/RGBPalette=RGB Palette"},
  {    4, "Transparency mask", "$$$/Exif/PhotometricInterpretation/Transparencymask=Transparency Mask"},
  {    5, "CMYK",              "$$$/Exif/PhotometricInterpretation/CMYK=CMYK"},
  {    6, "YCbCr",             "$$$/Exif/PhotometricInterpretation/YCbCr=YCbCr"},
  {    8, "CIELab",            "$$$/Exif/PhotometricInterpretation/CIELab=CIE Lab"},
  {    9, "ICCLab",            "$$$/Exif/PhotometricInterpretation/ICCLab=ICC Lab"},
  {32803, "CFA",               "$$$/Exif/PhotometricInterpretation/CFA=CFA"},
  {    0, "WhiteIsZero",       "$$$/Exif/PhotometricInterpretation/WhiteIsZero=White Is Zero"},
  kEndOfNames,
};

constexpr LxValueName kCompression[] = {
  {    1, "Uncompressed", "$$$/Exif2/Compression/Uncompressed=Uncompressed"},
  {    2, "CCITT1D",      "$$$/Exif2/Compression/CCITT1D=CCITT 1D"},
  {    3, "CCITTG3Fax",   "$$$/Exif2/Compression/CCITTG3Fax=CCITT Group 3 Fax"},
  {    4, "CCITTG4Fax",   "$$$/Exif2/Compression/CCITTG4Fax=CCITT Group 4 Fax"},
  {    5, "LZW",          "$$$/Exif2/Compression/LZW=LZW"},
  {    6, "JPEG",         "$$$/Exif2/Compression/JPEG=JPEG"},
  {    7, "TIFFJPEG",     "$$$/Exif2/Compression/TIFFJPEG=TIFF-EP JPEG"},
  {32773, "PackBits",     "$$$/Exif2/Compression/PackBits=PackBits"},
  kEndOfNames,
};

constexpr LxValueName kResolutionUnit[] = {
  {1, "No absolute unit", "$$$/Exif/ResolutionUnit1=No Absolute Unit"},
  {2, "Inch",             "$$$/Exif/ResolutionUnit2=Inch"},
  {3, "Centimeter",       "$$$/Exif/ResolutionUnit3=Centimeter"},
  kEndOfNames,
};

constexpr LxValueName kFillOrder[] = {
  {1, "higher-order first", "$$$/Exif/FillOrder1=Higher-Order First"},
  {2, "lower-order first",  "$$$/Exif/FillOrder2=Lower-Order First"},
  kEndOfNames,
};

// The value itself is the name; the key tells where row 0 and column 0 are seen.
constexpr LxValueName kOrientation[] = {
  {1, "1", "$$$/Exif/Orientation/topLeft=Normal"},
  {2, "2", "$$$/Exif/Orientation/topRight=Flip Horizontal"},
  {3, "3", "$$$/Exif/Orientation/bottomRight=Rotate 180"},
  {4, "4", "$$$/Exif/Orientation/bottomLeft=Flip Vertical"},
  {5, "5", "$$$/Exif/Orientation/leftTop=Flip Horizontal, Rotate 270"},
  {6, "6", "$$$/Exif/Orientation/rightTop=Rotate 90"},
  {7, "7", "$$$/Exif/Orientation/rightBottom=Flip Horizontal, Rotate 90"},
  {8, "8", "$$$/Exif/Orientation/leftBottom=Rotate 270"},
  kEndOfNames,
};

constexpr LxValueName kPlanarConfiguration[] = {
  {1, "Chunky", "$$$/LE/Exif/Chunky=Chunky"},
  {2, "Planar", "$$$/LE/Exif/Planar=Planar"},
  kEndOfNames,
};

constexpr LxValueName kYCbCrPositioning[] = {
  {1, "centered", "$$$/LE/Exif/centered=Centered"},
  {2, "cosited",  "$$$/LE/Exif/cosited=Cosited"},
  kEndOfNames,
};

// One byte per component, read element by element; single components have no label.
constexpr LxValueName kComponentsConfiguration[] = {
  {1, "Y",  nullptr},
  {2, "Cb", nullptr},
  {3, "Cr", nullptr},
  {4, "R",  nullptr},
  {5, "G",  nullptr},
  {6, "B",  nullptr},
  {0, " ",  nullptr},
  kEndOfNames,
};

// Exif 2.2, 4.6.5. The spelling of the names stays: other programs compare these display texts.
constexpr LxValueName kMeteringMode[] = {
  {  0, "unknown",               "$$$/Exif/MeteringMode0=Unknown"},
  {  1, "Average",               "$$$/Exif/MeteringMode1=Average"},
  {  2, "CenterWeightedAverage", "$$$/Exif/MeteringMode2=Center Weighted Average"},
  {  3, "Spot",                  "$$$/Exif/MeteringMode3=Spot"},
  {  4, "MultiSpot",             "$$$/Exif/MeteringMode4=Multi Spot"},
  {  5, "Pattern",               "$$$/Exif/MeteringMode5=Pattern"},
  {  6, "Partial",               "$$$/Exif/MeteringMode6=Partial"},
  {255, "other",                 "$$$/Exif/MeteringMode255=Other"},
  kEndOfNames,
};

constexpr LxValueName kLightSource[] = {
  {  0, "unknown",              "$$$/Exif/LightSource0=Unknown"},
  {  1, "Daylight",             "$$$/Exif/LightSource1=Daylight"},
  {  2, "Fluorescent",          "$$$/Exif/LightSource2=Fluorescent"},
  {  3, "Tungsten",             "$$$/Exif/LightSource3=Tungsten"},
  {  4, "Flash",                "$$$/Exif/LightSource4=Flash"},
  {  9, "FineWeather",          "$$$/Exif/LightSource9=Fine Weather"},
  { 10, "CloudyWeather",        "$$$/Exif/LightSource10=Cloudy Weather"},
  { 11, "Shade",                "$$$/Exif/LightSource11=Shade"},
  { 12, "DaylightFlourescent",  "$$$/Exif/LightSource12=Daylight Fluorescent"},  // sic
  { 13, "DayWhiteFlourescent",  "$$$/Exif/LightSource13=Day White Fluorescent"},  // sic
  { 14, "CoolWhiteFlourescent", "$$$/Exif/LightSource14=Cool White Fluorescent"},  // sic
  { 15, "WhiteFlourescent",     "$$$/Exif/LightSource15=White Fluorescent"},  // sic
  { 17, "StandardLightA",       "$$$/Exif/LightSource17=Standard Light A"},
  { 18, "StandardLightB",       "$$$/Exif/LightSource18=Standard Light B"},
  { 19, "StandardLightC",       "$$$/Exif/LightSource19=Standard Light C"},
  { 20, "D55",                  "$$$/Exif/LightSource20=D55"},
  { 21, "D65",                  "$$$/Exif/LightSource21=D65"},
  { 22, "D75",                  "$$$/Exif/LightSource22=D75"},
  { 23, "D50",                  "$$$/Exif/LightSource23=D50"},
  { 24, "ISOStudioTungsten",    "$$$/Exif/LightSource24=ISO Studio Tungsten"},
  {255, "other",                "$$$/Exif/LightSource255=Other"},
  kEndOfNames,
};

constexpr LxValueName kFlash[] = {
  { 0, "Did not fire",                                                   "$$$/Exif2/Flash0=Did not fire"},
  { 1, "Fired",                                                          "$$$/Exif2/Flash1=Fired"},
  { 5, "Fired, return light not detected",                               "$$$/Exif2/Flash5=Fired, return light not detected"},
  { 7, "Fired, return light detected",                                   "$$$/Exif2/Flash7=Fired, return light detected"},
  { 9, "Fired, compulsory",                                              "$$$/Exif2/Flash9=Fired, compulsory"},
  {13, "Fired, compulsory, return light not detected",                   "$$$/Exif2/Flash13=Fired, compulsory, return light not detected"},
  {15, "Fired, compulsory, return light detected",                       "$$$/Exif2/Flash15=Fired, compulsory, return light detected"},
  {16, "Did not fire, suppressed",                                       "$$$/Exif2/Flash16=Did not fire, suppressed"},
  {24, "Did not fire, auto",                                             "$$$/Exif2/Flash24=Did not fire, auto"},
  {25, "Fired, auto",                                                    "$$$/Exif2/Flash25=Fired, auto"},
  {29, "Fired, auto, return light not detected",                         "$$$/Exif2/Flash29=Fired, auto, return light not detected"},
  {31, "Fired, auto, return light detected",                             "$$$/Exif2/Flash31=Fired, auto, return light detected"},
  {32, "No flash function",                                              "$$$/Exif2/Flash32=No flash function"},
  {65, "Fired, red-eye reduction",                                       "$$$/Exif2/Flash65=Fired, red-eye reduction"},
  {69, "Fired, red-eye reduction, return light not detected",            "$$$/Exif2/Flash69=Fired, red-eye reduction, return light not detected"},
  {71, "Fired, red-eye reduction, return light detected",                "$$$/Exif2/Flash71=Fired, red-eye reduction, return light detected"},
  {73, "Fired, compulsory red-eye reduction",                            "$$$/Exif2/Flash73=Fired, compulsory red-eye reduction"},
  {77, "Fired, compulsory red-eye reduction, return light not detected", "$$$/Exif2/Flash77=Fired, compulsory red-eye reduction, return light not detected"},
  {79, "Fired, compulsory red-eye reduction, return light detected",     "$$$/Exif2/Flash79=Fired, compulsory red-eye reduction, return light detected"},
  {80, "Did not fire, suppressed",                                       "$$$/Exif2/Flash80=Did not fire, suppressed"},
  {88, "Did not fire, auto",                                             "$$$/Exif2/Flash88=Did not fire, auto"},
  {89, "Fired, auto red-eye reduction",                                  "$$$/Exif2/Flash89=Fired, auto red-eye reduction"},
  {93, "Fired, auto red-eye reduction, return light not detected",       "$$$/Exif2/Flash93=Fired, auto red-eye reduction, return light not detected"},
  {95, "Fired, auto red-eye reduction, return light detected",           "$$$/Exif2/Flash95=Fired, auto red-eye reduction, return light detected"},
  kEndOfNames,
};

constexpr LxValueName kExposureProgram[] = {
  {0, "NotDefined",        "$$$/Exif/ExposureProgram0=Not Defined"},
  {1, "Manual",            "$$$/Exif/ExposureProgram1=Manual"},
  {2, "Normal",            "$$$/Exif/ExposureProgram2=Normal"},
  {3, "Aperture priority", "$$$/Exif/ExposureProgram3=Aperture Priority"},
  {4, "Shutter priority",  "$$$/Exif/ExposureProgram4=Shutter Priority"},
  {5, "Creative",          "$$$/Exif/ExposureProgram5=Creative"},
  {6, "Action",            "$$$/Exif/ExposureProgram6=Action"},
  {7, "Portrait",          "$$$/Exif/ExposureProgram7=Portrait"},
  {8, "Landscape",         "$$$/Exif/ExposureProgram8=Landscape"},
  kEndOfNames,
};

constexpr LxValueName kColorSpace[] = {
  {    1, "sRGB",         "$$$/Exif/ColorSpacesRGB=sRGB"},
  {65535, "Uncalibrated", "$$$/Exif/ColorSpaceUncalibrated=Uncalibrated"},
  kEndOfNames,
};

constexpr LxValueName kSensingMethod[] = {
  {1, "Not defined",                    "$$$/Exif/SensingMethod1=Not defined"},
  {2, "One-chip color area sensor",     "$$$/Exif/SensingMethod2=One-chip color area sensor"},
  {3, "Two-chip color area sensor",     "$$$/Exif/SensingMethod3=Two-chip color area sensor"},
  {4, "Three-chip color area sensor",   "$$$/Exif/SensingMethod4=Three-chip color area sensor"},
  {5, "Color sequential area sensor",   "$$$/Exif/SensingMethod5=Color sequential area sensor"},
  {7, "Trilinear sensor",               "$$$/Exif/SensingMethod7=Trilinear sensor"},
  {8, "Color sequential linear sensor", "$$$/Exif/SensingMethod8=Color sequential linear sensor"},
  kEndOfNames,
};

constexpr LxValueName kFileSource[] = {
  {0, "Others",             "$$$/Exif/FileSource0=Others"},
  {1, "ScannerTransparent", "$$$/Exif/FileSource1=Scanner Transparent"},
  {2, "ScannerReflex",      "$$$/Exif/FileSource2=Scanner Reflex"},
  {3, "DSC",                "$$$/Exif/FileSource3=DSC"},
  kEndOfNames,
};

constexpr LxValueName kSceneType[] = {
  {1, "DirectlyPhotographed", "$$$/Exif/SceneType1=Directly Photographed"},
  kEndOfNames,
};

// New in Exif 2.2.
constexpr LxValueName kCustomRendered[] = {
  {0, "NormalProcess", "$$$/Exif2/CustomRendered0=Normal Process"},
  {1, "CustomProcess", "$$$/Exif2/CustomRendered1=Custom Process"},
  kEndOfNames,
};

constexpr LxValueName kExposureMode[] = {
  {0, "AutoExposure",   "$$$/Exif2/ExposureMode0=Auto Exposure"},
  {1, "ManualExposure", "$$$/Exif2/ExposureMode1=Manual Exposure"},
  {2, "AutoBracket",    "$$$/Exif2/ExposureMode2=Auto Bracket"},
  kEndOfNames,
};

constexpr LxValueName kWhiteBalance[] = {
  {0, "Auto",   "$$$/Exif2/WhiteBalance0=Auto"},
  {1, "Manual", "$$$/Exif2/WhiteBalance1=Manual"},
  kEndOfNames,
};

constexpr LxValueName kSceneCaptureType[] = {
  {0, "Standard",   "$$$/Exif2/SceneCaptureType0=Standard"},
  {1, "Landscape",  "$$$/Exif2/SceneCaptureType1=Landscape"},
  {2, "Portrait",   "$$$/Exif2/SceneCaptureType2=Portrait"},
  {3, "NightScene", "$$$/Exif2/SceneCaptureType3=Night Scene"},
  kEndOfNames,
};

constexpr LxValueName kGainControl[] = {
  {0, "None",         "$$$/Exif2/GainControl0=None"},
  {1, "LowGainUp",    "$$$/Exif2/GainControl1=Low Gain Up"},
  {2, "HighGainUp",   "$$$/Exif2/GainControl2=High Gain Up"},
  {3, "LowGainDown",  "$$$/Exif2/GainControl3=Low Gain Down"},
  {4, "HighGainDown", "$$$/Exif2/GainControl4=High Gain Down"},
  kEndOfNames,
};

constexpr LxValueName kContrast[] = {
  {0, "Normal", "$$$/Exif2/Contrast0=Normal"},
  {1, "Soft",   "$$$/Exif2/Contrast1=Soft"},
  {2, "Hard",   "$$$/Exif2/Contrast2=Hard"},
  kEndOfNames,
};

constexpr LxValueName kSaturation[] = {
  {0, "Normal", "$$$/Exif2/Saturation0=Normal"},
  {1, "Low",    "$$$/Exif2/Saturation1=Low"},
  {2, "High",   "$$$/Exif2/Saturation2=High"},
  kEndOfNames,
};

constexpr LxValueName kSharpness[] = {
  {0, "Normal", "$$$/Exif2/Sharpness0=Normal"},
  {1, "Soft",   "$$$/Exif2/Sharpness1=Soft"},
  {2, "Hard",   "$$$/Exif2/Sharpness2=Hard"},
  kEndOfNames,
};

constexpr LxValueName kSubjectDistanceRange[] = {
  {0, "unknown",     "$$$/Exif2/SubjectDistanceRange0=Unknown"},
  {1, "Macro",       "$$$/Exif2/SubjectDistanceRange1=Macro"},
  {2, "CloseView",   "$$$/Exif2/SubjectDistanceRange2=Close View"},
  {3, "DistantView", "$$$/Exif2/SubjectDistanceRange3=Distant View"},
  kEndOfNames,
};

constexpr LxValueName kGpsDifferential[] = {
  {0, "Without", "$$$/Exif2/GPSDifferential0=Without Correction"},
  {1, "With",    "$$$/Exif2/GPSDifferential1=With Correction"},
  kEndOfNames,
};

static_assert(EndsOnlyAtLast(kPhotometricInterpretation) && EndsOnlyAtLast(kCompression) &&
              EndsOnlyAtLast(kResolutionUnit) && EndsOnlyAtLast(kFillOrder) && EndsOnlyAtLast(kOrientation) &&
              EndsOnlyAtLast(kPlanarConfiguration) && EndsOnlyAtLast(kYCbCrPositioning) &&
              EndsOnlyAtLast(kComponentsConfiguration) && EndsOnlyAtLast(kMeteringMode) &&
              EndsOnlyAtLast(kLightSource) && EndsOnlyAtLast(kFlash) && EndsOnlyAtLast(kExposureProgram) &&
              EndsOnlyAtLast(kColorSpace) && EndsOnlyAtLast(kSensingMethod) && EndsOnlyAtLast(kFileSource) &&
              EndsOnlyAtLast(kSceneType) && EndsOnlyAtLast(kCustomRendered) && EndsOnlyAtLast(kExposureMode) &&
              EndsOnlyAtLast(kWhiteBalance) && EndsOnlyAtLast(kSceneCaptureType) && EndsOnlyAtLast(kGainControl) &&
              EndsOnlyAtLast(kContrast) && EndsOnlyAtLast(kSaturation) && EndsOnlyAtLast(kSharpness) &&
              EndsOnlyAtLast(kSubjectDistanceRange) && EndsOnlyAtLast(kGpsDifferential));

}  // namespace

constexpr LxDisplayDescriptor kLxPhotometricInterpretationNames = {kLxFormatValueNames, kPhotometricInterpretation};
constexpr LxDisplayDescriptor kLxCompressionNames               = {kLxFormatValueNames, kCompression};
constexpr LxDisplayDescriptor kLxResolutionUnitNames            = {kLxFormatValueNames, kResolutionUnit};
constexpr LxDisplayDescriptor kLxFillOrderNames                 = {kLxFormatValueNames, kFillOrder};
constexpr LxDisplayDescriptor kLxOrientationNames               = {kLxFormatValueNames, kOrientation};
constexpr LxDisplayDescriptor kLxPlanarConfigurationNames       = {kLxFormatValueNames, kPlanarConfiguration};
constexpr LxDisplayDescriptor kLxYCbCrPositioningNames          = {kLxFormatValueNames, kYCbCrPositioning};
constexpr LxDisplayDescriptor kLxComponentsConfigurationNames   = {kLxFormatValueNames, kComponentsConfiguration};
constexpr LxDisplayDescriptor kLxMeteringModeNames              = {kLxFormatValueNames, kMeteringMode};
constexpr LxDisplayDescriptor kLxLightSourceNames               = {kLxFormatValueNames, kLightSource};
constexpr LxDisplayDescriptor kLxFlashNames                     = {kLxFormatValueNames, kFlash};
constexpr LxDisplayDescriptor kLxExposureProgramNames           = {kLxFormatValueNames, kExposureProgram};
constexpr LxDisplayDescriptor kLxColorSpaceNames                = {kLxFormatValueNames, kColorSpace};
constexpr LxDisplayDescriptor kLxSensingMethodNames             = {kLxFormatValueNames, kSensingMethod};
constexpr LxDisplayDescriptor kLxFileSourceNames                = {kLxFormatValueNames, kFileSource};
constexpr LxDisplayDescriptor kLxSceneTypeNames                 = {kLxFormatValueNames, kSceneType};
constexpr LxDisplayDescriptor kLxCustomRenderedNames            = {kLxFormatValueNames, kCustomRendered};
constexpr LxDisplayDescriptor kLxExposureModeNames              = {kLxFormatValueNames, kExposureMode};
constexpr LxDisplayDescriptor kLxWhiteBalanceNames              = {kLxFormatValueNames, kWhiteBalance};
constexpr LxDisplayDescriptor kLxSceneCaptureTypeNames          = {kLxFormatValueNames, kSceneCaptureType};
constexpr LxDisplayDescriptor kLxGainControlNames               = {kLxFormatValueNames, kGainControl};
constexpr LxDisplayDescriptor kLxContrastNames                  = {kLxFormatValueNames, kContrast};
constexpr LxDisplayDescriptor kLxSaturationNames                = {kLxFormatValueNames, kSaturation};
constexpr LxDisplayDescriptor kLxSharpnessNames                 = {kLxFormatValueNames, kSharpness};
constexpr LxDisplayDescriptor kLxSubjectDistanceRangeNames      = {kLxFormatValueNames, kSubjectDistanceRange};
constexpr LxDisplayDescriptor kLxGpsDifferentialNames           = {kLxFormatValueNames, kGpsDifferential};

constexpr LxDisplayDescriptor kLxPhotoQuantity                  = {kLxFormatPhotoQuantity, nullptr};
constexpr LxDisplayDescriptor kLxGpsQuantity                    = {kLxFormatGpsQuantity, nullptr};
constexpr LxDisplayDescriptor kLxIccProfile                     = {kLxFormatIccProfile, nullptr};
constexpr LxDisplayDescriptor kLxVersionInfo                    = {kLxFormatVersionInfo, nullptr};
constexpr LxDisplayDescriptor kLxJpegQuality                    = {kLxFormatJpegQuality, nullptr};
constexpr LxDisplayDescriptor kLxCommentText                    = {kLxFormatComment, nullptr};
constexpr LxDisplayDescriptor kLxMakerSpecial                   = {kLxFormatMakerSpecial, nullptr};
constexpr LxDisplayDescriptor kLxGenericText                    = {kLxFormatGeneric8, nullptr};
// clang-format on
