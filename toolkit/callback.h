// Wrappers for the callbacks that GLUT and XForms call: no exception passes through the C code of these toolkits. If
// a callback runs out of memory, a message reports it and the program goes on. After a callback for user input, a
// frame is requested.

#pragma once

#include <new>

// What a callback is for, which decides how its failure is reported. A callback for user input reports it in a
// message box; one that is called again and again reports it in one line on standard error, once until it succeeds
// again.
enum CallbackKind { kInputCallback, kRepeatedCallback };

void ReportOutOfMemory(CallbackKind kind);

// Whether a frame is to be drawn; HandleDisplay clears it.
extern bool framerequested;

template<auto callback, CallbackKind kind>
struct GuardedCallback;

template<typename... Arguments, void (*callback)(Arguments...), CallbackKind kind>
struct GuardedCallback<callback, kind> {
    static void Call(Arguments... arguments) noexcept
    {
        static bool failing = false;
        try {
            callback(arguments...);
            failing = false;
        } catch (const std::bad_alloc &) {
            if (kind == kInputCallback || !failing)
                ReportOutOfMemory(kind);
            failing = true;
        }
        if (kind == kInputCallback)
            framerequested = true;
    }
};

// The wrapper of a callback, to be passed to a toolkit, as Guarded<HandleKeyboard>
template<auto callback, CallbackKind kind = kInputCallback>
constexpr auto Guarded = &GuardedCallback<callback, kind>::Call;
