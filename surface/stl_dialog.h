#pragma once

// Asks for an STL file and makes it the constraint surface. Returns 1 when the user cancelled or the file was
// read, 0 when it was refused, after a message. A file without a whole header, or with an unreadable vertex,
// ends the program after its message (kept), except in the view window.
int ReadSTL();
