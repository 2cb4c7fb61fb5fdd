/* LxBridge: the metadata of an image file as one XMP object. Hosts in C or C++ include only this header; the library
 * exports these five functions, with C linkage, and nothing else.
 *
 *   LxInterchangeInit();
 *   LxInterchangeHandle handle = LxInterchangeNew("photo.jpg");
 *   CXMPMeta* xmp = LxInterchangeGetXMP(handle);   ... read, change or serialise it ...
 *   LxInterchangeDelete(handle);
 *   LxInterchangeTerm();
 *
 * Calling order. LxInterchangeInit first, LxInterchangeTerm last; between them any number of handles, which are
 * independent of each other. Delete every handle before LxInterchangeTerm. After LxInterchangeTerm the library can be
 * initialised again. Nothing is started when the library is loaded.
 *
 * Threads. From the return of LxInterchangeInit to the call of LxInterchangeTerm any number of threads may create, use
 * and delete handles at once. One handle, and what is reached through its CXMPMeta, is used by one thread at a time,
 * and may move between threads. LxInterchangeInit and LxInterchangeTerm are called from one thread while no other is in
 * the library. The library starts no threads.
 *
 * Errors. A file that is missing, unreadable, damaged or of an unknown kind is not an error: the XMP object then holds
 * everything that could be read, possibly nothing. Errors are C++ exceptions, raised only by LxInterchangeInit and
 * LxInterchangeNew, which then leave nothing behind:
 *   std::bad_alloc         memory is exhausted;
 *   TAL_T_NMT::CTALError   the broker or the XMP toolkit lacks a procedure or refused a call; a std::exception, whose
 *                          what() is the broker's message. Destroy it before LxInterchangeTerm;
 *   std::logic_error       "ZXMPMeta Client initialization failure": the library is not initialised, or the broker did
 *                          not start.
 * A host in C, or one built without exceptions, cannot catch them: they end the program.
 *
 * The library uses two others, the interface broker (TAL) and the XMP toolkit (VeltoXMP). The host provides them, and
 * uses them itself to work with the XMP object. The library never writes a file.
 */
#ifndef LXBRIDGE_LXBRIDGE_H_
#define LXBRIDGE_LXBRIDGE_H_

#ifdef __cplusplus
class CXMPMeta;
extern "C" {
#else
#include <stdbool.h>
typedef struct CXMPMeta CXMPMeta;
#endif

/* CXMPMeta: the XMP object of one file, for use with the host's own client of the toolkit. In memory it is three
 * pointers: a table of virtual functions whose only function is the destructor, the reference to the toolkit's object
 * (a container of the broker), and the table of that object's methods as bound by this library. The host passes the
 * object reference to methods that its own client has bound. It must not destroy the CXMPMeta or release the reference;
 * to keep the object longer than its handle, it adds a reference of its own through the broker. */

/* One import. Opaque. */
typedef struct LxInterchangeCell* LxInterchangeHandle;

/* Starts the broker client, the toolkit client and the metadata kit. Always returns true; does nothing if the library
 * is already initialised. If the broker or the toolkit does not start, LxInterchangeNew raises, not this function.
 * Raises CTALError "Missing Interface" if the broker has no memory or no container interface; the library is then not
 * initialised. */
bool LxInterchangeInit(void);

/* Stops them in reverse order, however often LxInterchangeInit was called: calls are not counted, so the parts of a
 * program that share the library must agree on the last call. Does nothing if the library is not initialised. */
void LxInterchangeTerm(void);

/* Reads the file at a path and converts its metadata; the file is closed before this returns. The path is
 * zero-terminated UTF-8 on every system, never null, and is copied. An empty path reads standard input, which must be
 * seekable (nothing is read from a pipe) and stays open.
 *
 * Never null. The caller passes the handle to LxInterchangeDelete.
 * Not initialised: raises std::logic_error. */
LxInterchangeHandle LxInterchangeNew(const char* path);

/* The handle's XMP object: always the same address. It belongs to the handle and is valid until LxInterchangeDelete; do
 * not free or release it. The handle must not be null. Raises nothing. After LxInterchangeTerm the address is still
 * returned, but the toolkit's object is gone: do not use it. */
CXMPMeta* LxInterchangeGetXMP(LxInterchangeHandle handle);

/* Frees the handle, its XMP object and everything read for it. Does nothing for null. Raises nothing. After
 * LxInterchangeTerm it frees the handle, but the toolkit's object can no longer be released and is lost. */
void LxInterchangeDelete(LxInterchangeHandle handle);

#ifdef __cplusplus
}
#endif

#endif /* LXBRIDGE_LXBRIDGE_H_ */
