#include <map>

#include <GL/glut.h>

#include "fakes/recorder.h"

// A function that registers a callback.
#define FAKE_CALLBACK(name, field, ...)                                                                      \
    FAKE_ANSWER(void, name, (void (*callback)(__VA_ARGS__)), void(registered.field = callback),              \
                callback != nullptr)

FAKE_CALLBACK(glutDisplayFunc, display, )
FAKE_CALLBACK(glutReshapeFunc, reshape, int, int)
FAKE_CALLBACK(glutKeyboardFunc, keyboard, unsigned char, int, int)
FAKE_CALLBACK(glutSpecialFunc, special, int, int, int)
FAKE_CALLBACK(glutMouseFunc, mouse, int, int, int, int)
FAKE_CALLBACK(glutMotionFunc, motion, int, int)
FAKE_CALLBACK(glutPassiveMotionFunc, passivemotion, int, int)
FAKE_CALLBACK(glutVisibilityFunc, visibility, int)
FAKE_CALLBACK(glutIdleFunc, idle, )
FAKE(glutMenuStatusFunc, (void (*)(int, int, int)))
FAKE(glutTimerFunc, (unsigned milliseconds, void (*)(int), int), milliseconds)
FAKE(glutInit, (int *count, char **arguments), *count, arguments[*count - 1])
FAKE(glutInitDisplayMode, (unsigned int mode), mode)
FAKE_ANSWER(int, glutCreateWindow, (const char *title), 1, title)
FAKE(glutSetWindowTitle, (const char *title), title)
FAKE(glutReshapeWindow, (int width, int height), width, height)
FAKE(glutFullScreen, ())
FAKE(glutSwapBuffers, ())
FAKE(glutPostRedisplay, ())
FAKE(glutMainLoop, ())
FAKE_ANSWER(void, glutSetCursor, (int cursor), void(fakecursor = cursor), cursor)
FAKE_ANSWER(int, glutCreateMenu, (void (*handler)(int)),
            (fakemenus.push_back(handler), static_cast<int>(fakemenus.size())))
FAKE(glutAddMenuEntry, (const char *label, int id), fakemenus.size(), id, label)
FAKE(glutAddSubMenu, (const char *label, int menu), fakemenus.size(), menu, label)
FAKE(glutAttachMenu, (int button), fakemenus.size(), button)
FAKE(glutBitmapCharacter, (void *, int character), character)
FAKE_ANSWER(int, glutGetModifiers, (), fakemodifiers)
FAKE_ANSWER(int, glutGet, (GLenum what),
            (std::map<GLenum, int>{
                {GLUT_WINDOW_CURSOR, fakecursor}, {GLUT_WINDOW_WIDTH, 800}, {GLUT_WINDOW_HEIGHT, 600}}[what]))
void *glutBitmap8By13; // the font's name
