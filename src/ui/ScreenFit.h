#pragma once

#include <QMargins>
#include <QRect>
#include <QSize>

class QWidget;

namespace tallory {

// Windows that stay on the screen: the whole window, its frame included, inside the part of the
// screen that panels leave free, with its buttons in reach.

// The frame the window system draws around `window`: its own once it has one, else that of
// another window of the program, else a usual title bar and border.
QMargins FrameMargins(const QWidget* window);

// The free part of the screen `window` is on (or will be on).
QRect AvailableArea(const QWidget* window);

// The largest size of `window` itself whose frame still fits the free part of its screen.
QSize RoomFor(const QWidget* window);

// Fits `window` to its screen: when its controls need more room than the screen has, its type
// shrinks until they fit (never below half); then its size is held within the room, and the
// window is moved back inside the free area if it lies outside. `shown`: the window is up already;
// before that, a dialog not yet placed is left to centre itself, which keeps it inside the free
// area.
void FitToScreen(QWidget* window, bool shown = true);

// From now on every dialog and message box is fitted to its screen as it is shown.
void InstallScreenFit();

// Dialogs show their type as the main window does: `ratio` is the share of its designed size at
// which the main window shows its type. A dialog shown from now on takes it when it is above 1
// (a large screen, a large window); below, the dialog keeps its own size of type, which a small
// screen shrinks as it needs.
void SetDialogTypeRatio(double ratio);

}  // namespace tallory
