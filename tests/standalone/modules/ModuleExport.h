// Makes a function visible outside the test module that defines it.
#pragma once

#define KEST_EXPORT __attribute__((visibility("default")))
