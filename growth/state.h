// The global records: the state of the whole program, read and written directly by the code of all folders.
//
// Lengths are in units of the aggregate's coordinates, in which the default branch has length 1.

#pragma once

#include "geom/vector.h"

constexpr int versionid = 102; // version times 100

// The aggregate -------------------------------------------------------------------------------------------

struct Particle {
    Vector p;
    double weight; // flow: each particle attached beyond this one added 1/n, on a path of about n particles
    int parent;    // index in cells, -1 for a root
    int visited;   // scratch of the chain export, slicing and deferred flows; no meaning otherwise
};

extern Particle *cells; // malloc'ed, roots first
extern int ncells;

// malloc'ed: the positions read from a seed file, growthstate.nroots of them after a reading.
extern Vector *roots;

constexpr int kSeedRing = 1000;
extern Vector seeds[kSeedRing]; // the latest launch positions; launch k is at k mod kSeedRing
extern int nseeds;              // launches since the last initialisation

// Growth --------------------------------------------------------------------------------------------------

// Where new walkers are launched.
enum SourceType {
    kSourceSphere = 1,
    kSourceAxisPlusX,
    kSourceAxisMinusX,
    kSourceDoubleAxisX,
    kSourceAxisPlusY,
    kSourceAxisMinusY,
    kSourceDoubleAxisY,
    kSourceAxisPlusZ,
    kSourceAxisMinusZ,
    kSourceDoubleAxisZ,
    kSourcePlaneX,
    kSourcePlaneY,
    kSourcePlaneZ,
    kSourceHemisphereX,
    kSourceHemisphereY,
    kSourceHemisphereZ,
    kSourceSurface,
    kSourceInfinity // of flights alone, and not in the menus
};

// How walkers move.
enum WalkType { kWalkSteps, kWalkFlights };

// How roots are placed.
enum RootType {
    kRootOrigin = 1,
    kRootSpherical,
    kRootRandomX,
    kRootRandomY,
    kRootRandomZ,
    kRootRingX,
    kRootRingY,
    kRootRingZ
};

struct GrowthState {
    Vector pos;            // the walker
    int sourcetype;        // SourceType
    int running;           // nonzero while the aggregate grows
    double radius;         // largest distance of a particle from the origin, at least what a restart set
    double branchlength;   // length of a walker's step, and the reach within which it sticks
    int stepcount;         // walker steps since the last particle stuck
    long steptotal;        // walker steps since the run started
    double bias;           // drift per step, percent of the step length
    double maxweight;      // largest weight of any particle
    double stickiness;     // probability of sticking, percent
    double thickfrom;      // thickness of the branch with the largest flow
    double thickto;        // thickness of a tip, less than thickfrom by default (kept)
    int seed;              // of both random generators
    double rotation;       // of the walker about the z axis per step, degrees
    int nroots;            // number of roots
    double rootrange;      // extent over which roots are placed
    int roottype;          // RootType
    char rootname[128];    // name of the root distribution, or the path of the seed file
    int association;       // nonzero: a particle attaches only to its own class, index mod nroots
    int walk;              // WalkType
    double launchscale;    // radius of the launch sphere, in units of AggregateReach()
    double killingscale;   // where walkers are abandoned, in launch radii; 1: they stay within the sphere
    double intersectrange; // self-intersection tolerance, percent of the branch length; 0 is off
    char surfacename[256]; // name of the constraint surface, or "None"
};
extern GrowthState growthstate;

// Program -------------------------------------------------------------------------------------------------

// How the aggregate is drawn (options.dlamode).
enum AggregateMode { kAggregateOff = 1, kAggregatePoints = 2, kAggregateLines = 3, kAggregateTubes = 5 };

// How the constraint surface is drawn (options.surfacemode).
enum SurfaceMode { kSurfaceOff = 1, kSurfaceWireframe, kSurfaceMidpoints, kSurfaceVertices, kSurfaceSolid };

struct Options {
    int debug;           // verbose mode: progress and rejections go to standard error
    int fullscreen;      // open the window full screen
    int recordframes;    // every displayed frame is saved as an image
    int dumpnext;        // the next displayed frame is saved as an image
    double framerate;    // redisplays per second
    int showextras;      // draw circles, axes, launches, roots and lights
    int showinfo;        // draw the information text
    int surfacemode;     // SurfaceMode
    int dlamode;         // AggregateMode
    double printscale;   // millimetres a unit of length, of a body to print
    int byteswap;        // reverse the bytes of numbers read from binary STL files
    int autospin;        // camera turn per redisplay, in 1/200 radian
    float marker1[4];    // position of the first light, in GL's format
    float marker2[4];    // position of the second light
    int boxcountrequest; // nonzero: growth pauses and boxes are counted
    int slicecount;      // number of slices
    double sliceparam1;  // normal of the slicing planes
    double sliceparam2;
    double sliceparam3;
};
extern Options options;

struct InterfaceState {
    int button; // pressed last: -1 none yet, 0 left, 1 middle; unchanged by a release
    int shift;  // 1 while shift is the only modifier held
    int mousex; // last position, window pixels
    int mousey;
};
extern InterfaceState interfacestate;

// How the window shows depth (camera.stereo).
enum StereoMode { kStereoNone = 0, kStereoActive = 1, kStereoDualScreen = 2 };

struct Camera {
    Vector vp;          // view point
    Vector vd;          // view direction, unit length
    Vector vu;          // up, unit length
    Vector pr;          // point of rotation
    double focallength; // distance of the focal plane
    double aperture;    // vertical field of view, degrees
    double eyesep;      // eye separation
    double nearclip;
    double farclip;
    int stereo;      // StereoMode
    int screenwidth; // window size, pixels
    int screenheight;
};
extern Camera camera;

constexpr int kBranchClasses = 10;
constexpr int kBoxLevels = 10;

struct Stats {
    int timestep;                    // number of particles when statistics were last taken, 0 when none
    int branchcount[kBranchClasses]; // particles with 0 to 8 children, and with 9 or more
    double boxsize[kBoxLevels];      // box edge per level
    int boxcount[kBoxLevels];        // occupied boxes per level, -1 for a level not reached
};
extern Stats stats;

// Whether each control panel is shown.
extern int settingformvisible;
extern int stlformvisible;
extern int sliceformvisible;

// True in sarkelo-view, whose window opens and saves files, asks before unsaved particles are lost, reports failures
// in message boxes, and draws a frame only when something has changed. False in sarkelo.
extern bool viewwindow;
