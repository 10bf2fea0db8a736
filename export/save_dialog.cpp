#include "export/save_dialog.h"

#include <cstring>
#include <iterator>

#include <forms.h>

#include "export/aggregate.h"
#include "export/information.h"
#include "export/output_file.h"
#include "growth/wait_cursor.h"

// Characters of a file name, with its end.
constexpr std::size_t kNameSize = 256;

namespace
{
struct SaveEntry {
    int format, mode;
};
} // namespace

// Indexed by the id of the menu's entry, from 1.
static const SaveEntry kSaveEntries[] = {
    {kFormatPOV, kModeChains},         {kFormatPOV, kModeSegments},    {kFormatGEOM, kModeSegments},
    {kFormatVRML, kModeSegments},      {kFormatVRML, kModeCapped},     {kFormatPointDXF, kModeSegments},
    {kFormatPointGEOM, kModeSegments}, {kFormatVRML, kModeCoarseMesh}, {kFormatVRML, kModeMediumMesh},
    {kFormatVRML, kModeFineMesh},
};

static const char *AskForName(const char *title);

void SaveModel(int format, int mode)
{
    static const char *const kTitles[] = {"VRML file",   "GEOM file",      "STL file",
                                          "PovRay file", "POINT DXF file", "POINT GEOM file"};
    if (format < 0 || format >= static_cast<int>(std::size(kTitles)))
        return;
    const char *name = AskForName(kTitles[format]);
    if (name == nullptr)
        return;
    OutputFile file(name);
    if (file.Stream() == nullptr)
        return;
    const bool enough = DoWaiting([&] {
        if (!WriteModel(file.Stream(), format, mode))
            return false;
        file.Finish();
        return true;
    });
    if (!enough)
        fl_show_message("Memory Error", "Not enough memory to save the aggregate", "The file is not written");
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
    const char *name = AskForName("Text file");
    if (name == nullptr)
        return 0;
    OutputFile file(name);
    if (file.Stream() == nullptr)
        return 0;
    WriteInformation(file.Stream());
    if (file.Finish())
        return 1;
    fl_show_message("File Error", "Failed to write simulation information", name);
    return 0;
}

// Returns nullptr where the user cancels, or the name is empty or does not fit; else it is valid until the
// next question.
static const char *AskForName(const char *title)
{
    const char *name = fl_show_fselector(title, "", "", "");
    if (name == nullptr || *name == '\0' || strlen(name) >= kNameSize)
        return nullptr;
    return name;
}
