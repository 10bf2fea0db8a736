#include <list>
#include <map>

#include <forms.h>

#include "fakes/recorder.h"
#include "toolkit/main_loop_timer.h"
#include "toolkit/main_window.h"

// What the toolkit and the window's own X calls make; the addresses stay.
static std::list<FL_OBJECT> objects;
static std::list<FL_FORM> forms;
static std::map<FL_OBJECT *, std::string> inputs;
static char display;

#define FAKE_OBJECT(name)                                                                                    \
    FAKE_ANSWER(FL_OBJECT *, name, (int type, int x, int y, int width, int height, const char *label),       \
                &objects.emplace_back(), type, x, y, width, height, label)
FAKE_OBJECT(fl_add_box)
FAKE_OBJECT(fl_add_frame)
FAKE_OBJECT(fl_add_button)
FAKE_OBJECT(fl_add_checkbutton)
FAKE_OBJECT(fl_add_text)
FAKE_OBJECT(fl_add_input)

FAKE_ANSWER(FL_FORM *, fl_bgn_form, (int type, int width, int height), &forms.emplace_back(), type, width,
            height)
FAKE(fl_end_form, ())
FAKE(fl_set_object_lsize, (FL_OBJECT *, int size), size)
FAKE(fl_set_object_lalign, (FL_OBJECT *, int alignment), alignment)
FAKE(fl_set_object_lstyle, (FL_OBJECT *, int style), style)
FAKE_ANSWER(Window, fl_show_form, (FL_FORM *, int place, int border, const char *title), 0, place, border,
            title)
FAKE(fl_hide_form, (FL_FORM *))
FAKE(fl_set_button, (FL_OBJECT *, int state), state)
FAKE_ANSWER(int, fl_get_button, (FL_OBJECT *), fakebutton)
FAKE(fl_set_defaults, (unsigned long mask, FL_IOPT *settings), mask, settings->vclass)
FAKE_ANSWER(Display *, fl_initialize, (int *count, char *arguments[], const char *name, FL_CMD_OPT *, int),
            reinterpret_cast<Display *>(&display), *count, arguments[0], name)
FAKE_ANSWER(FL_OBJECT *, fl_check_forms, (), fakeworked)
FAKE_ANSWER(const char *, fl_show_fselector,
            (const char *message, const char *directory, const char *pattern, const char *name),
            fakefile.empty() ? nullptr : fakefile.c_str(), message, directory, pattern, name)
FAKE(fl_show_message, (const char *title, const char *text, const char *detail), title, text, detail)
FAKE_ANSWER(int, fl_show_question, (const char *question, int standard), fakebutton, standard, question)
FAKE_ANSWER(int, fl_show_choices,
            (const char *question, int count, const char *a, const char *b, const char *c, int standard),
            fakechoice, count, standard, question, a, b, c)
FAKE(fl_set_cursor, (Window, int cursor), cursor)
FAKE(fl_update_display, (int))

FAKE_ANSWER(FL_FORM_ATCLOSE, fl_set_form_atclose, (FL_FORM *, FL_FORM_ATCLOSE callback, void *data),
            (
                fakeclose = [=] { return callback(nullptr, data); }, nullptr))
FAKE_ANSWER(void, fl_set_input, (FL_OBJECT * input, const char *text), void(inputs[input] = text))
FAKE_ANSWER(const char *, fl_get_input, (FL_OBJECT * input), inputs[input].c_str())
FAKE(SetWindowProperties, ())
FAKE(StartMainLoopTimer, (void (*)(), void (*)(), void (*)()))
FAKE(OwnPanel, (FL_FORM *))
FAKE_ANSWER(bool, IsInputWaiting, (bool), fakeinput)
FAKE(WaitForEvent, (double seconds, bool panels), seconds, panels)
FAKE(CloseMenu, ())
