#include "toolkit/main_window.h"

#include <cstdio>
#include <vector>

#include <GL/glx.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/xpm.h>
#include <poll.h>

#include "packaging/icons/sarkelo.xpm"

constexpr unsigned long kOpaque = 0xFF000000;
// Values in a _NET_WM_STATE message: add the state; the sender is an ordinary program.
constexpr long kAddState = 1;
constexpr long kFromApplication = 1;

static Window mainwindow = None;
static Display *maindisplay = nullptr; // GLUT's connection; XForms has its own

static void SetClass();
static void SetIcon();
static void OwnDialogs();
static Atom FindAtom(const char *name);
static Bool LookAtEvent(Display *, XEvent *event, XPointer isinput);

void SetWindowProperties()
{
    mainwindow = glXGetCurrentDrawable();
    maindisplay = glXGetCurrentDisplay();
    if (mainwindow == None)
        return;
    SetClass();
    SetIcon();
    OwnDialogs();
    XFlush(fl_get_display());
}

void OwnPanel(FL_FORM *form)
{
    if (mainwindow == None)
        return;
    Display *display = fl_get_display();
    XSetTransientForHint(display, form->window, mainwindow);
    XClientMessageEvent message = {};
    message.type = ClientMessage;
    message.window = form->window;
    message.message_type = FindAtom("_NET_WM_STATE");
    message.format = 32;
    message.data.l[0] = kAddState;
    message.data.l[1] = static_cast<long>(FindAtom("_NET_WM_STATE_SKIP_TASKBAR"));
    message.data.l[3] = kFromApplication;
    XEvent event = {};
    event.xclient = message;
    XSendEvent(display, DefaultRootWindow(display), False, SubstructureRedirectMask | SubstructureNotifyMask,
               &event);
    XRaiseWindow(display, form->window); // over a full-screen window, a new panel may be behind another one
    OwnDialogs();                        // the toolkit has made the panel the owner by showing it
}

bool IsInputWaiting(bool panels)
{
    bool isinput = panels && XPending(fl_get_display()) > 0;
    XEvent event;
    XCheckIfEvent(maindisplay, &event, LookAtEvent, reinterpret_cast<XPointer>(&isinput));
    return isinput;
}

void WaitForEvent(double seconds, bool panels)
{
    Display *panelsdisplay = fl_get_display();
    // poll does not see events that Xlib has already read from the connection.
    if (XPending(maindisplay) > 0 || (panels && XPending(panelsdisplay) > 0))
        return;
    pollfd connections[] = {{ConnectionNumber(maindisplay), POLLIN, 0},
                            {ConnectionNumber(panelsdisplay), POLLIN, 0}};
    poll(connections, panels ? 2 : 1, static_cast<int>(seconds * 1000));
}

void CloseMenu()
{
    XEvent event = {};
    event.xbutton.type = ButtonPress;
    event.xbutton.window = mainwindow;
    event.xbutton.root = DefaultRootWindow(maindisplay);
    event.xbutton.same_screen = True;
    event.xbutton.x = event.xbutton.y = event.xbutton.x_root = event.xbutton.y_root = -1;
    event.xbutton.button = Button1;
    XSendEvent(maindisplay, mainwindow, False, ButtonPressMask, &event);
    event.xbutton.type = ButtonRelease;
    event.xbutton.state = Button1Mask;
    XSendEvent(maindisplay, mainwindow, False, ButtonReleaseMask, &event);
}

static void SetClass()
{
    char name[] = "sarkelo";
    char group[] = "Sarkelo";
    XClassHint hint = {name, group};
    XSetClassHint(fl_get_display(), mainwindow, &hint);
}

// Sets _NET_WM_ICON: width, height, and rows of pixels from the top, with alpha in the highest byte.
static void SetIcon()
{
    XpmImage image;
    if (XpmCreateXpmImageFromData(const_cast<char **>(sarkelo_xpm), &image, nullptr) != XpmSuccess)
        return;
    std::vector<unsigned long> icon = {image.width, image.height};
    for (unsigned i = 0; i < image.width * image.height; i++) {
        unsigned long colour = 0;
        const bool opaque = sscanf(image.colorTable[image.data[i]].c_color, "#%lx", &colour) == 1;
        icon.push_back(opaque ? kOpaque | colour : 0);
    }
    XpmFreeXpmImage(&image);
    XChangeProperty(fl_get_display(), mainwindow, FindAtom("_NET_WM_ICON"), XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(icon.data()), static_cast<int>(icon.size()));
}

// Makes the main window the owner of file selectors and message boxes. Their windows cannot be accessed, but XForms
// makes them transient for its main form, so that is set to a form that has nothing but the main window.
static void OwnDialogs()
{
    static FL_FORM owner = {};
    owner.window = mainwindow;
    fl_set_app_mainform(&owner);
}

// Predicate for XCheckIfEvent: sets *isinput if the event is user input; returns False, which leaves it in the queue.
// Pointer movements in the main window are input only while a button is held. Events of other windows belong to
// menus.
static Bool LookAtEvent(Display *, XEvent *event, XPointer isinput)
{
    constexpr unsigned kButtons = Button1Mask | Button2Mask | Button3Mask;
    bool is = true;
    if (event->xany.window == mainwindow)
        is = event->type == KeyPress || event->type == ButtonPress || event->type == ButtonRelease ||
             event->type == ClientMessage ||
             (event->type == MotionNotify && (event->xmotion.state & kButtons) != 0);
    if (is)
        *reinterpret_cast<bool *>(isinput) = true;
    return False;
}

static Atom FindAtom(const char *name)
{
    return XInternAtom(fl_get_display(), name, False);
}
