// What another engine needs.
extern "C" __attribute__((visibility("default"))) int kestTestNeeded();

int kestTestNeeded()
{
    return 1;
}
