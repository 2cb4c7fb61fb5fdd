/* The least that a program can do with a file: what starting a process costs, for batch_bench to compare with. */
#include <fcntl.h>
#include <unistd.h>

int main(int argc, char** argv) {
  char buffer[65536];
  const int file = argc > 1 ? open(argv[1], O_RDONLY) : -1;
  return file < 0 || read(file, buffer, sizeof buffer) < 0;
}
