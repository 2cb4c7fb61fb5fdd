// The display descriptors that tag records point to: value names and the other formats. For the tables of this folder;
// display code gets them from the records.
#ifndef LXBRIDGE_KIT_MODEL_TABLES_VALUE_NAMES_H_
#define LXBRIDGE_KIT_MODEL_TABLES_VALUE_NAMES_H_

#include "kit/model/tag_record.h"

// Format 0, each with a table of value names.
extern const LxDisplayDescriptor kLxPhotometricInterpretationNames;
extern const LxDisplayDescriptor kLxCompressionNames;
extern const LxDisplayDescriptor kLxResolutionUnitNames;
extern const LxDisplayDescriptor kLxFillOrderNames;
extern const LxDisplayDescriptor kLxOrientationNames;
extern const LxDisplayDescriptor kLxPlanarConfigurationNames;
extern const LxDisplayDescriptor kLxYCbCrPositioningNames;
extern const LxDisplayDescriptor kLxComponentsConfigurationNames;
extern const LxDisplayDescriptor kLxMeteringModeNames;
extern const LxDisplayDescriptor kLxLightSourceNames;
extern const LxDisplayDescriptor kLxFlashNames;
extern const LxDisplayDescriptor kLxExposureProgramNames;
extern const LxDisplayDescriptor kLxColorSpaceNames;
extern const LxDisplayDescriptor kLxSensingMethodNames;
extern const LxDisplayDescriptor kLxFileSourceNames;
extern const LxDisplayDescriptor kLxSceneTypeNames;
extern const LxDisplayDescriptor kLxCustomRenderedNames;
extern const LxDisplayDescriptor kLxExposureModeNames;
extern const LxDisplayDescriptor kLxWhiteBalanceNames;
extern const LxDisplayDescriptor kLxSceneCaptureTypeNames;
extern const LxDisplayDescriptor kLxGainControlNames;
extern const LxDisplayDescriptor kLxContrastNames;
extern const LxDisplayDescriptor kLxSaturationNames;
extern const LxDisplayDescriptor kLxSharpnessNames;
extern const LxDisplayDescriptor kLxSubjectDistanceRangeNames;
extern const LxDisplayDescriptor kLxGpsDifferentialNames;

// Formats without a table.
extern const LxDisplayDescriptor kLxPhotoQuantity;  // 5
extern const LxDisplayDescriptor kLxGpsQuantity;    // 9
extern const LxDisplayDescriptor kLxIccProfile;     // 2
extern const LxDisplayDescriptor kLxVersionInfo;    // 3
extern const LxDisplayDescriptor kLxJpegQuality;    // 4
extern const LxDisplayDescriptor kLxCommentText;    // 10
extern const LxDisplayDescriptor kLxMakerSpecial;   // 7
extern const LxDisplayDescriptor kLxGenericText;    // 8

#endif  // LXBRIDGE_KIT_MODEL_TABLES_VALUE_NAMES_H_
