// A minimal system tray host for tests: owns the X11 tray selection so that the live app
// finds a tray on a bare Xvfb server, prints "ready" and then idles until it is killed.
// It accepts dock requests by ignoring them; the app only needs the tray to exist.
#include <X11/Xlib.h>

#include <cstdio>

int main() {
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "fake tray: cannot open the display\n");
        return 1;
    }
    const int screen = DefaultScreen(display);
    const Window root = RootWindow(display, screen);
    const Window host = XCreateSimpleWindow(display, root, 0, 0, 1, 1, 0, 0, 0);
    char selectionName[32];
    std::snprintf(selectionName, sizeof selectionName, "_NET_SYSTEM_TRAY_S%d", screen);
    const Atom selection = XInternAtom(display, selectionName, False);
    XSetSelectionOwner(display, selection, host, CurrentTime);
    if (XGetSelectionOwner(display, selection) != host) {
        std::fprintf(stderr, "fake tray: another tray owns %s\n", selectionName);
        return 1;
    }
    // Tell clients already waiting for a tray that one is here.
    XClientMessageEvent announce{};
    announce.type = ClientMessage;
    announce.window = root;
    announce.message_type = XInternAtom(display, "MANAGER", False);
    announce.format = 32;
    announce.data.l[0] = CurrentTime;
    announce.data.l[1] = static_cast<long>(selection);
    announce.data.l[2] = static_cast<long>(host);
    XSendEvent(display, root, False, StructureNotifyMask, reinterpret_cast<XEvent*>(&announce));
    XFlush(display);
    std::printf("ready\n");
    std::fflush(stdout);
    for (XEvent event;;) XNextEvent(display, &event);
}
