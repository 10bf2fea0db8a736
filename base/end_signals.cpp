#include "base/end_signals.h"

#include <csignal>
#include <initializer_list>

#include <unistd.h>

static volatile std::sig_atomic_t noted = 0;

static void SetHandler(void (*handler)(int), int flags);

void NoteEndSignals(bool restartcalls)
{
    SetHandler([](int number) { noted = number; }, restartcalls ? SA_RESTART : 0);
}

int NotedEndSignal()
{
    return noted;
}

void EndAtOnceBySignals()
{
    SetHandler([](int number) { _exit(128 + number); }, 0);
    if (noted != 0)
        _exit(128 + noted);
}

static void SetHandler(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGPIPE, SIGXCPU, SIGUSR1}) {
        struct sigaction old = {};
        sigaction(number, nullptr, &old);
        if (old.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
}
