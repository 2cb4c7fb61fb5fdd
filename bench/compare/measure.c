/* Runs a program, discards its output, and prints its time and memory, "nanoseconds kilobytes". This is a separate
 * program because the memory of a child is counted from its parent's.
 *
 * measure PROGRAM [ARGUMENT...] */
#define _GNU_SOURCE
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>

extern char** environ;

static long long Now(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = 0;
  struct rusage usage;
  const long long begun = Now();
  if (posix_spawn(&child, argv[1], &actions, NULL, argv + 1, environ) != 0) return 2;
  if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 1) return 2;
  printf("%lld %ld\n", Now() - begun, usage.ru_maxrss);
  return 0;
}
