// Saving a file without loss: the file that it replaces stays until the new one is complete.

#pragma once

#include <cerrno>
#include <cstdio>
#include <string>

#include "base/fault.h"

// Opens a path for writing as fopen does with mode "w", but writes to a temporary file in the same folder. Finish
// renames it to the path; an unfinished file is removed. An existing file keeps its mode and owner, and a symbolic
// link to it stays. Written in place are: anything that is not a regular file, a file with several hard links, and a
// file in whose folder no temporary file can be made. A path that fopen could not open is refused as well.
//
// Nothing is printed: Finish returns the fault. Only building the text of a fault can throw std::bad_alloc.
class OutputFile
{
public:
    explicit OutputFile(const char *path);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    // The stream to write to; nullptr if the file could not be opened, and after Finish.
    [[nodiscard]] FILE *Stream() const { return stream; }

    // Why it could not be opened or written: a value of errno, EIO if the system gave none.
    [[nodiscard]] int Reason() const { return reason != 0 ? reason : EIO; }

    // Completes the file. Returns why it could not be opened or completely written; the earlier file is then
    // unchanged, unless it was written in place.
    Fault Finish();

private:
    void Open();
    bool OpenTemporary();
    bool CreateTemporary();
    bool Complete();
    void Discard();

    const char *name;
    FILE *stream = nullptr;
    int reason = 0;
    bool replaces = false; // a file of this name exists
    std::string target;    // the path, symbolic links resolved if the file exists
    std::string temporary; // path of the temporary file; empty: written in place
};

// The fault that a file cannot be written for this reason
Fault WriteFault(const std::string &path, const std::string &reason, FaultKind kind = kFileFault);
