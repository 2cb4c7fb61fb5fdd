/* A host in C: loads LxBridge at run time, prints the XMP of one image file and unloads it.
 *
 *   print_xmp photo.jpg
 *
 * The XMP object belongs to the XMP toolkit, whose procedures are found by name through the interface broker. So a host
 * that reads it also loads the broker (TAL); the toolkit stays loaded as long as LxBridge. */
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>

#include "api/include/lxbridge/lxbridge.h"
#include "examples/library.h"

/* The part of the broker's and the toolkit's interfaces that this program uses. */
typedef struct Object Object; /* a counted object of the broker: here, the toolkit's XMP object */
typedef struct Error Error;   /* null: success */
typedef struct Atom Atom;
typedef Procedure (*Lookup)(const char* interface, const char* shortName, const char* qualifiedName);
typedef Error* (*GetMethod)(Procedure* method, Object* object, Atom* shortName, Atom* qualifiedName,
                            uint8_t notRequired);
typedef Atom* (*NewAtom)(const char* text);
typedef void (*DeleteAtom)(Atom* atom);
typedef const char* (*GetMessageText)(Error* error);
typedef void (*ReleaseError)(Error* error);
struct Text {
  const char* bytes;
  uint32_t length;
};
typedef Error* (*Serialize)(Object* object, struct Text* packet, uint32_t options, int32_t padding, const char* newline,
                            const char* indent, int32_t baseIndent);
typedef Error* (*Unlock)(Object* object, uint32_t options);

/* LxBridge's five functions, and the broker's entry point. */
typedef bool (*Init)(void);
typedef LxInterchangeHandle (*New)(const char* path);
typedef CXMPMeta* (*GetXMP)(LxInterchangeHandle handle);
typedef void (*Delete)(LxInterchangeHandle handle);
typedef void (*Term)(void);
typedef Lookup (*Entry)(void);

/* A CXMPMeta in memory; see lxbridge.h. */
struct Meta {
  const void* virtualFunctions;
  Object* object;
  const void* methods;
};

static Procedure FindMethod(Lookup lookup, Object* object, const char* shortName, const char* qualifiedName) {
  GetMethod getMethod = (GetMethod)lookup("TALContainerInterface", "GetMethod", "TALContainer_GetMethod");
  NewAtom newAtom = (NewAtom)lookup("TALStringInterface", "NewStringAtom", "TALString_NewStringAtom");
  DeleteAtom deleteAtom = (DeleteAtom)lookup("TALStringInterface", "DeleteStringAtom", "TALString_DeleteStringAtom");
  if (getMethod == NULL || newAtom == NULL || deleteAtom == NULL) return NULL;
  Atom* shortAtom = newAtom(shortName);
  Atom* qualifiedAtom = newAtom(qualifiedName);
  Procedure method = NULL;
  if (shortAtom != NULL && qualifiedAtom != NULL) {
    (void)getMethod(&method, object, shortAtom, qualifiedAtom, 1); /* If it is missing: null, not an error. */
  }
  if (shortAtom != NULL) deleteAtom(shortAtom);
  if (qualifiedAtom != NULL) deleteAtom(qualifiedAtom);
  return method;
}

static int Print(Lookup lookup, const CXMPMeta* xmp) {
  Object* object = ((const struct Meta*)xmp)->object;
  Serialize serialize = (Serialize)FindMethod(lookup, object, "SerializeToBuffer", "XMPMeta_SerializeToBuffer_Method");
  Unlock unlock = (Unlock)FindMethod(lookup, object, "UnlockObject", "XMPMeta_UnlockObject_Method");
  if (serialize == NULL || unlock == NULL) {
    fputs("the XMP toolkit lacks a method\n", stderr);
    return 1;
  }
  struct Text packet = {NULL, 0};
  Error* error = serialize(object, &packet, 0, 0, NULL, NULL, 0);
  if (error != NULL) {
    GetMessageText message = (GetMessageText)lookup("TALErrorInterface", "GetMessageText", "TALError_GetMessageText");
    ReleaseError release = (ReleaseError)lookup("TALErrorInterface", "Release", "TALError_Release");
    fprintf(stderr, "%s\n", message != NULL ? message(error) : "the XMP toolkit failed");
    if (release != NULL) release(error);
    return 1;
  }
  fwrite(packet.bytes, 1, packet.length, stdout);
  putchar('\n');
  (void)unlock(object, 0); /* The toolkit frees the packet. */
  return 0;
}

static int PrintFile(Library* broker, Library* bridge, const char* path) {
  Entry entry = (Entry)FindProcedure(broker, "TALOrdinal5", 5);
  Delete destroy = (Delete)FindProcedure(bridge, "LxInterchangeDelete", 1);
  GetXMP getXmp = (GetXMP)FindProcedure(bridge, "LxInterchangeGetXMP", 2);
  Init init = (Init)FindProcedure(bridge, "LxInterchangeInit", 3);
  New create = (New)FindProcedure(bridge, "LxInterchangeNew", 4);
  Term term = (Term)FindProcedure(bridge, "LxInterchangeTerm", 5);
  if (!entry || !destroy || !getXmp || !init || !create || !term) return 1;

  init();
  LxInterchangeHandle handle = create(path); /* A file that cannot be read gives an empty object. */
  int status = Print(entry(), getXmp(handle));
  destroy(handle);
  term();
  return status;
}

int main(int argc, char** argv) {
  argv = PathArguments(&argc, argv);
  if (argc != 2) {
    fputs("usage: print_xmp FILE\n", stderr);
    return 2;
  }
  Library* broker = OpenLibrary("TAL");
  Library* bridge = OpenLibrary("LxBridge");
  int status = broker && bridge ? PrintFile(broker, bridge, argv[1]) : 1;
  if (bridge) CloseLibrary(bridge);
  if (broker) CloseLibrary(broker);
  return status;
}
