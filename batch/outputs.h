// The files that sarkelo-grow writes: which existing files it may replace, and the writing of output and checkpoint

#pragma once

#include <string>

#include <sys/types.h>

#include "archive/aggregate_file.h"
#include "batch/command.h"

// Whether two paths mean the same file, after links are resolved
bool IsSameFile(const std::string &a, const std::string &b);

// Checks all outputs of a command. A fault is an output that cannot be written, that exists already without --force,
// that is also an input, or that is named twice. The output and the checkpoint may exist if they are this run's own
// (`ownoutput`, `owncheckpoint`).
Fault CheckOutputs(const Command &command, bool ownoutput, bool owncheckpoint);

// An aggregate file that this run writes, perhaps several times. It is not replaced or removed if another program has
// written it in the meantime.
class OwnFile
{
public:
    // A file that exists at this time may be replaced.
    explicit OwnFile(const std::string &name);
    Fault Write(const RunRecord &run);
    // Removes the file if this run has written it, or if `mayremove`.
    void Remove(bool mayremove);
    [[nodiscard]] const std::string &Path() const { return path; }

private:
    struct Identity {
        bool exists = false;
        bool regular = false;
        dev_t device = 0;
        ino_t number = 0;
        bool operator==(const Identity &) const = default;
    };
    [[nodiscard]] Identity ReadIdentity() const;

    std::string path;
    Identity known;
    bool written = false;
};
