/* Preloaded into the command (LD_PRELOAD), makes calls of the C library stall or fail as the environment says:
 *   LXSHIM_STALL=NAME      opening a file whose path ends in NAME waits for ever
 *   LXSHIM_FAIL=memory|read, LXSHIM_FROM=N, LXSHIM_TO=M
 *                          allocations, or reads of files, number N to M (from 1) fail
 *   LXSHIM_COUNT=FILE      at its end a process writes how many such calls there were
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);

static long calls, from, to;
static int memory_fails, read_fails;

__attribute__((constructor)) static void begin(void) {
  const char* kind = getenv("LXSHIM_FAIL");
  if (kind == NULL) return;
  from = atol(getenv("LXSHIM_FROM"));
  to = atol(getenv("LXSHIM_TO"));
  memory_fails = strcmp(kind, "memory") == 0;
  read_fails = strcmp(kind, "read") == 0;
}

__attribute__((destructor)) static void end(void) {
  const char* path = getenv("LXSHIM_COUNT");
  char text[32];
  int file;
  memory_fails = 0;
  if (path == NULL) return;
  file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  (void)!write(file, text, (size_t)snprintf(text, sizeof text, "%ld", calls));
  close(file);
}

static int fails(int kind) {
  if (!kind) return 0;
  ++calls;
  return calls >= from && calls <= to;
}

static int refused(void) {
  if (!fails(memory_fails)) return 0;
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t size) {
  return refused() ? NULL : __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  return refused() ? NULL : __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) {
  return refused() ? NULL : __libc_realloc(block, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
  return refused() ? NULL : __libc_memalign(alignment, size);
}
int posix_memalign(void** block, size_t alignment, size_t size) {
  if (refused()) return ENOMEM;
  *block = __libc_memalign(alignment, size);
  return *block == NULL ? ENOMEM : 0;
}

#define NEXT(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

static int breaks(int file) {
  if (file <= 2 || !fails(read_fails)) return 0;
  errno = EIO;
  return 1;
}
ssize_t pread(int file, void* to_, size_t length, off_t at) {
  return breaks(file) ? -1 : NEXT(pread)(file, to_, length, at);
}
ssize_t pread64(int file, void* to_, size_t length, off64_t at) {
  return breaks(file) ? -1 : NEXT(pread64)(file, to_, length, at);
}
ssize_t read(int file, void* to_, size_t length) {
  return breaks(file) ? -1 : NEXT(read)(file, to_, length);
}

static void stall(const char* path) {
  const char* name = getenv("LXSHIM_STALL");
  if (name == NULL || strlen(path) < strlen(name) || strcmp(path + strlen(path) - strlen(name), name) != 0) return;
  for (;;) pause();
}
FILE* fopen(const char* path, const char* mode) {
  stall(path);
  return NEXT(fopen)(path, mode);
}
FILE* fopen64(const char* path, const char* mode) {
  stall(path);
  return NEXT(fopen64)(path, mode);
}

/* The mode stands where a call that makes a file passes it. */
#define OPEN(name)                             \
  int name(const char* path, int flags, ...) { \
    va_list rest;                              \
    mode_t mode;                               \
    va_start(rest, flags);                     \
    mode = va_arg(rest, mode_t);               \
    va_end(rest);                              \
    stall(path);                               \
    return NEXT(name)(path, flags, mode);      \
  }
OPEN(open)
OPEN(open64)
