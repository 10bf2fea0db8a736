#include "recipe/arguments.h"

#include <algorithm>
#include <cstdio>

#include <CLI/CLI.hpp>

#include "growth/state.h"

bool ReadArguments(CLI::App *app, std::vector<std::string> words, Fault *fault)
{
    char version[32];
    snprintf(version, sizeof version, "%s %g", app->get_name().c_str(), versionid / 100.0);
    app->set_version_flag("--version", version, "Print the version");
    std::reverse(words.begin(), words.end()); // the library expects the last one first
    try {
        app->parse(std::move(words));
    } catch (const CLI::Success &asked) {
        app->exit(asked);
        return false;
    } catch (const CLI::ParseError &error) {
        std::string line = error.what();
        std::replace(line.begin(), line.end(), '\n', ' ');
        *fault = {kRequestFault, line + " (see " + app->get_name() + " --help)"};
        return false;
    }
    return true;
}
