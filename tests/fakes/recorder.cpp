#include "fakes/recorder.h"

#include <algorithm>
#include <cstdio>

#include <gtest/gtest.h>

#include "growth/state.h"

int OwnAllocations::depth = 0;
std::vector<Call> calls;
int fakemodifiers = 0;
int fakecursor = 0;
std::string fakefile;
int fakechoice = 0;
bool fakeinput = false;
unsigned fakelist = 7;
FL_OBJECT_ *fakeworked = nullptr;
int fakebutton = 0;
std::function<int()> fakeclose;
std::vector<void (*)(int)> fakemenus;
RegisteredCallbacks registered;

// Each test begins with the stand-ins as they are at first.
static const bool reset = [] {
    class Reset : public testing::EmptyTestEventListener
    {
        void OnTestStart(const testing::TestInfo &) override
        {
            fakemodifiers = fakecursor = fakebutton = fakechoice = 0;
            fakeinput = viewwindow = false;
            fakelist = 7;
            fakefile.clear();
            fakeworked = nullptr;
            settingformvisible = stlformvisible = sliceformvisible = 0;
        }
    };
    testing::UnitTest::GetInstance()->listeners().Append(new Reset);
    return true;
}();

void ForgetCalls()
{
    calls.clear();
}

void Record(const char *name, std::initializer_list<double> args, const std::string &text)
{
    const OwnAllocations own;
    calls.push_back({name, args, text});
}

std::vector<Call> CallsOf(const std::string &name)
{
    std::vector<Call> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [&](const Call &call) { return call.name == name; });
    return found;
}

int CountCalls(const std::string &name)
{
    return static_cast<int>(CallsOf(name).size());
}

std::string Text(const Call &call)
{
    std::string text = call.name + "(";
    for (size_t i = 0; i < call.args.size(); i++) {
        char number[32];
        snprintf(number, sizeof number, i > 0 ? ",%g" : "%g", call.args[i]);
        text += number;
    }
    return text + call.text + ")";
}

std::string Transcript(std::initializer_list<const char *> names)
{
    std::string text;
    for (const Call &call : calls)
        if (std::find(names.begin(), names.end(), call.name) != names.end())
            text += Text(call) + "\n";
    return text;
}
