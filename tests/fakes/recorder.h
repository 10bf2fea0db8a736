// Stand-ins for OpenGL, GLU, GLUT and XForms, linked in their place: they record every call for a test to
// look at, and answer what a test has told them to.

#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

struct FL_OBJECT_;

struct Call {
    std::string name;
    std::vector<double> args;
    std::string text; // text arguments, joined by "|"
};

// While one lives, what is allocated is the stand-ins' own: a test of failing allocations leaves it alone.
struct OwnAllocations {
    OwnAllocations() { depth++; }
    ~OwnAllocations() { depth--; }
    OwnAllocations(const OwnAllocations &) = delete;
    OwnAllocations &operator=(const OwnAllocations &) = delete;
    static int depth;
};

// All calls since the last ForgetCalls.
extern std::vector<Call> calls;
void ForgetCalls();
void Record(const char *name, std::initializer_list<double> args = {}, const std::string &text = "");

// A function of numbers that does nothing but record its call: FAKE(glPointSize, (GLfloat size), size).
#define FAKE(name, parameters, ...)                                                                          \
    extern "C" void name parameters                                                                          \
    {                                                                                                        \
        RecordNumbers(#name __VA_OPT__(, ) __VA_ARGS__);                                                     \
    }
template<typename... Numbers>
void RecordNumbers(const char *name, Numbers... numbers)
{
    Record(name, {static_cast<double>(numbers)...});
}

// The calls of one name, and their number.
std::vector<Call> CallsOf(const std::string &name);
int CountCalls(const std::string &name);

// The call as text, "glClear(16640)", numbers as "%g" prints them.
std::string Text(const Call &call);

// The calls whose name is in `names`, as text, one a line.
std::string Transcript(std::initializer_list<const char *> names);

// What the stand-ins answer: modifiers held, file selected (empty: cancelled), the display list made next.
extern unsigned fakelist;
extern int fakemodifiers;
extern int fakecursor; // of the window
extern std::string fakefile;
extern int fakechoice; // of the buttons of a choice, counted from 1
extern bool fakeinput; // input waits

// Panels: the object that the user has worked, the state of any button, and the closing of the panel built
// last by the window manager.
extern FL_OBJECT_ *fakeworked;
extern int fakebutton;
extern std::function<int()> fakeclose;

// The handlers of the menus built; GLUT's ids count them from 1.
extern std::vector<void (*)(int)> fakemenus;

// The callbacks that the program has registered with GLUT.
struct RegisteredCallbacks {
    void (*display)() = nullptr;
    void (*reshape)(int, int) = nullptr;
    void (*keyboard)(unsigned char, int, int) = nullptr;
    void (*special)(int, int, int) = nullptr;
    void (*mouse)(int, int, int, int) = nullptr;
    void (*motion)(int, int) = nullptr;
    void (*passivemotion)(int, int) = nullptr;
    void (*visibility)(int) = nullptr;
    void (*idle)() = nullptr;
    void (*menustatus)(int, int, int) = nullptr;
};
extern RegisteredCallbacks registered;
