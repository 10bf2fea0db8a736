// Flows: what each particle that sticks adds along the path to its root.

#pragma once

// Adds the flow that a particle brings which sticks to particle `partner`: 1/n along the path of n particles from
// it to its root. The walk that counts n stops at index 0 and the walk that adds passes through it (kept): paths
// that end in root 0 get a slightly larger share. Returns the largest flow on the path.
double AddFlow(int partner);

// The flow of the newest particle is added, or held. Returns the largest flow on its path, 0 where it is held.
double BringFlow();

// While one exists, flows are held, and added together when many are, when SettleFlows is called and when it goes: the
// same sums to the last bit, several times faster in large aggregates. Nobody else may use `visited` of the particles
// meanwhile; weights and growthstate.maxweight are behind. Where memory does not suffice, nothing is held.
class HeldFlows
{
public:
    HeldFlows();
    ~HeldFlows();
    HeldFlows(const HeldFlows &) = delete;
    HeldFlows &operator=(const HeldFlows &) = delete;
};

// Adds the flows that are held.
void SettleFlows();

// Drops what is known of the particles' paths, and flows that are held.
void ForgetPaths();
