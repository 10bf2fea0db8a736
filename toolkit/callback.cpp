#include "toolkit/callback.h"

#include <cstdio>

#include <forms.h>

bool framerequested = true;

void ReportOutOfMemory(CallbackKind kind)
{
    if (kind == kInputCallback)
        fl_show_message("Memory Error", "Not enough memory for this", "");
    else
        fputs("Out of memory: what could not be done is tried again\n", stderr);
}
