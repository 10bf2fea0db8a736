// While one lives, the window and the panels that are shown have the wait cursor; then the window gets back
// the cursor it had, and the panels their own. For work that can take longer than half a second.

#pragma once

// There is no window: wait cursors do nothing from now on.
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

// What `work` returns, done under the wait cursor.
template<typename Work>
auto WithWaitCursor(Work work)
{
    const WaitCursor wait;
    return work();
}
