// Signals that end the program: a handler records them, and the program ends at a point where it is ready to.
//
// SIGHUP, SIGINT, SIGTERM, SIGPIPE, SIGXCPU and SIGUSR1; a signal that is ignored (nohup) stays ignored. In a window
// the main loop's timer checks several times a second (app/program.cpp), and RescueAggregate saves the run first
// (archive/rescue.h); growth without a window checks between two bursts of steps (batch/growth.cpp).

#pragma once

// From now on these signals are recorded. With `restartcalls`, interrupted system calls are restarted.
void NoteEndSignals(bool restartcalls);

// The signal recorded last; 0 if none was.
int NotedEndSignal();

// From now on these signals, and one recorded before, end the program at once with the status 128 + its number.
void EndAtOnceBySignals();
