#include "recipe/recipe_reader.h"

#include <gtest/gtest.h>

#include "golden.h"
#include "growth/growth_step.h"
#include "growth/roots.h"
#include "growth/scenario.h"
#include "recipe/start.h"
#include "surface/surface.h"
#include "temporary_file.h"

// The kind and the line of the fault of a recipe in the file "r" that is read and started
static std::string FaultOf(const std::string &text)
{
    std::ofstream("r") << text;
    StartAfresh();
    Recipe recipe;
    Fault fault = ReadRecipe("r", &recipe);
    if (!fault)
        fault = StartRun(recipe);
    return std::to_string(fault.kind) + " " + fault.line;
}

TEST(Recipes, FaultsNamePlaceKeyAndAllowedValues)
{
    const TemporaryDirectory directory;
    std::ofstream("two") << "0 0 0\n9 9 9\n";
    std::ofstream("far") << "0 0 0\n1 nan 2\n";
    std::ofstream("empty") << "here\n";
    std::ofstream("short") << std::string(80, 'x') << std::string("\x80\x96\x98\0", 4); // 10,000,000 faces
    std::ofstream("bare") << std::string(80, 'x') << std::string("\1\0\0\0", 4)
                          << "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuv";
    const std::pair<std::string, std::string> rows[] = {
        {"", "0 "},
        {"surface.file = 'bare'", "0 "}, // without the last two bytes, which mean nothing
        {"roots.file = 'two'\nroots.count = 1", "0 "},
        {"\ngrowth.stickiness = 101", "2 r:2: growth.stickiness is 101; allowed: numbers from 1 to 100 (%)"},
        {"growth.branch_length = inf",
         "2 r:1: growth.branch_length is inf; allowed: numbers from 0.01 (length)"},
        {"growth.seed = 1.0", "2 r:1: growth.seed is 1.0; allowed: whole numbers from 0 to 2147483647"},
        {"growth.association = 1", "2 r:1: growth.association is 1; allowed: false, true"},
        {"growth.walk = 'flight'", "2 r:1: growth.walk is \"flight\"; allowed: \"steps\", \"flights\""},
        {"[surface]\nscale = [1, 2]", "2 r:2: surface.scale is [ 1, 2 ]; allowed: three numbers"},
        {"surface.file = \"a\\u0000\"", "2 r:1: surface.file is \"a\\u0000\"; allowed: the path of a file"},
        {"stop.minutes = 0", "2 r:1: stop.minutes is 0; allowed: numbers above 0 (minutes)"},
        {"growth.stickyness = 4", "2 r:1: unknown key growth.stickyness; did you mean growth.stickiness?"},
        {"[root]\ncount = 4", "2 r:2: unknown key root.count; did you mean roots.count?"},
        {"[[growth]]", "2 r:1: growth is not a table: [growth] is expected"},
        {"\n[growth", "2 r:2: not a valid recipe: Error while parsing table header: encountered end-of-file"},
        {"surface.file = 'a'\nsurface.sample = 'Box'",
         "2 r:1: surface.file and surface.sample are both given: one surface at a time"},
        {"roots.file = 'two'\nroots.count = 2",
         "2 r:2: roots.count and roots.file are both given: the seed file places all roots"},
        {"surface.sample = 'Box'\nsurface.scale = [1e200, 1, 1]",
         "2 r:2: face 1 has a corner that is not a finite position"},
        {"growth.walk = 'flights'\ngrowth.rotation = 1",
         "2 r:2: growth.rotation is not 0, and flights cannot be turned; growth.walk \"steps\" can"},
        {"source.type = 'Infinity'",
         "2 r:1: source.type is \"Infinity\", from where only flights come; growth.walk must be \"flights\""},
        {"source.type = 'Infinity'\ngrowth.walk = 'flights'",
         "2 r:1: source.type is \"Infinity\", from where walkers cannot drift; growth.bias must be 0"},
        {"source.type = 'Infinity'\ngrowth.walk = 'flights'\ngrowth.bias = 0\ngrowth.killing_scale = 2",
         "2 r:1: source.type is \"Infinity\"; growth.launch_scale and growth.killing_scale must be 1"},
        {"growth.branch_length = 1.00001e16",
         "2 r:1: can never grow: particles farther away than 1e16 are never found"},
        {"[roots]\ncount = 0\ndistribution = 'Spherical'", "2 r:2: can never grow: there is no root"},
        {"roots.count = 3\ngrowth.association = true",
         "2 r:2: can never grow: association needs a root for each class, and the distribution \"Origin\" "
         "places one"},
        {"roots.range = 25\nroots.distribution = 'Ring: z axis plane'",
         "2 r:1: can never grow: no walker comes as far out as the roots are"},
        {"roots.range = 1e18\nroots.count = 2\nroots.distribution = 'Spherical'",
         "2 r:1: can never grow: the space is too large to be walked"},
        {"roots.file = 'none'", "3 r:1: roots.file none: No such file or directory"},
        {"roots.file = 'empty'", "3 r:1: roots.file empty: has no root: three numbers a root are expected"},
        {"roots.file = 'far'", "3 r:1: roots.file far: root 2 is not a finite position"},
        {"surface.file = '.'", "3 r:1: surface.file .: is a directory"},
        {"surface.file = 'two'", "3 r:1: surface.file two: not an STL file: too short"},
        {"surface.file = 'short'",
         "3 r:1: surface.file short: cut short: it announces more faces than it holds"},
        {"roots.count = 2000000000\nroots.distribution = 'Spherical'",
         "4 r:1: memory does not hold 2000000000 roots"},
    };
    for (const auto &[text, line] : rows)
        EXPECT_EQ(FaultOf(text), line) << text;
    const std::string seed = "\n[growth]\nseed = 5";
    std::string comment(4097 - seed.size(), '#');
    EXPECT_EQ(FaultOf(comment.append(seed)), FaultOf(seed)); // one byte more than is read at a time
    Recipe recipe;
    EXPECT_EQ(ReadRecipe("none", &recipe).line, "none: cannot read the recipe: No such file or directory");
    EXPECT_EQ(ReadRecipe("/dev/zero", &recipe).line, "/dev/zero: cannot read the recipe: File too large");
}

