#include "export/save_dialog.h"

#include <cstdio>
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
static void ShowFault(const Fault &fault);
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
    OutputFile file(path.c_str());
    if (file.Stream() == nullptr)
        return ShowFault(file.Finish());
    const Fault fault = WithWaitCursor([&] {
        return WriteModel(file.Stream(), kind.format, kind.mode)
                   ? file.Finish()
                   : Fault(kMemoryFault, "Not enough memory to save the aggregate");
    });
    if (fault.kind == kMemoryFault)
        fl_show_message("Memory Error", fault.line.c_str(), "The file is not written");
    else if (fault)
        ShowFault(fault);
}

int SaveInformation()
{
    const std::string path = AskForName("Text file");
    if (path.empty())
        return 0;
    OutputFile file(path.c_str());
    const bool opened = file.Stream() != nullptr;
    if (opened)
        WriteInformation(file.Stream());
    const Fault fault = file.Finish();
    if (!fault)
        return 1;
    ShowFault(fault);
    if (opened && !viewwindow)
        fl_show_message("File Error", "Failed to write simulation information", path.c_str());
    return 0;
}

// In the view window in a message box, else on standard error.
static void ShowFault(const Fault &fault)
{
    if (viewwindow)
        fl_show_message("File Error", fault.line.c_str(), "");
    else
        fprintf(stderr, "%s\n", fault.line.c_str());
}

// Returns an empty name if the user cancels or the name is too long.
static std::string AskForName(const char *title)
{
    const std::string name = AskForFile(title);
    return name.size() < kNameSize ? name : "";
}
