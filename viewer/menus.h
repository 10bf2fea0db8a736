// The pop-up menu of the right button: every command of the program, and the callbacks of those menus whose
// choices concern the view.

#pragma once

// Ids of the main menu's entries. The separators' ids, and all others, do nothing.
enum MainCommand {
    kCommandReadSurface = 1,
    kCommandSettings = 2,
    kCommandTransform = 3,
    kCommandSaveSurface = 4,
    kCommandReadSeeds = 5,
    kCommandInformation = 6,
    kCommandSlices = 7,
    kCommandExtras = 10,
    kCommandInfo = 11,
    kCommandPause = 12,
    kCommandRestart = 13,
    kCommandStatistics = 14,
    kCommandOpenAggregate = 20,
    kCommandSaveAggregate = 21,
    kCommandFit = 22,
    kCommandSeparator = 50,
    kCommandLastSeparator = 60,
    kCommandQuit = 100
};

// Builds the menu tree and attaches it to the right button of the current window. In the view window, what reads and saves
// files stands in a menu of its own.
void CreateMenus();

// Whether a menu is open. Known in the view window alone.
bool IsMenuOpen();

void HandleMainMenu(int id);
void HandleDLAMenu(int mode);
void HandleSTLMenu(int mode);

// Replaces the constraint surface by the sample of that id, and its drawing.
void HandleSampleMenu(int id);
