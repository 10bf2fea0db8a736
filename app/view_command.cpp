#include "app/view_command.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "growth/parameters.h"
#include "growth/state.h"
#include "recipe/arguments.h"

constexpr int kLargestSize = 8192;
constexpr int kMostPictures = 9999;
constexpr double kMostDegrees = 3600;
constexpr double kMostZoom = 100;
constexpr double kMostWidth = 100;

namespace
{
// The values of some options as texts
struct Words {
    std::string size, where, lights;
};
} // namespace

static bool ReadMode(const void *field, const std::string &name, int *mode);
static Fault Interpret(const Words &words, PictureRequest *picture, ViewCommand *command);
static Fault CheckNumbers(const PictureRequest &picture);
static bool ReadSize(const std::string &text, int *width, int *height);

bool ReadViewCommand(int argc, char **argv, ViewCommand *command, Fault *fault)
{
    // The window's switches are whole words with one dash; ReadSwitches reads them.
    std::vector<std::string> rest;
    for (int i = 1; i < argc; i++) {
        const std::string word = argv[i];
        if (word == "-d" || word == "-f" || word == "-s" || word == "-ss")
            command->switches.push_back(word);
        else
            rest.push_back(word);
    }
    CLI::App app("Shows a diffusion limited aggregate, or makes pictures of it without a screen.",
                 "sarkelo-view");
    PictureRequest picture;
    std::string size, mode, surface, where, lights;
    app.footer(
        "Switches of the window: -d verbose, -f full screen, -s active stereo, -ss dual-screen stereo.");
    app.add_option("FILE", command->file, "An aggregate file, or a recipe (.toml); without one, a new run")
        ->type_name(" ");
    app.add_option("--picture", picture.path, "Make a picture (PNG) instead of opening a window")
        ->type_name("FILE");
    std::vector<CLI::Option *> ofpictures;
    const auto add = [&](const char *name, auto *value, const char *meaning, const char *type) {
        ofpictures.push_back(
            app.add_option(name, *value, meaning)->type_name(type)->group("Options of pictures"));
        return ofpictures.back();
    };
    add("--size", &size, "Pixels, 1920x1080 if missing, at most 8192x8192", "WxH");
    app.add_option("--mode", mode, "Draw the aggregate as tubes, lines, points or off")->type_name("MODE");
    app.add_option("--surface", surface, "Draw the surface as wireframe, midpoints, vertices, solid or off")
        ->type_name("MODE");
    app.add_flag("--fit", command->fits, "Fit everything drawn into the view, without turning the camera");
    app.add_option("--camera", where, "home: the camera where a window starts")->type_name("home");
    add("--turn", &picture.turn, "Turn the camera about the vertical, -3600 to 3600", "DEGREES");
    add("--tilt", &picture.tilt, "Then raise the camera, -3600 to 3600", "DEGREES");
    add("--zoom", &picture.zoom, "Enlarge by this factor, 0.01 to 100", "FACTOR");
    add("--lights", &lights, "camera: the lights turn with the camera; world: they stay", "WHERE");
    add("--line-width", &picture.linewidth,
        "Width of lines, in pixels of a picture whose shorter side has 1000; 1 if missing", "WIDTH");
    add("--point-size", &picture.pointsize, "Size of points, in the same unit; 1 if missing", "WIDTH");
    add("--samples", &picture.samples, "Samples a pixel: 1, 4, 9 or 16; 4 if missing", "N");
    CLI::Option *turntable =
        add("--turntable", &picture.turntable, "Make N pictures, turning once about the vertical", "N")
            ->check(CLI::Range(1, kMostPictures));
    add("--film", &picture.film, "Make N pictures of the aggregate as it grew", "N")
        ->check(CLI::Range(1, kMostPictures))
        ->excludes(turntable);
    app.add_flag("--whole", command->whole,
                 "Draw every frame of the window completely, however long it takes");
    app.add_flag("--force", command->overwrites, "Overwrite pictures that exist");
    if (!ReadArguments(&app, std::move(rest), fault))
        return false;
    const auto given = std::find_if(ofpictures.begin(), ofpictures.end(),
                                    [](const CLI::Option *option) { return option->count() > 0; });
    if (picture.path.empty() && given != ofpictures.end())
        *fault = {kRequestFault, (*given)->get_name() + " needs --picture FILE"};
    else if (!mode.empty() && !ReadMode(&options.dlamode, mode, &command->mode))
        *fault = {kRequestFault, "--mode " + mode + ": tubes, lines, points or off is expected"};
    else if (!surface.empty() && !ReadMode(&options.surfacemode, surface, &command->surfacemode))
        *fault = {kRequestFault,
                  "--surface " + surface + ": wireframe, midpoints, vertices, solid or off is expected"};
    else
        *fault = Interpret({size, where, lights}, &picture, command);
    return !*fault;
}

