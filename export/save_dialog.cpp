#include "export/save_dialog.h"

#include <cstring>

#include <forms.h>

#include "export/information.h"
#include "export/model.h"
#include "export/output_file.h"
#include "growth/wait_cursor.h"

// Characters of a file name, with its end.
constexpr std::size_t kNameSize = 256;

static void Save(const ModelKind &kind);
static const char *AskForName(const char *title);

void SaveModel(int format, int mode)
{
    if (format > kFormatPointGEOM)
        return; // those of commands
    if (const ModelKind *kind = FindModelKind(format, mode); kind != nullptr)
        Save(*kind);
}

void HandleSaveMenu(int id)
{
    for (const ModelKind &kind : ModelKinds())
        if (kind.menuid == id && id > 0)
            return Save(kind);
}

static void Save(const ModelKind &kind)
{
    const char *name = AskForName(kind.title);
    if (name == nullptr)
        return;
    OutputFile file(name);
    if (file.Stream() == nullptr)
        return;
    const bool enough = WithWaitCursor([&] {
        if (!WriteModel(file.Stream(), kind.format, kind.mode))
            return false;
        file.Finish();
        return true;
    });
    if (!enough)
        fl_show_message("Memory Error", "Not enough memory to save the aggregate", "The file is not written");
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
