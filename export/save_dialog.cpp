#include "export/save_dialog.h"

#include <cstring>
#include <iterator>

#include <forms.h>

#include "export/aggregate.h"
#include "export/information.h"
#include "growth/wait_cursor.h"

// Characters of a file name, with its end.
constexpr std::size_t kNameSize = 256;

struct SaveEntry {
    int format, mode;
};

// Indexed by the id of the menu's entry, from 1.
static const SaveEntry kSaveEntries[] = {
    {kFormatPOV, kModeChains},         {kFormatPOV, kModeSegments},    {kFormatGEOM, kModeSegments},
    {kFormatVRML, kModeSegments},      {kFormatVRML, kModeCapped},     {kFormatPointDXF, kModeSegments},
    {kFormatPointGEOM, kModeSegments}, {kFormatVRML, kModeCoarseMesh}, {kFormatVRML, kModeMediumMesh},
    {kFormatVRML, kModeFineMesh},
};

static FILE *AskForFile(const char *title);

void SaveModel(int format, int mode)
{
    static const char *const kTitles[] = {"VRML file",   "GEOM file",      "STL file",
                                          "PovRay file", "POINT DXF file", "POINT GEOM file"};
    if (format < 0 || format >= static_cast<int>(std::size(kTitles)))
        return;
    FILE *file = AskForFile(kTitles[format]);
    if (file == nullptr)
        return;
    const int whole = DoWaiting([=] {
        const int complete = WriteModel(file, format, mode);
        fclose(file);
        return complete;
    });
    if (!whole)
        fl_show_message("Memory Error", "Not enough memory for the longest chain of branches",
                        "The file is not complete");
}

void HandleSaveMenu(int id)
{
    if (id < 1 || id > static_cast<int>(std::size(kSaveEntries)))
        return;
    const SaveEntry &entry = kSaveEntries[id - 1];
    SaveModel(entry.format, entry.mode);
}

int SaveInformation()
{
    FILE *file = AskForFile("Text file");
    if (file == nullptr)
        return 0;
    WriteInformation(file);
    fclose(file);
    return 1;
}

static FILE *AskForFile(const char *title)
{
    const char *name = fl_show_fselector(title, "", "", "");
    if (name == nullptr || *name == '\0' || strlen(name) >= kNameSize)
        return nullptr;
    return fopen(name, "w");
}