static std::string Printed(const Recipe &recipe)
{
    return Written([&](FILE *file) { PrintRecipe(file, recipe); });
}

// Values and bare words are set, printed with what every key may be, and read as the same recipe.
TEST(Recipes, PrintedRecipeIsReadBack)
{
    const TemporaryDirectory directory;
    const std::pair<const char *, const char *> rows[] = {
        {"growth.bias=0.12345678901234567", ""},
        {"growth.association=true", ""},
        {"roots.distribution=Ring: z axis plane", ""},
        {"roots.count=7", ""},
        {"source.type=\"Plane (z)\"", ""},
        {"surface.file=/a \"b\" \\c.stl", ""},
        {"surface.rotate=[1e-7, -2, 1e20]", ""},
        {"drawing.mode=tubes", ""},
        {"stop.steps=9007199254740992", ""},
        {"stop.minutes=0.25", ""},
        {"growth.bias", "here: not of the form KEY=VALUE"},
        {"growth.bias=1\nx=2", "here: not of the form KEY=VALUE"},
        {"grwth.bias=1", "here: unknown key grwth.bias; did you mean growth.bias?"},
    };
    Recipe recipe, again;
    for (const auto &[assignment, line] : rows)
        EXPECT_EQ(SetInRecipe(assignment, "here", &recipe).line, line);
    const std::string text = Printed(recipe);
    ExpectGolden("recipe.toml", text);
    std::ofstream("printed") << text;
    ASSERT_EQ(ReadRecipe("printed", &again).line, "");
    EXPECT_EQ(Printed(again), text);
    EXPECT_EQ(again.values, recipe.values);
}

TEST(Recipes, EmptyRecipeIsTheDefaultStart)
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
