#include "toolkit/file_selector.h"

#include <forms.h>

std::string AskForFile(const char *title, const char *pattern)
{
    const char *path = fl_show_fselector(title, "", pattern, "");
    return path != nullptr ? path : "";
}
