// A file being saved, in a way that loses nothing: what it replaces stays until the new file is whole.

#pragma once

#include <cerrno>
#include <cstdio>
#include <string>

// Opens a path for writing as fopen does with mode "w", but writes beside it. Finish puts the new file in its
// place; a file that is not finished leaves no trace. An existing file keeps its mode and owner, and a
// symbolic link goes on pointing to it. Written in place are: what is no regular file, a file with several
// hard links, and a file beside which none can be made. What "w" could not open is refused as well.
//
// Every fault is told in one line on standard error, with the path and the system's reason, unless asked to
// be silent. Nothing here throws.
class OutputFile
{
public:
    explicit OutputFile(const char *path, bool silent = false);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    // The stream to write to; nullptr where the file could not be opened, and once it is finished.
    [[nodiscard]] FILE *Stream() const { return stream; }

    // Why it could not be opened or written: a value of errno, EIO where the system says none.
    [[nodiscard]] int Reason() const { return reason != 0 ? reason : EIO; }

    // Ends the writing. Returns false where something could not be written: where it was written beside, the
    // earlier file stands there as before.
    bool Finish();

private:
    void Open();
    bool OpenBeside();
    bool CreateBeside();
    void Discard();
    void Report() const;

    const char *name;
    bool quiet;
    FILE *stream = nullptr;
    int reason = 0;
    bool replaces = false; // a file of the name was there
    std::string target;    // what the name stands for, symbolic links followed
    std::string beside;    // where the new file is written; empty: in place
};
