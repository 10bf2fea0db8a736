#include "viewer/display.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>

#include <GL/glu.h>
#include <GL/glut.h>
#include <forms.h>

#include "base/end_signals.h"
#include "export/window_capture.h"
#include "geom/clock.h"
#include "growth/camera_home.h"
#include "growth/state.h"
#include "image/bitmap.h"
#include "toolkit/callback.h"
#include "toolkit/control_panel.h"
#include "toolkit/main_window.h"
#include "viewer/aggregate_dialog.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/camera.h"
#include "viewer/overlays.h"
#include "viewer/statistics.h"
#include "viewer/surface_drawing.h"

// Position of an eye, in half eye separations to the right of the view point
constexpr double kLeftEye = -1;
constexpr double kMonoEye = 0;
constexpr double kRightEye = 1;

FrameTime lastframe = {0, 0};

// Longest time of a frame while the camera moves or input is waiting, and how long after the last movement the camera
// counts as moving; seconds
constexpr double kQuickFrame = 0.1;
constexpr double kRest = 0.5;

static bool keepsframesquick = false;
static bool simplified = false; // the current or last frame leaves branches out, or draws tubes as lines
static double framestart = 0;   // start of the current or last frame
static double lastmove = 0;     // time of the last frame before which the camera had moved
static int shownparticles = 0;  // number of particles when the last frame was shown
// Seconds for a branch when it was last drawn in each AggregateMode; 0 if it has never been.
static double costs[kAggregateTubes + 1];

static int ChooseBranches();
static bool IsCaptured();
static bool Capture();
static bool ShouldAbandonFrame();
static bool HasCameraMoved();
static void DrawFrame();
static void DrawBareFrame();
static void DrawMono();
static void DrawStereo();
static void DrawOverlays(double eye);
static void ClearBuffer(GLenum buffer);
static void AimEye(double eye);
static void SetViewport(double eye);

void HandleDisplay()
{
    const bool captured = IsCaptured();
    framestart = GetRunTime();
    const int mode = ChooseBranches();
    DrawFrame();
    framerequested = drawingpart.stopped;
    bool saved = true;
    if (!drawingpart.stopped) {
        saved = Capture();
        glutSwapBuffers();
        shownparticles = ncells;
        if (viewwindow)
            ShowFileInTitle();
    }
    lastframe = {framestart, GetRunTime()};
    if (!captured)
        costs[mode] = (lastframe.end - lastframe.start) / std::max(drawingpart.drawn, 1);
    if (viewwindow && !saved) {
        options.recordframes = 0;
        fl_show_message("File Error", "The window's picture could not be saved", strerror(errno));
    }
}

void KeepFramesQuick()
{
    keepsframesquick = true;
}

bool IsFrameWanted()
{
    const bool grows =
        growthstate.running && (ncells != shownparticles || options.showinfo || options.showextras);
    const bool rests = simplified && GetRunTime() - lastmove >= kRest;
    return framerequested || grows || rests || options.recordframes || options.autospin != 0 ||
           options.boxcountrequest || AreStatisticsShown();
}

// Decides which branches the frame draws. Returns the AggregateMode in which it draws them.
static int ChooseBranches()
{
    if (HasCameraMoved())
        lastmove = framestart;
    const int mode = std::clamp<int>(options.dlamode, 0, kAggregateTubes);
    const bool moves = framestart - lastmove < kRest;
    simplified = keepsframesquick && moves && !IsCaptured() && costs[mode] * ncells > kQuickFrame;
    drawingpart.mostbranches = INT_MAX;
    drawingpart.aslines = simplified && mode == kAggregateTubes;
    if (!simplified)
        return mode;
    const int thinmode = drawingpart.aslines ? int{kAggregateLines} : mode;
    // While the time of lines is not known, that of tubes is used: lines take no longer.
    const double cost = costs[thinmode] > 0 ? costs[thinmode] : costs[mode];
    drawingpart.mostbranches = static_cast<int>(std::clamp<double>(kQuickFrame / cost, 1, ncells));
    return thinmode;
}

static bool IsCaptured()
{
    return options.recordframes || options.dumpnext;
}

