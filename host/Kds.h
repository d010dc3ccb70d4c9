// System variables and the LISP queue.
#pragma once

/// The status with which both services report success; every other status is a failure.
inline constexpr int kKdsSuccess = 5100;

/// What ksedGetVar() reads a variable into. The autoloader clears it before the call, reads `resval.rstring` and
/// releases nothing.
struct resbuf
{
    resbuf* rbnext;
    short restype;
    union
    {
        double rreal;
        double rpoint[3];
        int rint;
        wchar_t* rstring; ///< the value of a text variable, owned by the host; null counts as empty
    } resval;
};

/// Reads the system variable `name` into `result`. Only "VERNUM" is asked for: text whose fields, joined by "_", are
/// numbered from 0; field 2 is the operating system, field 3 the architecture. Returns kKdsSuccess or another status.
int ksedGetVar(const wchar_t* name, resbuf* result);

/// Queues one LISP expression for evaluation after the current entry point has returned; copies `expression`.
/// Returns kKdsSuccess when it was accepted. Should not evaluate, and so call back, at once.
extern "C" int kds_queueexpr(const wchar_t* expression);
