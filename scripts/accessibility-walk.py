"""Walks Tallory's main window as a screen reader does, through the accessibility bus (AT-SPI).

Run by scripts/check-accessibility inside a private session bus and a virtual screen:
    accessibility-walk.py PROGRAM COURSE
Starts PROGRAM in COURSE, answers the messages of the start, then, with the help panel closed and
open: lists every control a person can work, with its role and the name a reader speaks, and
presses Tab round the window to see which of them the keyboard reaches. Fails (status 1) when a
control has no name, or one that takes the keyboard is not reached by Tab.
"""
import ctypes
import os
import subprocess
import sys
import time

program, course = sys.argv[1:3]

bus = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
time.sleep(1.0)
import pyatspi  # noqa: E402  (after the bus is up: it connects on import)

env = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_ACCESSIBILITY="1")
tallory = subprocess.Popen([program], cwd=course, env=env)

# Controls a person works, by their role; a scroll bar is worked by the grid's keys, not by Tab.
WORKED = {
    pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_COMBO_BOX,
    pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_LINK,
    pyatspi.ROLE_SPIN_BUTTON, pyatspi.ROLE_SLIDER, pyatspi.ROLE_PAGE_TAB, pyatspi.ROLE_ENTRY,
    pyatspi.ROLE_SCROLL_BAR, pyatspi.ROLE_SCROLL_PANE,
}
NOT_BY_TAB = {pyatspi.ROLE_SCROLL_BAR}


def application(timeout=30):
    end = time.time() + timeout
    while time.time() < end:
        desktop = pyatspi.Registry.getDesktop(0)
        for app in desktop:
            if app is not None and app.name.lower().startswith("tallory"):
                return app
        time.sleep(0.3)
    sys.exit("accessibility-walk: Tallory did not appear on the accessibility bus")


def states(node):
    return node.getState()


def walk(node, found):
    try:
        if not states(node).contains(pyatspi.STATE_SHOWING):
            return
    except Exception:
        return
    found.append(node)
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None:
            walk(child, found)


def press(node):
    action = node.queryAction()
    for index in range(action.nActions):
        if action.getName(index) in ("Press", "press", "click"):
            action.doAction(index)
            return
    action.doAction(0)


def windows(app):
    return [app.getChildAtIndex(i) for i in range(app.childCount)]


def loaded(frame):
    """The course is in the grid: its Set Scores buttons show."""
    nodes = []
    walk(frame, nodes)
    return any(n.getRole() == pyatspi.ROLE_PUSH_BUTTON and n.name.startswith("Set Scores")
               for n in nodes)


def answer_messages(app):
    """Presses OK on every message box of the start, until only the main window is left."""
    end = time.time() + 30
    while time.time() < end:
        shown = [w for w in windows(app) if w is not None and states(w).contains(pyatspi.STATE_SHOWING)]
        boxes = [w for w in shown if w.getRole() in (pyatspi.ROLE_DIALOG, pyatspi.ROLE_ALERT)]
        frames = [w for w in shown if w.getRole() in (pyatspi.ROLE_FRAME, pyatspi.ROLE_WINDOW)]
        if frames and not boxes and loaded(frames[0]):
            # Still alone a moment later: the start has said all it had to say.
            time.sleep(1.0)
            if not [w for w in windows(app) if w is not None and w.getRole() in
                    (pyatspi.ROLE_DIALOG, pyatspi.ROLE_ALERT)
                    and states(w).contains(pyatspi.STATE_SHOWING)]:
                return frames[0]
        for box in boxes:
            nodes = []
            walk(box, nodes)
            buttons = [n for n in nodes if n.getRole() == pyatspi.ROLE_PUSH_BUTTON]
            if buttons:
                press(buttons[0])
        time.sleep(0.5)
    sys.exit("accessibility-walk: the main window did not come up alone")


# The keyboard, as a person's: a Tab through the X test extension.
x11 = ctypes.cdll.LoadLibrary("libX11.so.6")
xtest = ctypes.cdll.LoadLibrary("libXtst.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
xtest.XTestFakeKeyEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int, ctypes.c_ulong]
x11.XFlush.argtypes = [ctypes.c_void_p]
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XQueryTree.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(ctypes.c_ulong),
                           ctypes.POINTER(ctypes.c_ulong),
                           ctypes.POINTER(ctypes.POINTER(ctypes.c_ulong)),
                           ctypes.POINTER(ctypes.c_uint)]
x11.XFetchName.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(ctypes.c_char_p)]
x11.XSetInputFocus.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_ulong]
display = x11.XOpenDisplay(None)
TAB = x11.XKeysymToKeycode(display, 0xFF09)


