#include "growth/state.h"

#include "growth/parameters.h"

Particle *cells = nullptr;
int ncells = 0;
Vector *roots = nullptr;
Vector seeds[kSeedRing];
int nseeds = 0;

GrowthState growthstate;
Options options;
InterfaceState interfacestate;
Camera camera;
Stats stats;

int settingformvisible = 0;
int stlformvisible = 0;
int sliceformvisible = 0;
bool viewwindow = false;

void SetProgramDefaults()
{
    options = {};
    options.framerate = 30.0;
    options.showextras = 1;
    options.showinfo = 1;
    options.marker1[0] = 10;
    options.marker2[2] = 10;
    SetDefault(&options.dlamode);
    SetDefault(&options.surfacemode);
    SetDefault(&options.printscale);
    SetDefaults("slices");
    interfacestate = {-1, 0, 0, 0};
}
