#include "app/command_line.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "growth/state.h"

void ReadSwitches(int argc, char **argv)
{
    const auto is = [](const char *argument, const char *name) { return strcmp(argument, name) == 0; };
    for (int i = 1; i < argc; i++) {
        if (is(argv[i], "-h")) {
            GiveUsage(argv[0]);
            exit(-1);
        } else if (is(argv[i], "-d")) {
            options.debug = 1;
        } else if (is(argv[i], "-f")) {
            options.fullscreen = !options.fullscreen;
        } else if (is(argv[i], "-s")) {
            camera.stereo = kStereoActive;
        } else if (is(argv[i], "-ss")) {
            camera.stereo = kStereoDualScreen;
            if (camera.screenwidth <= INT_MAX / 2)
                camera.screenwidth *= 2;
        }
    }
}

void GiveUsage(const char *path)
{
    fprintf(stderr, "Usage: %s [command line options]\n", path);
    fputs("Command line options\n"
          "       -h    this text\n"
          "       -d    more verbose mode\n"
          "       -f    full screen\n"
          "       -s    active (quad buffer) stereo\n"
          "      -ss    dual screen stereo\n"
          "Mouse controls\n"
          "     left    rotate camera\n"
          "   middle    roll camera\n"
          "    right    menus\n"
          "Function keys: see menus\n"
          "Keyboard commands\n"
          "        q    quit\n"
          "        h    reset camera\n"
          "      [,]    roll camera\n"
          "      <,>    more camera forward, backward\n"
          "      +,-    zoom camera in, out\n"
          "      a,A    autospin speed increase/decrease\n"
          "        w    window dump to TGA file\n",
          stderr);
    fprintf(stderr, "Version: %g\n", versionid / 100.0);
}
