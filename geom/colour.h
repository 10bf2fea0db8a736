#pragma once

struct Colour {
    double r, g, b; // 0..1
};
