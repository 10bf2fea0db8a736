#include "fakes/recorder.h"

#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "growth/state.h"

int OwnAllocations::depth = 0;
std::vector<Call> calls;
unsigned fakelist;
int fakemodifiers, fakecursor, fakechoice, fakebutton;
bool fakeinput;
std::string fakefile;
FL_OBJECT_ *fakeworked;
std::function<int()> fakeclose;
std::vector<void (*)(int)> fakemenus;
RegisteredCallbacks registered;

// Each test begins with the stand-ins as they are at first.
static const bool reset = [] {
    class Reset : public testing::EmptyTestEventListener
    {
        void OnTestStart(const testing::TestInfo &) override
        {
            fakelist = 7;
            fakemodifiers = fakecursor = fakechoice = fakebutton = 0;
            fakeinput = viewwindow = false;
            fakefile.clear();
            fakemenus.clear();
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
    std::ostringstream text;
    text << call.name << '(';
    for (size_t i = 0; i < call.args.size(); i++)
        text << (i > 0 ? "," : "") << call.args[i];
    text << call.text << ')';
    return text.str();
}
