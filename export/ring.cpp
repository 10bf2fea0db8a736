#include "export/ring.h"

#include <map>
#include <utility>
#include <vector>

std::span<const SineCosine> DivideCircle(int points, int parts)
{
    static std::map<std::pair<int, int>, std::vector<SineCosine>> circles;
    std::vector<SineCosine> &circle = circles[{points, parts}];
    for (int k = static_cast<int>(circle.size()); k < points; k++)
        circle.push_back(FindSineCosine(kTwoPi * k / parts));
    return circle;
}
