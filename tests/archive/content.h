// What a stored run is, to be compared.

#pragma once

#include <string>

#include "archive/aggregate_file.h"

// Everything that a stored run is, byte after byte.
inline std::string Content(const StoredAggregate &stored)
{
    std::string bytes;
    const auto add = [&](const auto &value) {
        bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
    };
    for (int i = 0; i < stored.count; i++) {
        add(stored.particles[i].p);
        add(stored.particles[i].weight);
        add(stored.particles[i].parent);
    }
    for (int i = 0; i < stored.facecount; i++)
        for (const Vector corner : stored.faces[i].p)
            add(corner);
    for (const double value : stored.values)
        add(value);
    for (const Vector launch : stored.launches)
        add(launch);
    for (const uint32_t word : stored.generators.words)
        add(word);
    const GrowthState &state = stored.state;
    const Camera &view = stored.run.view;
    for (const Vector v : {state.pos, view.vp, view.vd, view.vu, view.pr})
        add(v);
    for (const double number : {state.radius, state.maxweight, stored.run.seconds, view.aperture})
        add(number);
    for (const int number : {state.stepcount, stored.launchcount, int{stored.run.fromwindow}})
        add(number);
    add(stored.generators.congruence);
    add(stored.state.steptotal);
    return bytes + state.rootname + "|" + state.surfacename;
}
