#include "viewer/display.h"

#include <algorithm>
#include <cmath>

#include <GL/glu.h>
#include <GL/glut.h>

#include "export/window_capture.h"
#include "geom/clock.h"
#include "growth/camera_home.h"
#include "growth/state.h"
#include "image/bitmap.h"
#include "viewer/aggregate_drawing.h"
#include "viewer/camera.h"
#include "viewer/overlays.h"
#include "viewer/statistics.h"
#include "viewer/surface_drawing.h"

// Where an eye stands, in half eye separations to the right of the view point.
constexpr double kLeftEye = -1;
constexpr double kMonoEye = 0;
constexpr double kRightEye = 1;

FrameTime lastframe = {0, 0};

// Of frames while the camera moves: how long one may take, and for how long after, in seconds.
constexpr double kQuickFrame = 0.1;
constexpr double kRest = 0.5;

static bool quick = false;
static double perbranch = 0; // seconds that a branch takes, as the last frame tells

static void ChooseStride(double now);
static bool HasCameraMoved();
static void DrawMono();
static void DrawStereo();
static void DrawOverlays(double eye);
static void ClearBuffer(GLenum buffer);
static void AimEye(double eye);
static void SetViewport(double eye);

void HandleDisplay()
{
    const double start = GetRunTime();
    if (quick)
        ChooseStride(start);
    if (camera.stereo == kStereoNone)
        DrawMono();
    else
        DrawStereo();
    if (options.recordframes || options.dumpnext) {
        const int stereo = camera.stereo == kStereoActive;
        WindowDump("", camera.screenwidth, camera.screenheight, stereo, kImageTGACompressed);
        options.dumpnext = 0;
    } else {
        EndCaptures();
    }
    glutSwapBuffers();
    lastframe = {start, GetRunTime()};
    perbranch = (lastframe.end - lastframe.start) * drawnstride / std::max(ncells, 1);
}

void KeepFramesQuick()
{
    quick = true;
}

static void ChooseStride(double now)
{
    static double moved = 0;
    if (HasCameraMoved())
        moved = now;
    drawnstride = 1;
    if (now - moved < kRest)
        drawnstride = std::max(1, static_cast<int>(std::ceil(perbranch * ncells / kQuickFrame)));
}

// Since the last call.
static bool HasCameraMoved()
{
    static Camera last = {};
    const auto differs = [](Vector a, Vector b) { return a.x != b.x || a.y != b.y || a.z != b.z; };
    const bool moved = differs(camera.vp, last.vp) || differs(camera.vd, last.vd) ||
                       differs(camera.vu, last.vu) || camera.aperture != last.aperture;
    last = camera;
    return moved;
}

void DrawBareFrame()
{
    UpdateCameraRange();
    ClearBuffer(GL_BACK);
    AimEye(kMonoEye);
    DrawSTL(options.surfacemode, 0);
    DrawDLA(options.dlamode);
}

void HandleReshape(int width, int height)
{
    camera.screenwidth = width;
    camera.screenheight = height;
}

static void DrawMono()
{
    DrawBareFrame();
    DrawOverlays(kMonoEye);
}

// Each eye sees the aggregate drawn before the surface, the other way round than in mono (kept).
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

// Text replaces projection and view, so the boxes behind it need them anew.
static void DrawOverlays(double eye)
{
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

// Sets viewport, projection and view. The two eyes stand half an eye separation to either side of the view
// point and look in parallel; their frusta are shifted so that they meet at the focal length.
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

// The whole window, or with dual-screen stereo the eye's half of it.
static void SetViewport(double eye)
{
    const int half = camera.screenwidth / 2;
    if (camera.stereo == kStereoDualScreen)
        glViewport(eye == kRightEye ? half : 0, 0, half, camera.screenheight);
    else
        glViewport(0, 0, camera.screenwidth, camera.screenheight);
}
