#include "growth/seed_file_dialog.h"

#include <string>

#include <forms.h>

#include "growth/roots.h"
#include "toolkit/control_panel.h"
#include "toolkit/file_selector.h"
#include "toolkit/wait_cursor.h"

int ReadRoots()
{
    const std::string path = AskForFile("Seed file");
    if (path.empty())
        return 1;

    switch (WithWaitCursor([&] { return ReadSeedFile(path.c_str()); })) {
    case kSeedFileRead:
        UpdateForms();
        return 1;
    case kSeedFileUnopened:
        fl_show_message("File Error", "Failed to read seed file", path.c_str());
        return 0;
    case kSeedFileEmpty:
        fl_show_message("File Error", "Failed to read any root positions", "Resetting");
        return 0;
    case kSeedFileOutOfMemory:
        fl_show_message("File Error", "Not enough memory for the roots of this seed file", path.c_str());
        return 0;
    }
    return 0;
}
