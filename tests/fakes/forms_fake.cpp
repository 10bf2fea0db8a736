#include <forms.h>

#include "fakes/recorder.h"

extern "C" Display *fl_initialize(int *count, char *arguments[], const char *name, FL_CMD_OPT *, int)
{
    Record("fl_initialize", {double(*count)}, std::string(arguments[0]) + "|" + name);
    static char display;
    return reinterpret_cast<Display *>(&display);
}

extern "C" FL_OBJECT *fl_check_forms()
{
    Record("fl_check_forms");
    return nullptr;
}

extern "C" const char *fl_show_fselector(const char *message, const char *directory, const char *pattern,
                                         const char *name)
{
    Record("fl_show_fselector", {}, std::string(message) + "|" + directory + "|" + pattern + "|" + name);
    return fakefile.empty() ? nullptr : fakefile.c_str();
}

extern "C" void fl_show_message(const char *title, const char *text, const char *detail)
{
    Record("fl_show_message", {}, std::string(title) + "|" + text + "|" + detail);
}
