// The XMP schemas that the conversion writes, by namespace URI (ISO 16684-1, 8.4 to 8.6, and related schemas).
#ifndef LXBRIDGE_XMPCONV_SCHEMAS_H_
#define LXBRIDGE_XMPCONV_SCHEMAS_H_

inline constexpr const char kLxTiffSchema[] = "http://ns.adobe.com/tiff/1.0/";
inline constexpr const char kLxExifSchema[] = "http://ns.adobe.com/exif/1.0/";
inline constexpr const char kLxAuxSchema[] = "http://ns.adobe.com/exif/1.0/aux/";
inline constexpr const char kLxXmpNoteSchema[] = "http://ns.adobe.com/xmp/note/";
inline constexpr const char kLxRawforgeSchema[] = "http://ns.adobe.com/rawforge-settings/1.0/";
inline constexpr const char kLxPicturistSchema[] = "http://ns.adobe.com/picturist/1.0/";

#endif  // LXBRIDGE_XMPCONV_SCHEMAS_H_
