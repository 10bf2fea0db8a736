// Elementary functions with the same bits on every machine: each result is the double nearest to the true value.
//
// The C library's own functions differ between processors and versions in the last bit. All code whose results affect
// a particle, a face, a flow or a file uses these instead; drawing need not. They never fail, not even without
// memory.

#pragma once

// Sine and cosine of an angle.
struct SineCosine {
    double sine, cosine;
};

// Sine and cosine of theta radians.
SineCosine FindSineCosine(double theta);

// The angle in 0..pi whose cosine is x; NaN for x outside of -1..1.
double ArcCosine(double x);

// Natural logarithm; -infinity for 0 and NaN below it. About 40 ns; the other functions take 1 to 2 microseconds.
double Logarithm(double x);

// 10 to the power x.
double PowerOfTen(double x);

// Frees what the functions above keep for the calling thread. Call it before a thread ends.
void FreeElementaryCaches();
