#include "app/view_command.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "growth/parameters.h"
#include "growth/state.h"

constexpr int kLargestSize = 8192;
constexpr int kMostPictures = 9999;

static bool ReadMode(const void *field, const std::string &name, int *mode);
static Fault Interpret(const std::string &size, const std::string &where, PictureRequest *picture,
                       ViewCommand *command);

bool ReadViewCommand(int argc, char **argv, ViewCommand *command, Fault *fault)
{
    // The window's switches are words of one dash.
    std::vector<std::string> rest;
    for (int i = 1; i < argc; i++) {
        const std::string word = argv[i];
        if (word == "-d" || word == "-f" || word == "-s" || word == "-ss")
            command->switches.push_back(word);
        else
            rest.insert(rest.begin(), word); // the library takes them last to first
    }
    CLI::App app("Shows a diffusion limited aggregate, or makes pictures of it without a screen.",
                 "sarkelo-view");
    PictureRequest picture;
    std::string size, mode, surface, where;
    char version[32];
    snprintf(version, sizeof version, "sarkelo-view %g", versionid / 100.0);
    app.set_version_flag("--version", version, "Print the version");
    app.footer(
        "Switches of the window: -d verbose, -f full screen, -s active stereo, -ss dual-screen stereo.");
    app.add_option("FILE", command->file, "An aggregate file, or a recipe (.toml); without one, a new run")
        ->type_name(" ");
    app.add_option("--picture", picture.path, "Make a picture (PNG) in place of a window")->type_name("FILE");
    app.add_option("--size", size, "Its pixels, 1920x1080 if missing, at most 8192x8192")->type_name("WxH");
    app.add_option("--mode", mode, "Draw the aggregate as tubes, lines, points or off")->type_name("MODE");
    app.add_option("--surface", surface, "Draw the surface as wireframe, midpoints, vertices, solid or off")
        ->type_name("MODE");
    app.add_flag("--fit", command->fits, "The whole of it in view, from where the camera stands");
    app.add_option("--camera", where, "home: the camera where a window starts")->type_name("home");
    app.add_option("--turn", picture.turn, "Turn the camera about the z axis")->type_name("DEGREES");
    app.add_option("--tilt", picture.tilt, "Raise the camera, after it")->type_name("DEGREES");
    app.add_option("--zoom", picture.zoom, "Draw so many times as large")
        ->type_name("FACTOR")
        ->check(CLI::Range(0.01, 100.0));
    app.add_option("--samples", picture.samples, "Samples a pixel, 4 if missing; 1: no antialiasing")
        ->type_name("N");
    CLI::Option *turntable =
        app.add_option("--turntable", picture.turntable, "So many pictures round the z axis")
            ->type_name("N")
            ->check(CLI::Range(1, kMostPictures));
    app.add_option("--film", picture.film, "So many pictures of the aggregate as it grew")
        ->type_name("N")
        ->check(CLI::Range(1, kMostPictures))
        ->excludes(turntable);
    app.add_flag("--whole", command->whole, "Draw every frame of the window whole, however long it takes");
    app.add_flag("--force", command->overwrites, "Overwrite pictures that exist");
    try {
        app.parse(std::move(rest));
    } catch (const CLI::Success &asked) {
        app.exit(asked);
        return false;
    } catch (const CLI::ParseError &error) {
        std::string line = error.what();
        std::replace(line.begin(), line.end(), '\n', ' ');
        *fault = {kRequestFault, line + " (see sarkelo-view --help)"};
        return false;
    }
    if (!mode.empty() && !ReadMode(&options.dlamode, mode, &command->mode))
        *fault = {kRequestFault, "--mode " + mode + ": tubes, lines, points or off is expected"};
    else if (!surface.empty() && !ReadMode(&options.surfacemode, surface, &command->surfacemode))
        *fault = {kRequestFault,
                  "--surface " + surface + ": wireframe, midpoints, vertices, solid or off is expected"};
    else
        *fault = Interpret(size, where, &picture, command);
    return !*fault;
}

static bool ReadMode(const void *field, const std::string &name, int *mode)
{
    const std::optional<int> code = FindNamed(ParameterOf(field), name);
    if (code)
        *mode = *code;
    return code.has_value();
}

static Fault Interpret(const std::string &size, const std::string &where, PictureRequest *picture,
                       ViewCommand *command)
{
    if (!where.empty() && where != "home")
        return {kRequestFault, "--camera " + where + ": home is expected"};
    if (!where.empty() && command->fits)
        return {kRequestFault, "--camera home and --fit exclude each other"};
    command->fromhome = !where.empty();
    if (picture->path.empty()) {
        if (!size.empty() || picture->turntable > 0 || picture->film > 0)
            return {kRequestFault, "--size, --turntable and --film need --picture FILE"};
        return {};
    }
    if (command->file.empty())
        return {kRequestFault, "--picture needs an aggregate file"};
    if (std::filesystem::path(picture->path).extension() != ".png")
        return {kRequestFault, "--picture " + picture->path + ": a name that ends in .png is expected"};
    if (picture->samples != 1 && picture->samples != 4)
        return {kRequestFault, "--samples " + std::to_string(picture->samples) + ": 1 or 4 is expected"};
    if (!size.empty()) {
        int end = 0;
        const int read = sscanf(size.c_str(), "%dx%d%n", &picture->width, &picture->height, &end);
        if (read != 2 || size[end] != '\0' || picture->width < 1 || picture->height < 1 ||
            picture->width > kLargestSize || picture->height > kLargestSize)
            return {kRequestFault, "--size " + size + ": WIDTHxHEIGHT up to 8192x8192 is expected"};
    }
    command->picture = *picture;
    return {};
}
