#pragma once

// Makes the surface a sphere about the origin of 4 n n triangles, less the 4 n at its poles that vanish.
void SetSphere(double radius, int n);
