/* The counterpart of lxbridge_files for libexif: reads each file's EXIF data and formats every entry.
 *
 * libexif_files REPETITIONS FILE... */
#include <libexif/exif-data.h>
#include <libexif/exif-mnote-data.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

static long long Now(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

struct Count {
  long entries;
  size_t bytes;
};

static void TakeEntry(ExifEntry* entry, void* user) {
  struct Count* count = user;
  char text[1024];
  const char* value = exif_entry_get_value(entry, text, sizeof text);
  ++count->entries;
  if (value != NULL) count->bytes += strlen(value);
}

static void TakeContent(ExifContent* content, void* user) {
  exif_content_foreach_entry(content, TakeEntry, user);
}

static void TakeMakerNote(ExifData* data, struct Count* count) {
  ExifMnoteData* note = exif_data_get_mnote_data(data);
  if (note == NULL) return;
  const unsigned int entries = exif_mnote_data_count(note);
  for (unsigned int i = 0; i < entries; ++i) {
    char text[1024];
    const char* value = exif_mnote_data_get_value(note, i, text, sizeof text);
    ++count->entries;
    if (value != NULL) count->bytes += strlen(value);
  }
}

int main(int argc, char** argv) {
  const int repetitions = argc > 2 ? atoi(argv[1]) : 0;
  if (repetitions < 1) return 2;
  for (int i = 0; i < repetitions; ++i) {
    for (int file = 2; file < argc; ++file) {
      struct Count count = {0, 0};
      const long long begun = Now();
      ExifData* data = exif_data_new_from_file(argv[file]);
      if (data != NULL) {
        exif_data_foreach_content(data, TakeContent, &count);
        TakeMakerNote(data, &count);
        exif_data_unref(data);
      }
      printf("%d %lld %ld %zu\n", file - 2, Now() - begun, count.entries, count.bytes);
    }
  }
  return 0;
}
