// What libraries of the system keep until the program ends, and the leak checker would blame on us:
// libedit has copies of key sequences, the D-Bus library of Qt's accessibility a buffer. Linked
// into programs that use them, where the sanitizers are on.

extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
  return "leak:wcsdup\nleak:libdbus-1\n";
}
