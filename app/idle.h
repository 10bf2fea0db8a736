#pragma once

// Idle callback, the body of the main loop: 100 growth steps while growth runs, the control panels from 0.02
// s after a redisplay on, and a redisplay with a turn of the camera options.framerate times a second. The view window
// is redisplayed only where something has changed, and sleeps where there is nothing to do.
void HandleIdle();

// Visibility callback: nothing grows while the window is not visible (state is GLUT's).
void HandleVisibility(int state);
