#pragma once

// Asks for a seed file and starts a run from the roots in it. Returns 1 when the user cancelled or at least
// one root was read, 0 after a message otherwise.
int ReadRoots();
