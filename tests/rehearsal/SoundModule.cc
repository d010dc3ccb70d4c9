// A native module that loads, and a library that can be opened as a script's Python.
extern "C" [[gnu::visibility("default")]] int kestModuleEntry(void);

int kestModuleEntry(void)
{
    return 0;
}
