// An engine with one export.
extern "C" __attribute__((visibility("default"))) int kestTestAnswer();

int kestTestAnswer()
{
    return 42;
}
