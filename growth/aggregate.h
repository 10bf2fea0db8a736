// The particles of cells: adding one, and forgetting what growth has derived from them.

#pragma once

#include "geom/vector.h"

// Makes a walker at pos that has stuck to particle `partner` the newest particle, without flow. Returns false, growth
// stopped (growthstate.running = 0), when memory does not suffice.
bool AddParticle(Vector pos, int partner);

// Makes room in cells for `count` particles: until then, AddParticle does not move the array. Returns false, nothing
// changed, when memory does not suffice.
bool ReserveParticles(int count);

// Number of particles that there is room for in cells, at least ncells.
int ParticleCapacity();

// Raises growthstate.radius to the largest distance of any particle from the origin, after a particle was added.
void UpdateRadius();

// Discards everything that growth has derived from the particles. Call after replacing the particles of cells rather
// than appending to them.
void ForgetAggregate();

// Number of calls of ForgetAggregate, which identifies the present aggregate.
unsigned AggregateNumber();