// Captures the frame if requested. Returns false if it could not be saved.
static bool Capture()
{
    if (!IsCaptured()) {
        EndCaptures();
        return true;
    }
    const int stereo = camera.stereo == kStereoActive;
    options.dumpnext = 0;
    return WindowDump("", camera.screenwidth, camera.screenheight, stereo, kImageTGACompressed) != 0;
}

static bool ShouldAbandonFrame()
{
    return GetRunTime() - framestart > kQuickFrame &&
           (NotedEndSignal() != 0 || (!IsCaptured() && IsInputWaiting(IsPanelShown())));
}

// Whether the camera has moved since the last call
static bool HasCameraMoved()
{
    static Camera last = {};
    const bool hasmoved = camera.vp != last.vp || camera.vd != last.vd || camera.vu != last.vu ||
                          camera.aperture != last.aperture;
    last = camera;
    return hasmoved;
}

void HandleReshape(int width, int height)
{
    camera.screenwidth = width;
    camera.screenheight = height;
}

static void DrawFrame()
{
    drawingpart.shouldstop = viewwindow ? ShouldAbandonFrame : nullptr;
    drawingpart.stopped = false;
    if (camera.stereo == kStereoNone)
        DrawMono();
    else
        DrawStereo();
}

// Draws surface and aggregate without overlays. UpdateCameraRange derives focal length, eye separation and clipping
// planes from the view point in every frame.
static void DrawBareFrame()
{
    UpdateCameraRange();
    ClearBuffer(GL_BACK);
    AimEye(kMonoEye);
    DrawSTL(options.surfacemode, 0);
    DrawDLA(options.dlamode);
}

static void DrawMono()
{
    DrawBareFrame();
    DrawOverlays(kMonoEye);
}

// For each eye the aggregate is drawn before the surface; in mono it is drawn after the surface (kept).
static void DrawStereo()
{
    UpdateCameraRange();
    const bool active = camera.stereo == kStereoActive;
    ClearBuffer(active ? GL_BACK_RIGHT : GL_BACK);
    AimEye(kRightEye);
    DrawDLA(options.dlamode);
    DrawSTL(options.surfacemode, 0);
    DrawOverlays(kRightEye);

    if (active)
        ClearBuffer(GL_BACK_LEFT);
    AimEye(kLeftEye);
    DrawDLA(options.dlamode);
    DrawSTL(options.surfacemode, 0);
    DrawOverlays(kLeftEye);
}

// Text replaces projection and view, so AimEye sets them again before the boxes of a box count are drawn.
static void DrawOverlays(double eye)
{
    if (drawingpart.stopped)
        return;
    DrawExtras();
    DrawInfo();
    if (options.boxcountrequest) {
        AimEye(eye);
        CalcBoxCount(0, 1);
    }
    DrawStatistics(0);
}

static void ClearBuffer(GLenum buffer)
{
    glDrawBuffer(buffer);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// Sets viewport, projection and view. The two eyes are half an eye separation to either side of the view
// point and look in parallel; their frusta are shifted so that they coincide at the focal length.
static void AimEye(double eye)
{
    double ratio = static_cast<double>(camera.screenwidth) / static_cast<double>(camera.screenheight);
    if (camera.stereo == kStereoDualScreen)
        ratio /= 2;
    const double wd2 = camera.nearclip * std::tan(camera.aperture * kDegreesToRadians / 2);
    const double offset = eye * (camera.eyesep / 2) * (camera.nearclip / camera.focallength);

    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    SetViewport(eye);
    glFrustum(-ratio * wd2 - offset, ratio * wd2 - offset, -wd2, wd2, camera.nearclip, camera.farclip);

    Vector right = RightVector();
    Normalise(&right);
    const Vector from = camera.vp + (eye * camera.eyesep / 2) * right;
    const Vector at = from + camera.vd;
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(from.x, from.y, from.z, at.x, at.y, at.z, camera.vu.x, camera.vu.y, camera.vu.z);
}

// Sets the viewport to the whole window, or in dual-screen stereo to the eye's half of the window.
static void SetViewport(double eye)
{
    const int half = camera.screenwidth / 2;
    if (camera.stereo == kStereoDualScreen)
        glViewport(eye == kRightEye ? half : 0, 0, half, camera.screenheight);
    else
        glViewport(0, 0, camera.screenwidth, camera.screenheight);
}
