/* The minimum cost of reading a folder of files, for batch_bench: walks a folder, opens each regular file and reads its
 * first 64 KiB, in several processes.
 *
 *   read_folder FOLDER PROCESSES
 *
 * Each process walks the whole folder and reads every PROCESSES-th file, so that they share nothing. */
#define _XOPEN_SOURCE 700
#include <fcntl.h>
#include <ftw.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

static long processes, own, at;
static int failed;

static int read_file(const char* path, const struct stat* status, int type, struct FTW* place) {
  static char buffer[65536];
  int file;
  (void)status;
  (void)place;
  if (type != FTW_F || at++ % processes != own) return 0;
  file = open(path, O_RDONLY);
  if (file < 0 || read(file, buffer, sizeof buffer) < 0) failed = 1;
  if (file >= 0) close(file);
  return 0;
}

int main(int argc, char** argv) {
  int status;
  if (argc != 3 || (processes = atol(argv[2])) < 1) {
    fputs("usage: read_folder FOLDER PROCESSES\n", stderr);
    return 2;
  }
  for (own = 0; own < processes; ++own) {
    if (fork() == 0) _exit(nftw(argv[1], read_file, 64, FTW_PHYS) != 0 || failed);
  }
  while (wait(&status) > 0) failed |= !WIFEXITED(status) || WEXITSTATUS(status) != 0;
  return failed;
}
