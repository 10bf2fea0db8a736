// Why a walker that meets the aggregate may not stick.

#pragma once

#include "geom/vector.h"

// Whether a walker at pos that would stick to particle `partner` is refused: its branch would come too near to another,
// or cross the constraint surface, or it may have come through a gap of the surface. Lack of memory refuses it, too, and
// stops growth (growthstate.running = 0).
bool IsRefused(Vector pos, int partner);
