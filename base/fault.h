// What went wrong: the one line that a command prints, and its exit status.

#pragma once

#include <string>
#include <utility>

enum FaultKind {
    kNoFault = 0,
    kRequestFault = 2, // an invalid command line or recipe
    kFileFault = 3,    // a file that cannot be read or written
    kMemoryFault = 4,  // memory does not suffice
    kGrowthFault = 5   // growth cannot continue
};

struct Fault {
    FaultKind kind = kNoFault;
    std::string line; // without its line end

    Fault() = default;
    Fault(FaultKind what, std::string text) : kind(what), line(std::move(text)) {}
    explicit operator bool() const { return kind != kNoFault; }
};
