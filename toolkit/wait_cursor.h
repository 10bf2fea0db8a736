// While a WaitCursor exists, the window and the panels that are shown have the wait cursor; afterwards the window
// gets back its old cursor, and the panels the default one. For work that can take longer than half a second.

#pragma once

// From now on wait cursors do nothing, because there is no window.
void DisableWaitCursors();

class WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;

private:
    int old; // the window's cursor
};

// Calls work() with the wait cursor shown, and returns its result.
template<typename Work>
auto WithWaitCursor(Work work)
{
    const WaitCursor wait;
    return work();
}
