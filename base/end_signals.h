// Signals that end the program: noted when they come, and carried out where the program is ready for it.
//
// SIGHUP, SIGINT, SIGTERM, SIGPIPE, SIGXCPU and SIGUSR1; one that is ignored stays ignored, as nohup wants it. In a
// window the main loop's timer looks several times a second (app/program.cpp) and RescueAggregate keeps the run first
// (archive/rescue.h); growth without a window looks between two bursts of steps (batch/growth.cpp).

#pragma once

// From now on signals are noted. With `restartcalls`, system calls that a signal interrupts go on.
void NoteEndSignals(bool restartcalls);

// The signal that was noted last; 0 while none was.
int NotedEndSignal();

// From now on such a signal ends the program at once, with the status 128 + its number.
void EndAtOnceBySignals();
