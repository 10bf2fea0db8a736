// The pop-up menu of the right mouse button, with every command of the program, and the callbacks of the menus that
// concern the view

#pragma once

// Ids of the main menu's entries. The ids of the separators, and all other ids, do nothing.
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

// Builds the menu tree and attaches it to the right mouse button in the current window. In the view window, the
// commands that read and save files are in a menu of their own.
void CreateMenus();

// Whether a menu is open; only in the view window, otherwise always false.
bool IsMenuOpen();

void HandleMainMenu(int id);
void HandleDLAMenu(int mode);
void HandleSTLMenu(int mode);

// Replaces the constraint surface, and its display list, by the sample with this id.
void HandleSampleMenu(int id);
