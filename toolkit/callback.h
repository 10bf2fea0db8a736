// The boundary between the toolkits and the program's callbacks: no exception passes through their C code.
// Memory that runs out in a callback becomes a message, and the program goes on. After what the user does, a frame is
// requested.

#pragma once

#include <new>

// What a callback is for, which decides how a failure is told: what the user has asked for by a message box;
// what is called again and again by itself in one line on standard error, until it succeeds again.
enum CallbackKind { kInputCallback, kRepeatedCallback };

void ReportOutOfMemory(CallbackKind kind);

// A frame is to be drawn. Whoever draws one clears it.
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

// A function as it is handed to a toolkit: Guarded<HandleKeyboard>.
template<auto callback, CallbackKind kind = kInputCallback>
constexpr auto Guarded = &GuardedCallback<callback, kind>::Call;
