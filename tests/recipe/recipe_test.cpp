#include "recipe/recipe_text.h"

#include <gtest/gtest.h>

#include "growth/growth_step.h"
#include "growth/parameters.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "recipe/start.h"
#include "surface/surface.h"
#include "temporary_file.h"

static std::string Printed(const Recipe &recipe)
{
    std::FILE *file = tmpfile();
    PrintRecipe(file, recipe);
    std::string text(static_cast<size_t>(ftell(file)), ' ');
    rewind(file);
    EXPECT_EQ(fread(text.data(), 1, text.size(), file), text.size());
    fclose(file);
    return text;
}

// Reads a recipe and starts its run; returns the fault without the path.
static std::string Tell(const std::string &text)
{
    std::ofstream("r.toml") << text;
    StartAfresh();
    Recipe recipe;
    Fault fault = ReadRecipe("r.toml", &recipe);
    if (!fault)
        fault = StartRun(recipe);
    return std::to_string(fault.kind) + " " + fault.line;
}

TEST(Recipes, EachFaultHasALineThatNamesPlaceKeyAndWhatIsAllowed)
{
    const TemporaryDirectory directory;
    std::ofstream("two.txt") << "0 0 0\n9 9 9\n";
    std::ofstream("far.txt") << "0 0 0\n1 nan 2\n";
    std::ofstream("empty.txt") << "here\n";
    std::ofstream("short.stl") << std::string(80, 'x')
                               << std::string("\x80\x96\x98\0", 4); // 10,000,000 faces
    const std::pair<const char *, const char *> rows[] = {
        {"", "0 "},
        {"[growth]\nbias = 1", "0 "},
        {"[growth]\nbias = 1.5",
         "2 r.toml:2: growth.bias is 1.5; allowed: numbers from 0 to 1 (% of the branch length)"},
        {"[growth]\nbias = nan",
         "2 r.toml:2: growth.bias is nan; allowed: numbers from 0 to 1 (% of the branch length)"},
        {"[growth]\nbias = \"0\"",
         "2 r.toml:2: growth.bias is \"0\"; allowed: numbers from 0 to 1 (% of the branch length)"},
        {"[growth]\n\nseed = 1.0",
         "2 r.toml:3: growth.seed is 1.0; allowed: whole numbers from 0 to 2147483647"},
        {"[growth]\nseed = 2147483648",
         "2 r.toml:2: growth.seed is 2147483648; allowed: whole numbers from 0 to 2147483647"},
        {"[growth]\nbranch_length = inf",
         "2 r.toml:2: growth.branch_length is inf; allowed: numbers from 0.01 (length)"},
        {"[growth]\nassociation = 1", "2 r.toml:2: growth.association is 1; allowed: false, true"},
        {"[growth]\nassociation = \"true\"",
         "2 r.toml:2: growth.association is \"true\"; allowed: false, true"},
        {"[drawing]\nmode = \"Lines\"",
         "2 r.toml:2: drawing.mode is \"Lines\"; allowed: \"off\", \"points\", \"lines\", \"tubes\""},
        {"[surface]\nscale = [1, 2]", "2 r.toml:2: surface.scale is [ 1, 2 ]; allowed: three numbers"},
        {"[surface]\nscale = [1, 2, inf]",
         "2 r.toml:2: surface.scale is [ 1, 2, inf ]; allowed: three numbers"},
        {"[surface]\nfile = 3", "2 r.toml:2: surface.file is 3; allowed: the path of a file"},
        {"[stop]\nminutes = 0", "2 r.toml:2: stop.minutes is 0; allowed: numbers above 0 (minutes)"},
        {"[stop]\nparticles = 0",
         "2 r.toml:2: stop.particles is 0; allowed: whole numbers from 1 to 2147483647"},
        {"[growth]\nstickyness = 4",
         "2 r.toml:2: unknown key growth.stickyness; did you mean growth.stickiness?"},
        {"bias = 0.1", "2 r.toml:1: unknown key bias; did you mean growth.bias?"},
        {"[grwth]", "2 r.toml:1: unknown key grwth; did you mean growth.seed?"},
        {"growth = 3", "2 r.toml:1: growth is not a table: [growth] is expected"},
        {"[[growth]]", "2 r.toml:1: growth is not a table: [growth] is expected"},
        {"[roots]\nfile = \".\"", "3 r.toml:2: roots.file .: is a directory"},
        {"[surface]\nsample = \"Box\"\nscale = [1e200, 1, 1]",
         "2 r.toml:3: face 1 has a corner that is not a finite position"},
        {"[root]\ncount = 4", "2 r.toml:2: unknown key root.count; did you mean roots.count?"},
        {"[growth",
         "2 r.toml:1: not a valid recipe: Error while parsing table header: encountered end-of-file"},
        {"[surface]\nfile = \"a.stl\"\nsample = \"Box\"",
         "2 r.toml:2: surface.file and surface.sample are both given: one surface at a time"},
        {"[roots]\nfile = \"two.txt\"\ncount = 2",
         "2 r.toml:3: roots.count and roots.file are both given: the seed file places all roots"},
        {"[roots]\nfile = \"two.txt\"\ncount = 1", "0 "},
        {"[roots]\nfile = \"none.txt\"", "3 r.toml:2: roots.file none.txt: No such file or directory"},
        {"[roots]\nfile = \"empty.txt\"",
         "3 r.toml:2: roots.file empty.txt: has no root: three numbers a root are expected"},
        {"[roots]\nfile = \"far.txt\"", "3 r.toml:2: roots.file far.txt: root 2 is not a finite position"},
        {"[surface]\nfile = \"two.txt\"", "3 r.toml:2: surface.file two.txt: not an STL file: too short"},
        {"[surface]\nfile = \"none.stl\"", "3 r.toml:2: surface.file none.stl: No such file or directory"},
        {"[roots]\ncount = 0\ndistribution = \"Spherical\"", "2 r.toml:2: can never grow: there is no root"},
        {"[roots]\ncount = 2000000000\ndistribution = \"Spherical\"",
         "4 r.toml:2: memory does not hold 2000000000 roots"},
        {"[growth]\nassociation = true\n[roots]\ncount = 3",
         "2 r.toml:2: can never grow: association needs a root for each class, and the distribution "
         "\"Origin\" places one"},
        {"[roots]\ncount = 1\nrange = 25\ndistribution = \"Ring: z axis plane\"",
         "2 r.toml:3: can never grow: no walker comes as far out as the roots are"},
        {"[growth]\nwalk = \"flight\"",
         "2 r.toml:2: growth.walk is \"flight\"; allowed: \"steps\", \"flights\""},
        {"[growth]\nwalk = \"flights\"\nrotation = 1",
         "2 r.toml:3: growth.rotation is not 0, and flights cannot be turned; growth.walk \"steps\" can"},
        {"[growth]\nbranch_length = 1e16", "0 "},
        {"[growth]\nbranch_length = 1.00001e16",
         "2 r.toml:2: can never grow: no particle is found that is 1e16 away or farther"},
        {"[roots]\nrange = 1e18\ncount = 2\ndistribution = \"Spherical\"",
         "2 r.toml:2: can never grow: the space is too large to be walked"},
        {"[surface]\nfile = \"short.stl\"",
         "3 r.toml:2: surface.file short.stl: cut short: it announces more faces than it holds"},
    };
    for (const auto &[text, line] : rows)
        EXPECT_EQ(Tell(text), line) << text;
    Recipe recipe;
    EXPECT_EQ(ReadRecipe("none.toml", &recipe).line,
              "none.toml: cannot read the recipe: No such file or directory");
    EXPECT_EQ(ReadRecipe(".", &recipe).kind, kFileFault);
    EXPECT_EQ(ReadRecipe("/dev/zero", &recipe).line, "/dev/zero: cannot read the recipe: File too large");
}

