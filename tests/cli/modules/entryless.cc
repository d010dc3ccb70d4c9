// A library that is no module.
extern "C" [[gnu::visibility("default")]] int someOtherFunction(void);

int someOtherFunction(void)
{
    return 0;
}