def x_window(title):
    """The X window of that title. The keyboard is given to it by hand, as a window manager would
    on a click: there is no window manager on the virtual screen."""
    root = x11.XDefaultRootWindow(display)
    parent, root_out = ctypes.c_ulong(), ctypes.c_ulong()
    children = ctypes.POINTER(ctypes.c_ulong)()
    count = ctypes.c_uint()
    x11.XQueryTree(display, root, ctypes.byref(root_out), ctypes.byref(parent),
                   ctypes.byref(children), ctypes.byref(count))
    for i in range(count.value):
        name = ctypes.c_char_p()
        if x11.XFetchName(display, children[i], ctypes.byref(name)) and name.value:
            if name.value.decode(errors="replace") == title:
                return children[i]
    sys.exit("accessibility-walk: no window titled " + title)


def activate(frame):
    window = x_window(frame.name)
    for _ in range(20):
        x11.XSetInputFocus(display, window, 2, 0)  # RevertToParent, CurrentTime
        x11.XFlush(display)
        time.sleep(0.5)
        if states(frame).contains(pyatspi.STATE_ACTIVE):
            return
    sys.exit("accessibility-walk: the main window did not take the keyboard")


def tab():
    xtest.XTestFakeKeyEvent(display, TAB, 1, 0)
    xtest.XTestFakeKeyEvent(display, TAB, 0, 0)
    x11.XFlush(display)


def describe(node):
    return "%s '%s'" % (node.getRoleName(), node.name)


def check(window, title):
    nodes = []
    walk(window, nodes)
    # What a person works: the kinds above, and anything else that takes the keyboard (the help
    # text, the course folder's box).
    worked = [n for n in nodes[1:]
              if n.getRole() in WORKED or states(n).contains(pyatspi.STATE_FOCUSABLE)]
    enabled = [n for n in worked if states(n).contains(pyatspi.STATE_SENSITIVE)]
    keyboard = [n for n in enabled if n.getRole() not in NOT_BY_TAB]
    reached = set()
    first = None
    before = None
    for _ in range(len(keyboard) * 2 + 10):
        tab()
        # The focus moves when the program has had its turn: a busy machine takes longer.
        for _ in range(30):
            time.sleep(0.05)
            focused = [i for i, n in enumerate(keyboard)
                       if states(n).contains(pyatspi.STATE_FOCUSED)]
            if focused and focused[0] != before:
                break
        if not focused:
            continue
        before = focused[0]
        if focused[0] == first and len(reached) > 1:
            break
        if first is None:
            first = focused[0]
        reached.add(focused[0])
    faults = []
    print("%s: %d controls walked" % (title, len(worked)))
    for node in worked:
        sensitive = states(node).contains(pyatspi.STATE_SENSITIVE)
        mark = "disabled"
        if sensitive:
            if node.getRole() in NOT_BY_TAB:
                mark = "keys"
            else:
                mark = "tab" if keyboard.index(node) in reached else "NOT REACHED BY TAB"
        print("  %-45s %s" % (describe(node), mark))
        if not node.name.strip():
            faults.append("no name: " + describe(node))
        if mark == "NOT REACHED BY TAB":
            faults.append("not reached by Tab: " + describe(node))
    print("  all named" if not any(f.startswith("no name") for f in faults) else "  SOME NAMELESS")
    print("  %d of %d that take the keyboard reached by Tab" % (len(reached), len(keyboard)))
    # The labels of the grid: what a reader says of a cell.
    cells = [n for n in nodes if n.getRole() in (pyatspi.ROLE_LABEL, pyatspi.ROLE_STATIC)
             and (", score " in n.name or n.name.endswith(", absent"))]
    for cell in cells[:4]:
        print("  cell, %s: '%s'" % (cell.getRoleName(), cell.name))
    return faults, worked


status = 0
try:
    app = application()
    window = answer_messages(app)
    print("window: '%s' (%s)" % (window.name, window.getRoleName()))
    activate(window)
    faults, worked = check(window, "main window")
    help_button = [n for n in worked if n.getRole() == pyatspi.ROLE_PUSH_BUTTON and n.name == "Help"]
    if not help_button:
        faults.append("no Help button")
    else:
        press(help_button[0])
        time.sleep(0.5)
        more, _ = check(window, "help panel open")
        faults += more
    for fault in faults:
        print("FAULT: " + fault)
    status = 1 if faults else 0
    print("accessibility-walk: " + ("passed" if status == 0 else "failed"))
finally:
    tallory.terminate()
    tallory.wait(10)
    bus.terminate()
sys.exit(status)
