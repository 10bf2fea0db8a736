// Keys and mouse, as GLUT calls them. They change the camera and the options; the idle driver redraws.

#pragma once

void HandleKeyboard(unsigned char key, int x, int y);
void HandleSpecialKeyboard(int key, int x, int y);
void HandleMouse(int button, int state, int x, int y);
void HandleMouseMotion(int x, int y);
void HandlePassiveMotion(int x, int y);