TEST(Recipes, AssignmentsAreValuesOrBareWords)
{
    const std::pair<const char *, const char *> rows[] = {
        {"growth.bias=0.5", ""},
        {"growth.association=true", ""},
        {"source.type=Plane (z)", ""},
        {"source.type=\"Plane (z)\"", ""},
        {"surface.scale=[1, 2, 3]", ""},
        {"growth.bias", "here: not of the form KEY=VALUE"},
        {"surface.sample=Box", ""},
        {"surface.file=a.stl", ""}, // what a recipe says twice is looked at when all is said
        {"surface.sample=None", ""},
        {"growth.bias=1\nx=2", "here: not of the form KEY=VALUE"},
        {"growth.bias=much",
         "here: growth.bias is \"much\"; allowed: numbers from 0 to 1 (% of the branch length)"},
        {"grwth.bias=1", "here: unknown key grwth.bias; did you mean growth.bias?"},
    };
    Recipe recipe;
    for (const auto &[assignment, line] : rows)
        EXPECT_EQ(SetInRecipe(assignment, "here", &recipe).line, line);
    EXPECT_EQ(recipe.scale.z, 3);
    EXPECT_EQ(recipe.surfacefile, "a.stl");
    recipe.surfacefile.clear();
    StartAfresh();
    EXPECT_FALSE(StartRun(recipe));
    EXPECT_EQ(growthstate.sourcetype, kSourcePlaneZ);
    EXPECT_EQ(growthstate.association, 1);
    EXPECT_EQ(growthstate.bias, 0.5);
}

// What is printed is read as the same recipe, with the default values and with others.
TEST(Recipes, APrintedRecipeIsReadAgain)
{
    const TemporaryDirectory directory;
    Recipe recipe;
    for (const bool changed : {false, true}) {
        if (changed) {
            for (const char *assignment :
                 {"growth.bias=0.12345678901234567", "growth.association=true",
                  "roots.distribution=Ring: z axis plane", "roots.count=7", "source.type=STL surface",
                  "surface.file=a \"b\" \\c.stl", "surface.rotate=[1e-7, -2, 1e20]", "drawing.mode=tubes",
                  "stop.steps=9007199254740992", "stop.minutes=0.25"})
                ASSERT_EQ(SetInRecipe(assignment, "", &recipe).line, "");
        }
        const std::string text = Printed(recipe);
        std::ofstream("r.toml") << text;
        Recipe again;
        ASSERT_EQ(ReadRecipe("r.toml", &again).line, "") << text;
        EXPECT_EQ(Printed(again), text);
        EXPECT_EQ(again.values, recipe.values);
        const auto whole = [](const std::string &path) {
            return path.empty() ? "" : std::filesystem::absolute(path);
        };
        EXPECT_EQ(again.surfacefile, whole(recipe.surfacefile));
        EXPECT_EQ(again.steps, recipe.steps);
    }
    for (const Parameter &parameter : Parameters())
        if (std::string(parameter.group) != "slices") {
            EXPECT_NE(Printed(recipe).find(parameter.sentence), std::string::npos) << parameter.key;
        }
}

TEST(Recipes, AnEmptyRecipeIsAFreshlyStartedProgram)
{
    StartAfresh();
    InitialiseGrowth();
    const Outcome fresh = TakeOutcome();
    StartAfresh();
    growthstate.stickiness = 3;
    options.dlamode = kAggregateOff;
    ASSERT_FALSE(StartRun(Recipe()));
    EXPECT_EQ(Difference(fresh, TakeOutcome()), "");
    EXPECT_EQ(growthstate.stickiness, 100);
    EXPECT_EQ(options.dlamode, kAggregateLines);
}
