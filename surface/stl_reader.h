// Reading the constraint surface from an STL file, ASCII or binary.

#pragma once

#include <cstdio>

// How the reading of an STL file ended. If the file is at fault, there is no surface afterwards, and the bounds are
// still those of the old one.
enum STLResult {
    kSTLRead,        // the surface is the file's
    kSTLUnopened,    // not opened; the old surface stays
    kSTLBadVertices, // ASCII: a loop without three lines of keyword x y z
    kSTLShortHeader, // binary: fewer than 80 bytes
    kSTLBadCount,    // binary: more than 10,000,000 faces announced
    kSTLOutOfMemory, // memory does not hold the file's surface; the old one stays
};

// Replaces the constraint surface by the one in the file, and its name by "None". A file is ASCII when
// "solid" is within the first 6 characters of its first line. Degenerate faces are removed; normals in
// the file are not used. The numbers of a binary file are reversed in byte order while options.byteswap is
// set; a truncated binary file fills its remaining faces with the values last read (kept). In verbose mode
// reports to standard error.
STLResult ReadSTLFile(const char *path);

// Reads characters into buf until a line feed or carriage return, which is consumed and not stored, or until
// n characters are stored; buf needs n + 1 bytes and is always terminated. Returns 1, or 0 at the end of the
// file, whatever was stored by then.
int ReadLine(FILE *f, char *buf, int n);

// Read a 32-bit number of the machine's byte order, or of the opposite one where swap is nonzero, into the 4
// bytes at buf. Return 1, or 0 with buf unchanged at the end of the file.
int ReadInt(FILE *f, void *buf, int swap);
int ReadFloat(FILE *f, void *buf, int swap);
