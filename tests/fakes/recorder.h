// Stand-ins for OpenGL, GLU, GLUT and XForms, linked in their place: they record calls, and return what a test has set.

#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

struct FL_OBJECT_;

struct Call {
    std::string name;
    std::vector<double> args;
    std::string text; // text arguments, joined by "|"
};

// While one lives, allocations are those of stand-ins, which tests of failing memory do not count.
struct OwnAllocations {
    OwnAllocations() { depth++; }
    ~OwnAllocations() { depth--; }
    OwnAllocations(const OwnAllocations &) = delete;
    OwnAllocations &operator=(const OwnAllocations &) = delete;
    static int depth;
};

extern std::vector<Call> calls; // all since the last ForgetCalls
void ForgetCalls();
std::vector<Call> CallsOf(const std::string &name);
int CountCalls(const std::string &name);
std::string Text(const Call &call); // as "glClear(16640)"

template<typename... Values>
void Record(const char *name, Values... values)
{
    calls.push_back({name, {}, ""});
    [[maybe_unused]] bool first = true;
    [[maybe_unused]] const auto add = [&](auto value) {
        if constexpr (std::is_arithmetic_v<decltype(value)>)
            calls.back().args.push_back(static_cast<double>(value));
        else
            calls.back().text.append(std::exchange(first, false) ? "" : "|").append(value);
    };
    (add(values), ...);
}

// A function declared in a toolkit's header that records its call: FAKE(glPointSize, (GLfloat size), size).
#define FAKE(name, parameters, ...) FAKE_ANSWER(void, name, parameters, void(), __VA_ARGS__)
#define FAKE_ANSWER(type, name, parameters, result, ...)                                                     \
    type name parameters                                                                                     \
    {                                                                                                        \
        const OwnAllocations own;                                                                            \
        Record(#name __VA_OPT__(, ) __VA_ARGS__);                                                            \
        return result;                                                                                       \
    }

// What the stand-ins return.
extern unsigned fakelist;                    // the display list made next
extern int fakemodifiers;                    // that are held
extern int fakecursor;                       // of the window
extern std::string fakefile;                 // that is selected; empty: cancelled
extern int fakechoice;                       // of the buttons of a choice, counted from 1
extern bool fakeinput;                       // input waits
extern int fakebutton;                       // state of any button of a panel, and the reply to a question
extern FL_OBJECT_ *fakeworked;               // the panel's object that the user has worked
extern std::function<int()> fakeclose;       // closes the panel built last, as the window manager does
extern std::vector<void (*)(int)> fakemenus; // the handlers of the menus built

// The callbacks that the program has registered with GLUT.
struct RegisteredCallbacks {
    void (*display)();
    void (*reshape)(int, int);
    void (*keyboard)(unsigned char, int, int);
    void (*special)(int, int, int);
    void (*mouse)(int, int, int, int);
    void (*motion)(int, int);
    void (*passivemotion)(int, int);
    void (*visibility)(int);
    void (*idle)();
};
extern RegisteredCallbacks registered;
