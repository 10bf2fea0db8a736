#include "export/save_dialog.h"

#include <cstring>
#include <string>

#include <forms.h>

#include "base/output_file.h"
#include "export/information.h"
#include "export/model.h"
#include "growth/state.h"
#include "toolkit/file_selector.h"
#include "toolkit/wait_cursor.h"

// Largest size of a file name, with the terminating zero
constexpr std::size_t kNameSize = 256;

static void Save(const ModelKind &kind);
static void ShowFault(const std::string &path, const OutputFile &file);
static std::string AskForName(const char *title);

void SaveModel(int format, int mode)
{
    if (format > kFormatPointGEOM)
        return; // a format for command lines only
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
    const std::string path = AskForName(kind.title);
    if (path.empty())
        return;
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
    const std::string path = AskForName("Text file");
    if (path.empty())
        return 0;
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

// Only in the view window: otherwise OutputFile has printed the fault on standard error.
static void ShowFault(const std::string &path, const OutputFile &file)
{
    if (viewwindow)
        fl_show_message("File Error", ("Cannot write " + path).c_str(), strerror(file.Reason()));
}

// Returns an empty name if the user cancels or the name is too long.
static std::string AskForName(const char *title)
{
    const std::string name = AskForFile(title);
    return name.size() < kNameSize ? name : "";
}
