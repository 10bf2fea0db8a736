// GLUT's callbacks for keys and mouse. They change the camera and the options; the idle callback redraws.

#pragma once

void HandleKeyboard(unsigned char key, int x, int y);
void HandleSpecialKeyboard(int key, int x, int y);
void HandleMouse(int button, int state, int x, int y);
void HandleMouseMotion(int x, int y);
void HandlePassiveMotion(int x, int y);
