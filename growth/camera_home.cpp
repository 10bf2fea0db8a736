#include "growth/camera_home.h"

#include "growth/state.h"

void CameraHome()
{
    static bool initialised = false;
    if (!initialised) {
        camera.stereo = kStereoNone;
        camera.screenwidth = 800;
        camera.screenheight = 600;
        initialised = true;
    }
    camera.aperture = 60;
    camera.vp = {60, 0, 0};
    camera.pr = {0, 0, 0};
    UpdateCameraRange();
    camera.vd = {-1, 0, 0};
    camera.vu = {0, 0, 1};
    Normalise(&camera.vd);
    Normalise(&camera.vu);
}

void UpdateCameraRange()
{
    camera.focallength = Modulus(camera.vp - camera.pr);
    camera.eyesep = camera.focallength / 30;
    camera.nearclip = camera.focallength / 10;
    camera.farclip = camera.focallength * 10;
}
