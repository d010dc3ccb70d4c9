#include "tests/library/OpenedLibrary.h"

#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>

// The linker gives calls of dlopen in this program to the recording host; this is the system's.
extern "C" void* __real_dlopen(const char* name, int mode);

OpenedLibrary::OpenedLibrary() : handle(__real_dlopen(KEST_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL))
{
    EXPECT_NE(handle, nullptr) << dlerror();
}

OpenedLibrary::~OpenedLibrary()
{
    close();
}

void OpenedLibrary::close()
{
    if (handle != nullptr) {
        EXPECT_EQ(dlclose(handle), 0);
        handle = nullptr;
    }
}

void* OpenedLibrary::find(const char* name) const
{
    return dlsym(handle, name);
}

void OpenedLibrary::excuteCuix() const
{
    reinterpret_cast<void (*)()>(find("excuteCuix"))();
}

void OpenedLibrary::excute() const
{
    reinterpret_cast<void (*)()>(find("excute"))();
}

void OpenedLibrary::loadIfCmdNeeded(const wchar_t* name) const
{
    reinterpret_cast<void (*)(const wchar_t*)>(find("loadIfCmdNeeded"))(name);
}

bool OpenedLibrary::isMapped()
{
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line)) {
        if (line.find("libkestbundle.so") != std::string::npos) {
            return true;
        }
    }
    return false;
}
