// Flows that are added together when many particles have come, in place of one by one.

#pragma once

// While one exists, flows are deferred, and added together when many are, when SettleFlows is called and when it goes:
// the same sums to the last bit, several times faster in large aggregates. Nobody else may use `visited` of the particles
// meanwhile; weights and growthstate.maxweight are behind. Where memory does not suffice, nothing is deferred.
class DeferredFlows
{
public:
    DeferredFlows();
    ~DeferredFlows();
    DeferredFlows(const DeferredFlows &) = delete;
    DeferredFlows &operator=(const DeferredFlows &) = delete;
};

// Adds the flow of the newest particle, or defers it, and updates growthstate.maxweight.
void AddFlowOfNewest();

// Adds the flows that are deferred.
void SettleFlows();

// Drops what is known of the particles' paths, and flows that are deferred.
void ForgetFlows();
