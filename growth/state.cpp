#include "growth/state.h"

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
