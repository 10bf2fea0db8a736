// Prints the number of faces and the bounds of an STL file as the program reads it.

#include <cstdio>

#include "growth/parameters.h"
#include "growth/state.h"
#include "surface/stl_reader.h"
#include "surface/surface.h"

int main(int argc, char **argv)
{
    SetProgramDefaults();
    if (argc != 2 || ReadSTLFile(argv[1]) != kSTLRead)
        return 1;
    printf("%d %.4f %.4f %.4f %.4f %.4f %.4f\n", nstltri, stlmin.x, stlmax.x, stlmin.y, stlmax.y, stlmin.z,
           stlmax.z);
    return 0;
}
