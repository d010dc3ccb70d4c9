// The entry point that a host looks up in "libKestLispEvaluator.so".
#pragma once

#include <cstddef>

/// Evaluates the forms in `expression` in the one LISP world of the process, which the first call boots. The text is
/// UTF-8; other bytes, as in a path on disk, stand for themselves. Returns 0 when all went well; otherwise `problem`
/// (of `problemSize` bytes, may be null when that is 0) says why in one line, cut at a character's border. The host's
/// main thread only. Does not throw.
extern "C" __attribute__((visibility("default"))) int kestLispEvaluate(const char* expression, char* problem,
                                                                       std::size_t problemSize);
