// A second growth step, written from the rules of growth with linear scans and nothing shared with the
// program's own but the records it works on. What grows by it must be what the program grows, to the last
// bit.

#pragma once

void ReferenceStep();
