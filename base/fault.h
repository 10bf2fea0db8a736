// What went wrong, for the one line that a command tells and the status that it ends with.

#pragma once

#include <string>
#include <utility>

enum FaultKind {
    kNoFault = 0,
    kRequestFault = 2, // a command line or a recipe that asks for what cannot be
    kFileFault = 3,    // a file that cannot be read or written
    kMemoryFault = 4,  // memory does not suffice
    kGrowthFault = 5   // growth does not go on
};

struct Fault {
    FaultKind kind = kNoFault;
    std::string line; // without its line end

    Fault() = default;
    Fault(FaultKind what, std::string text) : kind(what), line(std::move(text)) {}
    explicit operator bool() const { return kind != kNoFault; }
};
