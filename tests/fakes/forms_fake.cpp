#include <list>
#include <map>

#include <forms.h>

#include "fakes/recorder.h"
#include "toolkit/main_loop_timer.h"
#include "toolkit/main_window.h"

static std::list<FL_OBJECT> objects;
static std::map<FL_OBJECT *, std::string> inputs;

static FL_OBJECT *Add(const char *name, int type, int x, int y, int width, int height, const char *label)
{
    Record(name, {double(type), double(x), double(y), double(width), double(height)}, label);
    return &objects.emplace_back();
}

#define FAKE_OBJECT(name)                                                                                    \
    extern "C" FL_OBJECT *name(int type, int x, int y, int width, int height, const char *label)             \
    {                                                                                                        \
        return Add(#name, type, x, y, width, height, label);                                                 \
    }

FAKE_OBJECT(fl_add_box)
FAKE_OBJECT(fl_add_frame)
FAKE_OBJECT(fl_add_button)
FAKE_OBJECT(fl_add_checkbutton)
FAKE_OBJECT(fl_add_text)
FAKE_OBJECT(fl_add_input)

extern "C" FL_FORM *fl_bgn_form(int type, int width, int height)
{
    static std::list<FL_FORM> forms;
    Record("fl_bgn_form", {double(type), double(width), double(height)});
    return &forms.emplace_back();
}

extern "C" void fl_end_form() {}

FAKE(fl_set_object_lsize, (FL_OBJECT *, int size), size)
FAKE(fl_set_object_lalign, (FL_OBJECT *, int alignment), alignment)
FAKE(fl_set_object_lstyle, (FL_OBJECT *, int style), style)

extern "C" FL_FORM_ATCLOSE fl_set_form_atclose(FL_FORM *, FL_FORM_ATCLOSE callback, void *data)
{
    fakeclose = [=] { return callback(nullptr, data); };
    return nullptr;
}

extern "C" Window fl_show_form(FL_FORM *, int place, int border, const char *title)
{
    const OwnAllocations own;
    Record("fl_show_form", {double(place), double(border)}, title);
    return 0;
}

void SetWindowProperties()
{
    Record("SetWindowProperties");
}

void StartMainLoopTimer(void (*)(), void (*)(), void (*)()) {}

void OwnPanel(FL_FORM *)
{
    Record("OwnPanel");
}

bool IsInputWaiting(bool)
{
    return fakeinput;
}

void WaitForEvent(double seconds, bool panels)
{
    Record("WaitForEvent", {seconds, double(panels)});
}

void CloseMenu()
{
    Record("CloseMenu");
}

FAKE(fl_hide_form, (FL_FORM *))

extern "C" void fl_set_input(FL_OBJECT *input, const char *text)
{
    const OwnAllocations own;
    inputs[input] = text;
}

extern "C" const char *fl_get_input(FL_OBJECT *input)
{
    const OwnAllocations own;
    return inputs[input].c_str();
}

FAKE(fl_set_button, (FL_OBJECT *, int state), state)

extern "C" int fl_get_button(FL_OBJECT *)
{
    return fakebutton;
}

FAKE(fl_set_defaults, (unsigned long mask, FL_IOPT *settings), mask, settings->vclass)

extern "C" Display *fl_initialize(int *count, char *arguments[], const char *name, FL_CMD_OPT *, int)
{
    Record("fl_initialize", {double(*count)}, std::string(arguments[0]) + "|" + name);
    static char display;
    return reinterpret_cast<Display *>(&display);
}

extern "C" FL_OBJECT *fl_check_forms()
{
    Record("fl_check_forms");
    return fakeworked;
}

extern "C" const char *fl_show_fselector(const char *message, const char *directory, const char *pattern,
                                         const char *name)
{
    const OwnAllocations own;
    Record("fl_show_fselector", {}, std::string(message) + "|" + directory + "|" + pattern + "|" + name);
    return fakefile.empty() ? nullptr : fakefile.c_str();
}

extern "C" void fl_show_message(const char *title, const char *text, const char *detail)
{
    const OwnAllocations own;
    Record("fl_show_message", {}, std::string(title) + "|" + text + "|" + detail);
}

extern "C" int fl_show_question(const char *question, int)
{
    const OwnAllocations own;
    Record("fl_show_question", {}, question);
    return fakebutton;
}

extern "C" int fl_show_choices(const char *question, int count, const char *first, const char *second,
                               const char *third, int)
{
    const OwnAllocations own;
    Record("fl_show_choices", {double(count)},
           std::string(question) + "|" + first + "|" + second + "|" + third);
    return fakechoice;
}

FAKE(fl_set_cursor, (Window, int cursor), cursor)

extern "C" void fl_update_display(int) {}
