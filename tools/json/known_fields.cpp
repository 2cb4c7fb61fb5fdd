// The table of known properties.
#include "tools/json/known_fields.h"

#include <algorithm>
#include <array>

namespace lxbridge::json {

namespace {

using enum FieldType;

// clang-format off
constexpr KnownField kFields[] = {
    // field                                 type         block   tag     item                         example
    // IFD0 (TIFF 6.0)
    {"tiff:ImageWidth",                       kInteger,    "tiff", 0x0100, "ImageWidth",                "4000"},
    {"tiff:ImageLength",                      kInteger,    "tiff", 0x0101, "ImageLength",               "3000"},
    {"tiff:BitsPerSample",                    kIntegers,   "tiff", 0x0102, "BitsPerSample",             "seq[8, 8, 8]"},
    {"tiff:Compression",                      kInteger,    "tiff", 0x0103, "Compression",               "1"},
    {"tiff:PhotometricInterpretation",        kInteger,    "tiff", 0x0106, "PhotometricInterpretation", "1"},
    {"tiff:ImageDescription",                 kLanguages,  "tiff", 0x010E, "ImageDescription",          "alt[x-default: The harbour at dusk]"},
    {"tiff:Make",                             kText,       "tiff", 0x010F, "Make",                      "Example Cameras"},
    {"tiff:Model",                            kText,       "tiff", 0x0110, "Model",                     "Model One"},
    {"tiff:Orientation",                      kInteger,    "tiff", 0x0112, "Orientation",               "1"},
    {"tiff:SamplesPerPixel",                  kInteger,    "tiff", 0x0115, "SamplesPerPixel",           "1"},
    {"tiff:XResolution",                      kRational,   "tiff", 0x011A, "XResolution",               "300/1"},
    {"tiff:YResolution",                      kRational,   "tiff", 0x011B, "YResolution",               "300/1"},
    {"tiff:PlanarConfiguration",              kInteger,    "tiff", 0x011C, "PlanarConfiguration",       "1"},
    {"tiff:ResolutionUnit",                   kInteger,    "tiff", 0x0128, "ResolutionUnit",            "1"},
    {"tiff:TransferFunction",                 kIntegers,   "tiff", 0x012D, "TransferFunction",          "seq[0, 257, 514]"},
    {"tiff:Software",                         kText,       "tiff", 0x0131, "Software",                  "Firmware 1.1"},
    {"tiff:DateTime",                         kDate,       "tiff", 0x0132, "DateTime",                  "2024-06-21T18:30:05+02:00"},
    {"tiff:Artist",                           kText,       "tiff", 0x013B, "Artist",                    "Ada Example"},
    {"tiff:WhitePoint",                       kRationals,  "tiff", 0x013E, "WhitePoint",                "seq[313/1000, 329/1000]"},
    {"tiff:PrimaryChromaticities",            kRationals,  "tiff", 0x013F, "PrimaryChromaticities",     "seq[64/100, 33/100, 21/100, 71/100, 15/100, 6/100]"},
    {"tiff:YCbCrCoefficients",                kRationals,  "tiff", 0x0211, "YCbCrCoefficients",         "seq[299/1000, 587/1000, 114/1000]"},
    {"tiff:YCbCrSubSampling",                 kIntegers,   "tiff", 0x0212, "YCbCrSubSampling",          "seq[2, 1]"},
    {"tiff:YCbCrPositioning",                 kInteger,    "tiff", 0x0213, "YCbCrPositioning",          "1"},
    {"tiff:ReferenceBlackWhite",              kRationals,  "tiff", 0x0214, "ReferenceBlackWhite",       "seq[0/1, 255/1, 128/1, 255/1, 128/1, 255/1]"},
    {"tiff:Copyright",                        kLanguages,  "tiff", 0x8298, "Copyright",                 "alt[x-default: (c) 2024 Ada Example]"},

    // EXIF IFD (Exif 2.2, tables 4 and 5)
    {"exif:ExposureTime",                     kRational,   "exif", 0x829A, "ExposureTime",              "1/250"},
    {"exif:FNumber",                          kRational,   "exif", 0x829D, "FNumber",                   "56/10"},
    {"exif:ExposureProgram",                  kInteger,    "exif", 0x8822, "ExposureProgram",           "1"},
    {"exif:SpectralSensitivity",              kText,       "exif", 0x8824, "SpectralSensitivity",       "spectral"},
    {"exif:ISOSpeedRatings",                  kIntegers,   "exif", 0x8827, "ISOSpeedRatings",           "seq[200]"},
    {"exif:OECF",                             kStruct,     "exif", 0x8828, "OECF",                      "{exif:Columns=2, exif:Rows=1, exif:Names=seq[log, lin], exif:Values=seq[-1/3, 1/2]}"},
    {"exif:ExifVersion",                      kText,       "exif", 0x9000, "ExifVersion",               "0221"},
    {"exif:DateTimeOriginal",                 kDate,       "exif", 0x9003, "DateTimeOriginal",          "2024-06-21T18:30:05+02:00"},
    {"exif:DateTimeDigitized",                kDate,       "exif", 0x9004, "DateTimeDigitized",         "2024-06-21T18:30:05+02:00"},
    {"exif:ComponentsConfiguration",          kIntegers,   "exif", 0x9101, "ComponentsConfiguration",   "seq[1, 2, 3, 0]"},
    {"exif:CompressedBitsPerPixel",           kRational,   "exif", 0x9102, "CompressedBitsPerPixel",    "5/2"},
    {"exif:ShutterSpeedValue",                kRational,   "exif", 0x9201, "ShutterSpeedValue",         "-1/3"},
    {"exif:ApertureValue",                    kRational,   "exif", 0x9202, "ApertureValue",             "5/2"},
    {"exif:BrightnessValue",                  kRational,   "exif", 0x9203, "BrightnessValue",           "-1/3"},
    {"exif:ExposureBiasValue",                kRational,   "exif", 0x9204, "ExposureBiasValue",         "-1/3"},
    {"exif:MaxApertureValue",                 kRational,   "exif", 0x9205, "MaxApertureValue",          "5/2"},
    {"exif:SubjectDistance",                  kRational,   "exif", 0x9206, "SubjectDistance",           "5/2"},
    {"exif:MeteringMode",                     kInteger,    "exif", 0x9207, "MeteringMode",              "1"},
    {"exif:LightSource",                      kInteger,    "exif", 0x9208, "LightSource",               "1"},
    {"exif:Flash",                            kStruct,     "exif", 0x9209, "Flash",                     "{exif:Fired=True, exif:Return=0, exif:Mode=3, exif:Function=False, exif:RedEyeMode=False}"},
    {"exif:FocalLength",                      kRational,   "exif", 0x920A, "FocalLength",               "50/1"},
    {"exif:MakerNote",                        kText,       "exif", 0x927C, "MakerNote",                 "MAKER"},
    {"exif:UserComment",                      kLanguages,  "exif", 0x9286, "UserComment",               "alt[x-default: From the pier]"},
    {"exif:FlashPixVersion",                  kText,       "exif", 0xA000, "FlashPixVersion",           "0100"},
    {"exif:ColorSpace",                       kInteger,    "exif", 0xA001, "ColorSpace",                "1"},
    {"exif:PixelXDimension",                  kInteger,    "exif", 0xA002, "PixelXDimension",           "1"},
    {"exif:PixelYDimension",                  kInteger,    "exif", 0xA003, "PixelYDimension",           "1"},
    {"exif:RelatedSoundFile",                 kText,       "exif", 0xA004, "RelatedSoundFile",          "DSC00001.WAV"},
    {"exif:FlashEnergy",                      kRational,   "exif", 0xA20B, "FlashEnergy",               "5/2"},
    {"exif:SpatialFrequencyResponse",         kStruct,     "exif", 0xA20C, "SpatialFrequencyResponse",  "{exif:Columns=1, exif:Rows=1, exif:Names=seq[H], exif:Values=seq[1/2]}"},
    {"exif:FocalPlaneXResolution",            kRational,   "exif", 0xA20E, "FocalPlaneXResolution",     "5/2"},
    {"exif:FocalPlaneYResolution",            kRational,   "exif", 0xA20F, "FocalPlaneYResolution",     "5/2"},
    {"exif:FocalPlaneResolutionUnit",         kInteger,    "exif", 0xA210, "FocalPlaneResolutionUnit",  "1"},
    {"exif:SubjectLocation",                  kIntegers,   "exif", 0xA214, "SubjectLocation",           "seq[320, 240]"},
    {"exif:ExposureIndex",                    kRational,   "exif", 0xA215, "ExposureIndex",             "5/2"},
    {"exif:SensingMethod",                    kInteger,    "exif", 0xA217, "SensingMethod",             "1"},
    {"exif:FileSource",                       kInteger,    "exif", 0xA300, "FileSource",                "3"},
    {"exif:SceneType",                        kInteger,    "exif", 0xA301, "SceneType",                 "1"},
    {"exif:CFAPattern",                       kStruct,     "exif", 0xA302, "CFAPattern",                "{exif:Columns=2, exif:Rows=2, exif:Values=seq[0, 1, 1, 2]}"},
    {"exif:CustomRendered",                   kInteger,    "exif", 0xA401, "CustomRendered",            "1"},
    {"exif:ExposureMode",                     kInteger,    "exif", 0xA402, "ExposureMode",              "1"},
    {"exif:WhiteBalance",                     kInteger,    "exif", 0xA403, "WhiteBalance",              "1"},
    {"exif:DigitalZoomRatio",                 kRational,   "exif", 0xA404, "DigitalZoomRatio",          "5/2"},
    {"exif:FocalLengthIn35mmFilm",            kInteger,    "exif", 0xA405, "FocalLengthIn35mmFilm",     "1"},
    {"exif:SceneCaptureType",                 kInteger,    "exif", 0xA406, "SceneCaptureType",          "1"},
    {"exif:GainControl",                      kInteger,    "exif", 0xA407, "GainControl",               "1"},
    {"exif:Contrast",                         kInteger,    "exif", 0xA408, "Contrast",                  "1"},
    {"exif:Saturation",                       kInteger,    "exif", 0xA409, "Saturation",                "1"},
    {"exif:Sharpness",                        kInteger,    "exif", 0xA40A, "Sharpness",                 "1"},
    {"exif:DeviceSettingDescription",         kStruct,     "exif", 0xA40B, "DeviceSettingDescription",  "{exif:Columns=1, exif:Rows=1, exif:Settings=seq[Af]}"},
    {"exif:SubjectDistanceRange",             kInteger,    "exif", 0xA40C, "SubjectDistanceRange",      "1"},
    {"exif:ImageUniqueID",                    kText,       "exif", 0xA420, "ImageUniqueID",             "00000000000000000000000000000001"},

    // Texts of raw converters, in the EXIF IFD
    {"tiff:Artist",                           kText,       "exif", 0xFDE8, "RFOwnerName",               "Ada Example"},
    {"aux:SerialNumber",                      kText,       "exif", 0xFDE9, "RFSerialNumber",            "123"},
    {"aux:Lens",                              kText,       "exif", 0xFDEA, "RFLens",                    "24.0-70.0 mm"},
    {"rawforge-settings:RawFileName",         kText,       "exif", 0xFE4C, "RFRawFileName",             "a.raw"},
    {"rawforge-settings:Version",             kText,       "exif", 0xFE4D, "RFConverter",               "2.0"},
    {"rawforge-settings:WhiteBalance",        kText,       "exif", 0xFE4E, "RFWhiteBalance",            "Custom"},
    {"rawforge-settings:Temperature",         kText,       "exif", 0xFE4F, "RFTemperature",             "5500"},
    {"rawforge-settings:Tint",                kText,       "exif", 0xFE50, "RFTint",                    "+4"},
    {"rawforge-settings:Exposure",            kText,       "exif", 0xFE51, "RFExposure",                "+0.50"},
    {"rawforge-settings:Shadows",             kText,       "exif", 0xFE52, "RFShadows",                 "5"},
    {"rawforge-settings:Brightness",          kText,       "exif", 0xFE53, "RFBrightness",              "50"},
    {"rawforge-settings:Contrast",            kText,       "exif", 0xFE54, "RFContrast",                "25"},
    {"rawforge-settings:Saturation",          kText,       "exif", 0xFE55, "RFSaturation",              "10"},
    {"rawforge-settings:Sharpness",           kText,       "exif", 0xFE56, "RFSharpness",               "25"},
    {"rawforge-settings:Smoothness",          kText,       "exif", 0xFE57, "RFSmoothness",              "0"},
    {"rawforge-settings:MoireFilter",         kText,       "exif", 0xFE58, "RFMoireFilter",             "Off"},

    // GPS IFD (Exif 2.2, table 12)
    {"exif:GPSVersionID",                     kText,       "gps",  0x0000, "GPSVersionID",              "2.2.0.0"},
    {"exif:GPSLatitude",                      kCoordinate, "gps",  0x0002, "GPSLatitude",               "037,46,30N"},
    {"exif:GPSLongitude",                     kCoordinate, "gps",  0x0004, "GPSLongitude",              "122,25.50W"},
    {"exif:GPSAltitudeRef",                   kInteger,    "gps",  0x0005, "GPSAltitudeRef",            "1"},
    {"exif:GPSAltitude",                      kRational,   "gps",  0x0006, "GPSAltitude",               "5/2"},
    {"exif:GPSTimeStamp",                     kDate,       "gps",  0x0007, "GPSTimeStamp",              "2024-06-21T16:30:05.5Z"},
    {"exif:GPSSatellites",                    kText,       "gps",  0x0008, "GPSSatellites",             "04,08,17"},
    {"exif:GPSStatus",                        kText,       "gps",  0x0009, "GPSStatus",                 "A"},
    {"exif:GPSMeasureMode",                   kText,       "gps",  0x000A, "GPSMeasureMode",            "3"},
    {"exif:GPSDOP",                           kRational,   "gps",  0x000B, "GPSDOP",                    "5/2"},
    {"exif:GPSSpeedRef",                      kText,       "gps",  0x000C, "GPSSpeedRef",               "K"},
    {"exif:GPSSpeed",                         kRational,   "gps",  0x000D, "GPSSpeed",                  "5/2"},
    {"exif:GPSTrackRef",                      kText,       "gps",  0x000E, "GPSTrackRef",               "T"},
    {"exif:GPSTrack",                         kRational,   "gps",  0x000F, "GPSTrack",                  "5/2"},
    {"exif:GPSImgDirectionRef",               kText,       "gps",  0x0010, "GPSImgDirectionRef",        "T"},
    {"exif:GPSImgDirection",                  kRational,   "gps",  0x0011, "GPSImgDirection",           "5/2"},
    {"exif:GPSMapDatum",                      kText,       "gps",  0x0012, "GPSMapDatum",               "WGS-84"},
    {"exif:GPSDestLatitude",                  kCoordinate, "gps",  0x0014, "GPSDestLatitude",           "048,51.48N"},
    {"exif:GPSDestLongitude",                 kCoordinate, "gps",  0x0016, "GPSDestLongitude",          "048,51.48E"},
    {"exif:GPSDestBearingRef",                kText,       "gps",  0x0017, "GPSDestBearingRef",         "T"},
    {"exif:GPSDestBearing",                   kRational,   "gps",  0x0018, "GPSDestBearing",            "5/2"},
    {"exif:GPSDestDistanceRef",               kText,       "gps",  0x0019, "GPSDestDistanceRef",        "K"},
    {"exif:GPSDestDistance",                  kRational,   "gps",  0x001A, "GPSDestDistance",           "5/2"},
    {"exif:GPSProcessingMethod",              kText,       "gps",  0x001B, "GPSProcessingMethod",       "65 83 67 73 73 0 0 0 71 80 83"},
    {"exif:GPSAreaInformation",               kText,       "gps",  0x001C, "GPSAreaInformation",        "65 83 67 73 73 0 0 0 72 97 114 98 111 117 114"},
    {"exif:GPSDifferential",                  kInteger,    "gps",  0x001E, "GPSDifferential",           "1"},

    // IPTC-IIM 4, record 2
    {"picturist:Urgency",                     kText,       "iptc", 10,     "Urgency",                   "5"},
    {"picturist:Category",                    kText,       "iptc", 15,     "Category",                  "Dusk"},
    {"picturist:Keywords",                    kTexts,      "iptc", 25,     "Keywords",                  "bag[Dusk]"},
    {"picturist:DateCreated",                 kDate,       "iptc", 55,     "DateCreated",               "2024-06-21"},
    {"picturist:Author",                      kText,       "iptc", 80,     "ByLine",                    "Dusk"},
    {"picturist:City",                        kText,       "iptc", 90,     "City",                      "Dusk"},
    {"picturist:Headline",                    kText,       "iptc", 105,    "Headline",                  "Dusk"},
    {"picturist:Credit",                      kText,       "iptc", 110,    "Credit",                    "Dusk"},
    {"picturist:Source",                      kText,       "iptc", 115,    "Source",                    "Dusk"},
    {"picturist:Copyright",                   kText,       "iptc", 116,    "CopyrightNotice",           "Dusk"},
    {"picturist:Caption",                     kText,       "iptc", 120,    "CaptionAbstract",           "Dusk"},

    // Fields of the structures above
    {"exif:Flash/exif:Fired",                 kBoolean,    "",     0,      "",                          "True"},
    {"exif:Flash/exif:Return",                kInteger,    "",     0,      "",                          "0"},
    {"exif:Flash/exif:Mode",                  kInteger,    "",     0,      "",                          "3"},
    {"exif:Flash/exif:Function",              kBoolean,    "",     0,      "",                          "False"},
    {"exif:Flash/exif:RedEyeMode",            kBoolean,    "",     0,      "",                          "False"},
    {"exif:OECF/exif:Columns",                kInteger,    "",     0,      "",                          "2"},
    {"exif:OECF/exif:Rows",                   kInteger,    "",     0,      "",                          "1"},
    {"exif:OECF/exif:Names",                  kTexts,      "",     0,      "",                          "seq[log, lin]"},
    {"exif:OECF/exif:Values",                 kRationals,  "",     0,      "",                          "seq[-1/3, 1/2]"},
    {"exif:SpatialFrequencyResponse/exif:Columns", kInteger,    "",     0,      "",                          "1"},
    {"exif:SpatialFrequencyResponse/exif:Rows", kInteger,    "",     0,      "",                          "1"},
    {"exif:SpatialFrequencyResponse/exif:Names", kTexts,      "",     0,      "",                          "seq[H]"},
    {"exif:SpatialFrequencyResponse/exif:Values", kRationals,  "",     0,      "",                          "seq[1/2]"},
    {"exif:CFAPattern/exif:Columns",          kInteger,    "",     0,      "",                          "2"},
    {"exif:CFAPattern/exif:Rows",             kInteger,    "",     0,      "",                          "2"},
    {"exif:CFAPattern/exif:Values",           kIntegers,   "",     0,      "",                          "seq[0, 1, 1, 2]"},
    {"exif:DeviceSettingDescription/exif:Columns", kInteger,    "",     0,      "",                          "1"},
    {"exif:DeviceSettingDescription/exif:Rows", kInteger,    "",     0,      "",                          "1"},
    {"exif:DeviceSettingDescription/exif:Settings", kTexts,      "",     0,      "",                          "seq[Af]"},

    // Dublin Core (ISO 16684-1, 8.3), from XMP packets
    {"dc:contributor",                        kTexts,      "xmp",  0,      "",                          "bag[Ada Example]"},
    {"dc:coverage",                           kText,       "xmp",  0,      "",                          "The old town"},
    {"dc:creator",                            kTexts,      "xmp",  0,      "",                          "seq[Ada Example]"},
    {"dc:date",                               kTexts,      "xmp",  0,      "",                          "seq[2024-06-21]"},
    {"dc:description",                        kLanguages,  "xmp",  0,      "",                          "alt[x-default: The harbour at dusk]"},
    {"dc:format",                             kText,       "xmp",  0,      "",                          "image/jpeg"},
    {"dc:identifier",                         kText,       "xmp",  0,      "",                          "urn:example:1"},
    {"dc:language",                           kTexts,      "xmp",  0,      "",                          "bag[en]"},
    {"dc:publisher",                          kTexts,      "xmp",  0,      "",                          "bag[Example Press]"},
    {"dc:relation",                           kTexts,      "xmp",  0,      "",                          "bag[urn:example:2]"},
    {"dc:rights",                             kLanguages,  "xmp",  0,      "",                          "alt[x-default: (c) 2024 Ada Example]"},
    {"dc:source",                             kText,       "xmp",  0,      "",                          "urn:example:3"},
    {"dc:subject",                            kTexts,      "xmp",  0,      "",                          "bag[harbour, dusk]"},
    {"dc:title",                              kLanguages,  "xmp",  0,      "",                          "alt[x-default: Harbour]"},
    {"dc:type",                               kTexts,      "xmp",  0,      "",                          "bag[Image]"},

    // XMP basic and rights management (ISO 16684-1, 8.4 and 8.5), from XMP packets
    {"xmp:BaseURL",                           kText,       "xmp",  0,      "",                          "https://example.org/"},
    {"xmp:CreateDate",                        kDate,       "xmp",  0,      "",                          "2024-06-21T18:30:05+02:00"},
    {"xmp:CreatorTool",                       kText,       "xmp",  0,      "",                          "Example Editor 1.0"},
    {"xmp:Identifier",                        kTexts,      "xmp",  0,      "",                          "bag[urn:example:1]"},
    {"xmp:Label",                             kText,       "xmp",  0,      "",                          "Selected"},
    {"xmp:MetadataDate",                      kDate,       "xmp",  0,      "",                          "2024-06-22T09:00:00Z"},
    {"xmp:ModifyDate",                        kDate,       "xmp",  0,      "",                          "2024-06-22T09:00:00Z"},
    {"xmp:Nickname",                          kText,       "xmp",  0,      "",                          "harbour"},
    {"xmp:Rating",                            kReal,       "xmp",  0,      "",                          "4"},
    {"xmpRights:Certificate",                 kText,       "xmp",  0,      "",                          "https://example.org/certificate"},
    {"xmpRights:Marked",                      kBoolean,    "xmp",  0,      "",                          "True"},
    {"xmpRights:Owner",                       kTexts,      "xmp",  0,      "",                          "bag[Ada Example]"},
    {"xmpRights:UsageTerms",                  kLanguages,  "xmp",  0,      "",                          "alt[x-default: Ask first]"},
    {"xmpRights:WebStatement",                kText,       "xmp",  0,      "",                          "https://example.org/rights"},

    // XMP media management (ISO 16684-1, 8.6), from XMP packets
    {"xmpMM:DerivedFrom",                     kStruct,     "xmp",  0,      "",                          "{stRef:documentID=urn:example:1}"},
    {"xmpMM:DocumentID",                      kText,       "xmp",  0,      "",                          "urn:example:4"},
    {"xmpMM:History",                         kStruct,     "xmp",  0,      "",                          "seq[{stEvt:action=saved}]"},
    {"xmpMM:InstanceID",                      kText,       "xmp",  0,      "",                          "urn:example:5"},
    {"xmpMM:OriginalDocumentID",              kText,       "xmp",  0,      "",                          "urn:example:1"},
    {"xmpMM:RenditionClass",                  kText,       "xmp",  0,      "",                          "default"},
    {"xmpMM:VersionID",                       kText,       "xmp",  0,      "",                          "1"},

    // Panoramas (the photo sphere metadata of spherical pictures), from XMP packets
    {"GPano:CroppedAreaImageHeightPixels",    kInteger,    "xmp",  0,      "",                          "1000"},
    {"GPano:CroppedAreaImageWidthPixels",     kInteger,    "xmp",  0,      "",                          "4000"},
    {"GPano:CroppedAreaLeftPixels",           kInteger,    "xmp",  0,      "",                          "0"},
    {"GPano:CroppedAreaTopPixels",            kInteger,    "xmp",  0,      "",                          "500"},
    {"GPano:FullPanoHeightPixels",            kInteger,    "xmp",  0,      "",                          "2000"},
    {"GPano:FullPanoWidthPixels",             kInteger,    "xmp",  0,      "",                          "4000"},
    {"GPano:PoseHeadingDegrees",              kReal,       "xmp",  0,      "",                          "90.5"},
    {"GPano:ProjectionType",                  kText,       "xmp",  0,      "",                          "equirectangular"},
    {"GPano:UsePanoramaViewer",               kBoolean,    "xmp",  0,      "",                          "True"},
};
// clang-format on

// Rows of the same name keep their order.
constexpr auto kByName = [] {
  std::array<const KnownField*, std::size(kFields)> rows = {};
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = &kFields[i];
  std::sort(rows.begin(), rows.end(),
            [](const KnownField* a, const KnownField* b) { return a->name != b->name ? a->name < b->name : a < b; });
  return rows;
}();

}  // namespace

std::span<const KnownField> KnownFields() {
  return kFields;
}

const KnownField* FindKnownField(std::string_view name) {
  const auto at = std::lower_bound(kByName.begin(), kByName.end(), name,
                                   [](const KnownField* row, std::string_view wanted) { return row->name < wanted; });
  return at != kByName.end() && (*at)->name == name ? *at : nullptr;
}

const char* FieldTypeName(FieldType type) {
  switch (type) {
    case kText:
      return "text";
    case kTexts:
      return "texts";
    case kLanguages:
      return "text by language";
    case kInteger:
      return "integer";
    case kIntegers:
      return "integers";
    case kReal:
      return "number";
    case kRational:
      return "rational";
    case kRationals:
      return "rationals";
    case kDate:
      return "date";
    case kCoordinate:
      return "coordinate";
    case kBoolean:
      return "boolean";
    case kStruct:
      return "structure";
  }
  return "";
}

}  // namespace lxbridge::json
