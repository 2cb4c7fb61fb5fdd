// The datasets of the application record (IPTC-IIM 4, record 2), by dataset number. Data only.
// The reader takes the type from here, since datasets have none. Lengths come from the data, so no count is fixed.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxIptcTags[] = {
  //id  flags    name                                  type    n  display  leads to label
  {  0, kHidden, "RecordVersion",                      kUndef, 0, nullptr, nullptr, "$$$/IPTC/RecordVersion=Record Version"},
  {  3, kPlain,  "ObjectTypeReference",                kAscii, 0, nullptr, nullptr, "$$$/IPTC/ObjectTypeReference=Object Type Reference"},
  {  4, kPlain,  "ObjectAttributeReference",           kAscii, 0, nullptr, nullptr, "$$$/IPTC/ObjectAttributeReference=Object Attribute Reference"},

  {  5, kPlain,  "ObjectName",                         kAscii, 0, nullptr, nullptr, "$$$/IPTC/ObjectName=Object Name"},
  {  7, kPlain,  "EditStatus",                         kAscii, 0, nullptr, nullptr, "$$$/IPTC/EditStatus=Edit Status"},
  {  8, kPlain,  "EditorialUpdate",                    kAscii, 0, nullptr, nullptr, "$$$/IPTC/EditorialUpdate=Editorial Update"},
  { 10, kPlain,  "Urgency",                            kAscii, 0, nullptr, nullptr, "$$$/IPTC/Urgency=Urgency"},

  { 12, kPlain,  "SubjectReference",                   kAscii, 0, nullptr, nullptr, "$$$/IPTC/SubjectReference=Subject Reference"},
  { 15, kPlain,  "Category",                           kAscii, 0, nullptr, nullptr, "$$$/IPTC/Category=Category"},
  { 20, kPlain,  "SupplementalCategory",               kAscii, 0, nullptr, nullptr, "$$$/IPTC/SupplementalCategory=Supplemental Category"},
  { 22, kPlain,  "FixtureIdentifier",                  kAscii, 0, nullptr, nullptr, "$$$/IPTC/FixtureIdentifier=Fixture Identifier"},

  { 25, kPlain,  "Keywords",                           kAscii, 0, nullptr, nullptr, "$$$/IPTC/Keywords=Keywords"},
  { 26, kPlain,  "ContentLocationCode",                kAscii, 0, nullptr, nullptr, "$$$/IPTC/ContentLocationCode=Content Location Code"},
  { 27, kPlain,  "ContentLocationName",                kAscii, 0, nullptr, nullptr, "$$$/IPTC/ContentLocationName=Content Location Name"},
  { 30, kPlain,  "ReleaseDate",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/ReleaseDate=Release Date"},
  { 35, kPlain,  "ReleaseTime",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/ReleaseTime=Release Time"},
  { 37, kPlain,  "ExpirationDate",                     kAscii, 0, nullptr, nullptr, "$$$/IPTC/ExpirationDate=Expiration Date"},
  { 38, kPlain,  "ExpirationTime",                     kAscii, 0, nullptr, nullptr, "$$$/IPTC/ExpirationTime=Expiration Time"},

  { 40, kPlain,  "SpecialInstructions",                kAscii, 0, nullptr, nullptr, "$$$/IPTC/SpecialInstructions=Special Instructions"},
  { 42, kPlain,  "ActionAdvised",                      kAscii, 0, nullptr, nullptr, "$$$/IPTC/ActionAdvised=Action Advised"},
  { 45, kPlain,  "ReferenceService",                   kAscii, 0, nullptr, nullptr, "$$$/IPTC/ReferenceService=Reference Service"},
  { 47, kPlain,  "ReferenceDate",                      kAscii, 0, nullptr, nullptr, "$$$/IPTC/ReferenceDate=Reference Date"},
  { 50, kPlain,  "ReferenceNumber",                    kAscii, 0, nullptr, nullptr, "$$$/IPTC/ReferenceNumber=Reference Number"},

  { 55, kPlain,  "DateCreated",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/DateCreated=Date Created"},
  { 60, kPlain,  "TimeCreated",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/TimeCreated=Time Created"},
  { 62, kPlain,  "DigitalCreationDate",                kAscii, 0, nullptr, nullptr, "$$$/IPTC/DigitalCreationDate=Digital Creation Date"},
  { 63, kPlain,  "DigitalCreationTime",                kAscii, 0, nullptr, nullptr, "$$$/IPTC/DigitalCreationTime=Digital Creation Time"},

  { 65, kPlain,  "OriginatingProgram",                 kAscii, 0, nullptr, nullptr, "$$$/IPTC/OriginatingProgram=Originating Program"},
  { 70, kPlain,  "ProgramVersion",                     kAscii, 0, nullptr, nullptr, "$$$/IPTC/ProgramVersion=Program Version"},
  { 75, kPlain,  "ObjectCycle",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/ObjectCycle=Object Cycle"},

  { 80, kPlain,  "ByLine",                             kAscii, 0, nullptr, nullptr, "$$$/IPTC/ByLine=By-line"},
  { 85, kPlain,  "ByLineTitle",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/ByLineTitle=By-line Title"},
  { 90, kPlain,  "City",                               kAscii, 0, nullptr, nullptr, "$$$/IPTC/City=City"},
  { 95, kPlain,  "ProvinceState",                      kAscii, 0, nullptr, nullptr, "$$$/IPTC/ProvinceState=Province State"},
  {100, kPlain,  "CountryPrimaryLocationCode",         kAscii, 0, nullptr, nullptr, "$$$/IPTC/CountryPrimaryLocationCode=Country Primary Location Code"},
  {101, kPlain,  "CountryPrimaryLocationName",         kAscii, 0, nullptr, nullptr, "$$$/IPTC/CountryPrimaryLocationName=Country Primary Location Name"},
  {103, kPlain,  "OriginalTransmissionReference",      kAscii, 0, nullptr, nullptr, "$$$/IPTC/OriginalTransmissionReference=Original Transmission Reference"},

  {105, kPlain,  "Headline",                           kAscii, 0, nullptr, nullptr, "$$$/IPTC/Headline=Headline"},
  {110, kPlain,  "Credit",                             kAscii, 0, nullptr, nullptr, "$$$/IPTC/Credit=Credit"},
  {115, kPlain,  "Source",                             kAscii, 0, nullptr, nullptr, "$$$/IPTC/Source=Source"},
  {116, kPlain,  "CopyrightNotice",                    kAscii, 0, nullptr, nullptr, "$$$/IPTC/CopyrightNotice=Copyright Notice"},
  {118, kPlain,  "Contact",                            kAscii, 0, nullptr, nullptr, "$$$/IPTC/Contact=Contact"},

  {120, kPlain,  "CaptionAbstract",                    kAscii, 0, nullptr, nullptr, "$$$/IPTC/CaptionAbstract=Caption Abstract"},
  {122, kPlain,  "WriterEditor",                       kAscii, 0, nullptr, nullptr, "$$$/IPTC/WriterEditor=Writer Editor"},
  {125, kHidden, "RasterizedCaption",                  kUndef, 0, nullptr, nullptr, "$$$/IPTC/RasterizedCaption=Rasterized Caption"},

  {130, kPlain,  "ImageType",                          kAscii, 0, nullptr, nullptr, "$$$/IPTC/ImageType=Image Type"},
  {131, kPlain,  "ImageOrientation",                   kAscii, 0, nullptr, nullptr, "$$$/IPTC/ImageOrientation=Image Orientation"},
  {135, kPlain,  "LanguageIdentifier",                 kAscii, 0, nullptr, nullptr, "$$$/Iptc/LanguageIdentifier=Language Identifier"},  // sic: "Iptc"

  {150, kPlain,  "AudioType",                          kAscii, 0, nullptr, nullptr, "$$$/IPTC/AudioType=Audio Type"},
  {151, kPlain,  "AudioSamplingRate",                  kAscii, 0, nullptr, nullptr, "$$$/IPTC/AudioSamplingRate=Audio Sampling Rate"},
  {152, kPlain,  "AudioSamplingResolution",            kAscii, 0, nullptr, nullptr, "$$$/IPTC/AudioSamplingResolution=Audio Sampling Resolution"},
  {153, kPlain,  "AudioDuration",                      kAscii, 0, nullptr, nullptr, "$$$/IPTC/AudioDuration=Audio Duration"},
  {154, kPlain,  "AudioOutcue",                        kAscii, 0, nullptr, nullptr, "$$$/IPTC/AudioOutcue=Audio Outcue"},

  {200, kHidden, "ObjectDataPreviewFileFormat",        kUndef, 0, nullptr, nullptr, "$$$/IPTC/ObjectDataPreviewFileFormat=Object Data Preview File Format"},
  {201, kHidden, "ObjectDataPreviewFileFormatVersion", kUndef, 0, nullptr, nullptr, "$$$/IPTC/ObjectDataPreviewFileFormatVersion=Object Data Preview File Format Version"},
  {202, kHidden, "ObjectDataPreview",                  kUndef, 0, nullptr, nullptr, "$$$/IPTC/ObjectDataPreview=Object Data Preview"},
  kLxEndOfTags,
};
static_assert(std::size(kLxIptcTags) == 56 + 1 && IsDictionary(kLxIptcTags));
// clang-format on
