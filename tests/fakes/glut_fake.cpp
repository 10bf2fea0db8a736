#include <GL/glut.h>

#include "fakes/recorder.h"

// The functions that register a callback.
#define FAKE_CALLBACK(name, field, ...)                                                                      \
    extern "C" void name(void (*callback)(__VA_ARGS__))                                                      \
    {                                                                                                        \
        registered.field = callback;                                                                         \
        Record(#name, {callback != nullptr ? 1.0 : 0.0});                                                    \
    }

FAKE_CALLBACK(glutDisplayFunc, display, )
FAKE_CALLBACK(glutReshapeFunc, reshape, int, int)
FAKE_CALLBACK(glutKeyboardFunc, keyboard, unsigned char, int, int)
FAKE_CALLBACK(glutSpecialFunc, special, int, int, int)
FAKE_CALLBACK(glutMouseFunc, mouse, int, int, int, int)
FAKE_CALLBACK(glutMotionFunc, motion, int, int)
FAKE_CALLBACK(glutPassiveMotionFunc, passivemotion, int, int)
FAKE_CALLBACK(glutVisibilityFunc, visibility, int)
FAKE_CALLBACK(glutIdleFunc, idle, )
FAKE_CALLBACK(glutMenuStatusFunc, menustatus, int, int, int)

extern "C" int glutGetModifiers()
{
    return fakemodifiers;
}

FAKE(glutSwapBuffers, ())
FAKE(glutPostRedisplay, ())

extern "C" void glutTimerFunc(unsigned, void (*)(int), int) {}

extern "C" void glutInit(int *count, char **arguments)
{
    Record("glutInit", {double(*count)}, arguments[*count - 1]);
}

extern "C" int glutCreateWindow(const char *title)
{
    Record("glutCreateWindow", {}, title);
    return 1;
}

extern "C" void glutSetWindowTitle(const char *title)
{
    Record("glutSetWindowTitle", {}, title);
}

FAKE(glutInitDisplayMode, (unsigned int mode), mode)
FAKE(glutReshapeWindow, (int width, int height), width, height)
FAKE(glutFullScreen, ())

extern "C" void glutSetCursor(int cursor)
{
    Record("glutSetCursor", {double(cursor)});
    fakecursor = cursor;
}

FAKE(glutMainLoop, ())

extern "C" int glutCreateMenu(void (*handler)(int))
{
    fakemenus.push_back(handler);
    return static_cast<int>(fakemenus.size());
}

extern "C" void glutAddMenuEntry(const char *label, int id)
{
    Record("glutAddMenuEntry", {double(fakemenus.size()), double(id)}, label);
}

extern "C" void glutAddSubMenu(const char *label, int menu)
{
    Record("glutAddSubMenu", {double(fakemenus.size()), double(menu)}, label);
}

extern "C" void glutAttachMenu(int button)
{
    Record("glutAttachMenu", {double(fakemenus.size()), double(button)});
}

extern "C" int glutGet(GLenum what)
{
    if (what == GLUT_WINDOW_CURSOR)
        return fakecursor;
    return what == GLUT_WINDOW_WIDTH ? 800 : 600;
}

void *glutBitmap8By13; // the font's name

FAKE(glutBitmapCharacter, (void *, int character), character)
