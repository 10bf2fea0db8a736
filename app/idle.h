#pragma once

// Idle callback, the body of the main loop. It takes up to 100 steps of walkers while growth runs, or flies for 5 ms, polls the control panels
// later than 0.02 s after a redisplay, and redisplays options.framerate times a second, with a turn of the camera. In
// the view window it redisplays only if something has changed, and sleeps if there is nothing to do.
void HandleIdle();

// Visibility callback: stops HandleIdle while the window is not visible. `state` is GLUT's, as GLUT_VISIBLE.
void HandleVisibility(int state);
