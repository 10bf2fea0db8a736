// Replaying the growth of an aggregate from its particles, which are in the order of arrival, and their parents.

#pragma once

#include <vector>

// While a Replay exists, cells holds only the first particles, with the flows that they had then; its destructor
// restores all particles and flows. Roots start without flow, even those of a run that was restarted.
class Replay
{
public:
    // Starts from the roots alone.
    Replay();
    ~Replay();
    Replay(const Replay &) = delete;
    Replay &operator=(const Replay &) = delete;

    // Grows to `count` particles, at most to the whole aggregate. Does nothing if there are as many already.
    void GrowTo(int count) const;

private:
    int allcells;
    double maxweight;
    std::vector<double> weights;
};
