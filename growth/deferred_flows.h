// Adding the flows of many particles together instead of one by one.

#pragma once

// While a DeferredFlows exists, flows are deferred, and added together when there are many, when SettleFlows is
// called and when the object is destroyed. The sums are the same to the last bit, several times faster in large
// aggregates. Meanwhile no other code may use the particles' `visited`, and weights and growthstate.maxweight are out
// of date. Without enough memory, nothing is deferred.
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

// Adds all deferred flows now.
void SettleFlows();

// Discards the tables of the particles' paths and all deferred flows.
void ForgetFlows();
