// The files that sarkelo-grow writes: which of them may be replaced.

#pragma once

#include <string>

#include <sys/types.h>

#include "archive/aggregate_file.h"
#include "batch/command.h"

// Whether two paths lead to the same place, through whatever links.
bool IsSamePlace(const std::string &a, const std::string &b);

// The fault of what cannot be written, would replace what another run wrote or what this one reads, or is to be written
// twice. Output and checkpoint may stand there where they are this run's own.
Fault CheckOutputs(const Command &command, bool ownoutput, bool owncheckpoint);

// An aggregate file that this run writes, perhaps several times. What another run has put in its place meanwhile is
// left alone.
class OwnFile
{
public:
    // What stands there now may be replaced.
    explicit OwnFile(const std::string &name);
    Fault Write(const RunRecord &run);
    // Removes it where this run wrote it, or `mayremove` what stood there.
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
