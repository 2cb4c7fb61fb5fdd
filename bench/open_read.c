/* The minimum work with a file, as a measure of the cost of starting a process. For batch_bench. */
#include <fcntl.h>
#include <unistd.h>

int main(int argc, char** argv) {
  char buffer[65536];
  const int file = argc > 1 ? open(argv[1], O_RDONLY) : -1;
  return file < 0 || read(file, buffer, sizeof buffer) < 0;
}
