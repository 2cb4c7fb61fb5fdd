// In coverage builds every program's _exit: saves the counters, which would be lost with a process that ends so (the
// command's workers). The linker is told to put it in front (--wrap=_exit).
extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int status);
[[noreturn]] void __wrap__exit(int status);

void __wrap__exit(int status) {
  __gcov_dump();
  __real__exit(status);
}
}
