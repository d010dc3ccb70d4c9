// The process's global locale for the length of a test.
#pragma once

#include <clocale>
#include <cstdlib>

#include <gtest/gtest.h>

/// Sets the global locale to `name`, one of those that the build makes, and C.UTF-8 again at its end. A locale that
/// cannot be set fails the test.
class TestLocale
{
public:
    explicit TestLocale(const char* name)
    {
        setenv("LOCPATH", KEST_TEST_LOCALES, 1);
        if (std::setlocale(LC_ALL, name) == nullptr) {
            ADD_FAILURE() << "no locale " << name << " in " << KEST_TEST_LOCALES;
        }
        unsetenv("LOCPATH");
    }

    ~TestLocale() { std::setlocale(LC_ALL, "C.UTF-8"); }

    TestLocale(const TestLocale&) = delete;
    TestLocale& operator=(const TestLocale&) = delete;
};
