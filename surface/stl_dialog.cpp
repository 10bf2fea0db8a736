#include "surface/stl_dialog.h"

#include <cstdlib>
#include <string>

#include <forms.h>

#include "growth/state.h"
#include "surface/stl_reader.h"
#include "toolkit/file_selector.h"
#include "toolkit/wait_cursor.h"

static int Refuse();
static void ShowFileError(const char *text, const std::string &detail = "");

int ReadSTL()
{
    const std::string path = AskForFile("STL file");
    if (path.empty())
        return 1;

    switch (WithWaitCursor([&] { return ReadSTLFile(path.c_str()); })) {
    case kSTLRead:
        return 1;
    case kSTLUnopened:
        ShowFileError("Failed to read STL file", path);
        return 0;
    case kSTLBadVertices:
        ShowFileError("Error reading vertices in ascii STL file");
        return Refuse();
    case kSTLShortHeader:
        ShowFileError("Failed to read an expected STL header");
        return Refuse();
    case kSTLBadCount:
        ShowFileError("Read an unexpected number of faces in STL header");
        return 0;
    case kSTLOutOfMemory:
        ShowFileError("Not enough memory for this STL file", path);
        return 0;
    }
    return 0;
}

static int Refuse()
{
    if (!viewwindow)
        exit(-1);
    return 0;
}

static void ShowFileError(const char *text, const std::string &detail)
{
    fl_show_message("File Error", text, detail.c_str());
}
