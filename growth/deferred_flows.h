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

// For growth on several threads, on which particles are added while another thread adds flows:

// Whether a DeferredFlows exists.
bool AreFlowsDeferred();

// Whether so many flows of the first `count` particles are deferred that they should be added.
bool AreManyFlowsDeferred(int count);

// Adds the deferred flows of the particles before `end`. Meanwhile, other particles may be added to cells, if the array
// does not move, but nothing else of this file may be called; then FinishDeferredFlows has to be.
void AddDeferredFlowsBefore(int end);
void FinishDeferredFlows(int end);

// Discards the tables of the particles' paths and all deferred flows.
void ForgetFlows();
