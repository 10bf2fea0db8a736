#include "export/save_dialog.h"

#include <cstring>
#include <string>

#include <forms.h>

#include "export/information.h"
#include "export/model.h"
#include "export/output_file.h"
#include "growth/state.h"
#include "growth/wait_cursor.h"

// Characters of a file name, with its end.
constexpr std::size_t kNameSize = 256;

static void Save(const ModelKind &kind);
static void ShowFault(const std::string &path, const OutputFile &file);
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
    const std::string path = name;
    OutputFile file(path.c_str(), viewwindow);
    if (file.Stream() == nullptr)
        return ShowFault(path, file);
    bool whole = true;
    const bool enough = WithWaitCursor([&] {
        if (!WriteModel(file.Stream(), kind.format, kind.mode))
            return false;
        whole = file.Finish();
        return true;
    });
    if (!enough)
        fl_show_message("Memory Error", "Not enough memory to save the aggregate", "The file is not written");
    else if (!whole)
        ShowFault(path, file);
}

int SaveInformation()
{
    const char *name = AskForName("Text file");
    if (name == nullptr)
        return 0;
    const std::string path = name;
    OutputFile file(path.c_str(), viewwindow);
    if (file.Stream() == nullptr) {
        ShowFault(path, file);
        return 0;
    }
    WriteInformation(file.Stream());
    if (file.Finish())
        return 1;
    if (viewwindow)
        ShowFault(path, file);
    else
        fl_show_message("File Error", "Failed to write simulation information", path.c_str());
    return 0;
}

// In the view window; elsewhere standard error says it.
static void ShowFault(const std::string &path, const OutputFile &file)
{
    if (viewwindow)
        fl_show_message("File Error", ("Cannot write " + path).c_str(), strerror(file.Reason()));
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