static bool ReadMode(const void *field, const std::string &name, int *mode)
{
    const std::optional<int> code = FindNamed(ParameterOf(field), name);
    if (code)
        *mode = *code;
    return code.has_value();
}

static Fault Interpret(const Words &words, PictureRequest *picture, ViewCommand *command)
{
    if (!words.where.empty() && words.where != "home")
        return {kRequestFault, "--camera " + words.where + ": home is expected"};
    if (!words.where.empty() && command->fits)
        return {kRequestFault, "--camera home and --fit exclude each other"};
    command->fromhome = !words.where.empty();
    if (picture->path.empty())
        return {};
    if (command->file.empty())
        return {kRequestFault, "--picture needs an aggregate file"};
    if (std::filesystem::path(picture->path).extension() != ".png")
        return {kRequestFault, "--picture " + picture->path + ": a name that ends in .png is expected"};
    if (!words.lights.empty() && words.lights != "camera" && words.lights != "world")
        return {kRequestFault, "--lights " + words.lights + ": camera or world is expected"};
    picture->lightsturn = words.lights != "world";
    if (!words.size.empty() && !ReadSize(words.size, &picture->width, &picture->height))
        return {kRequestFault, "--size " + words.size + ": WIDTHxHEIGHT up to 8192x8192 is expected"};
    if (Fault fault = CheckNumbers(*picture))
        return fault;
    command->picture = *picture;
    return {};
}

static Fault CheckNumbers(const PictureRequest &picture)
{
    const struct {
        const char *name;
        double value, least, most;
    } numbers[] = {{"--turn", picture.turn, -kMostDegrees, kMostDegrees},
                   {"--tilt", picture.tilt, -kMostDegrees, kMostDegrees},
                   {"--zoom", picture.zoom, 1 / kMostZoom, kMostZoom},
                   {"--line-width", picture.linewidth, 1 / kMostWidth, kMostWidth},
                   {"--point-size", picture.pointsize, 1 / kMostWidth, kMostWidth}};
    for (const auto &number : numbers)
        if (!(number.value >= number.least && number.value <= number.most)) { // also true for NaN
            char line[100];
            snprintf(line, sizeof line, "%s %g: a number from %g to %g is expected", number.name,
                     number.value, number.least, number.most);
            return {kRequestFault, line};
        }
    const int n = picture.samples;
    if (n != 1 && n != 4 && n != 9 && n != 16)
        return {kRequestFault, "--samples " + std::to_string(n) + ": 1, 4, 9 or 16 is expected"};
    return {};
}

static bool ReadSize(const std::string &text, int *width, int *height)
{
    const char *end = text.data() + text.size();
    const auto [cross, fault] = std::from_chars(text.data(), end, *width);
    if (fault != std::errc() || cross == end || *cross != 'x')
        return false;
    const auto [rest, lastfault] = std::from_chars(cross + 1, end, *height);
    return lastfault == std::errc() && rest == end && std::min(*width, *height) >= 1 &&
           std::max(*width, *height) <= kLargestSize;
}
