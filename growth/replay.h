// How an aggregate grew, from its parents: its particles stand in the order of arrival.

#pragma once

#include <vector>

// While one lives, cells holds the first of its particles, with the flows that they had then; all are back when it
// goes. Roots start without flow, also those of a run that was restarted.
class Replay
{
public:
    // From the roots alone.
    Replay();
    ~Replay();
    Replay(const Replay &) = delete;
    Replay &operator=(const Replay &) = delete;

    // Goes on to so many particles: no fewer than there are, and no more than there were.
    void GrowTo(int count) const;

private:
    int allcells;
    double maxweight;
    std::vector<double> weights;
};
