#include "ui/ScreenFit.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QPointer>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "ui/FitText.h"

namespace tallory {

namespace {

// A title bar and a thin border, for a window not yet framed while no other window shows its own.
constexpr QMargins kUsualFrame(4, 30, 4, 4);
// Type never shrinks below this share of its size to make a window fit.
constexpr double kSmallestType = 0.5;

// The main window's ratio of type, and the property that holds the ratio a dialog's type was
// last shown at.
double dialogTypeRatio = 1;
constexpr const char* kTypeRatio = "dialogTypeRatio";

// Brings the dialog's type to the main window's ratio, from whatever ratio it had when last shown.
void ScaleType(QDialog* dialog) {
    const QVariant shownAt = dialog->property(kTypeRatio);
    const double from = shownAt.isValid() ? shownAt.toDouble() : 1.0;
    const double to = std::max(1.0, dialogTypeRatio);
    if (std::abs(to - from) < 0.005) return;
    FontScale fonts;
    fonts.AddTree(dialog);
    fonts.Apply(to / from);
    dialog->setProperty(kTypeRatio, to);
    // The dialog grows with its type, as the main window does; the fit to the screen follows.
    if (QLayout* layout = dialog->layout()) layout->activate();
    dialog->resize((QSizeF(dialog->size()) * (to / from)).toSize().expandedTo(dialog->sizeHint()));
}

QMargins FrameOf(const QWidget* window) {
    const QRect frame = window->frameGeometry();
    const QRect inside = window->geometry();
    return {inside.left() - frame.left(), inside.top() - frame.top(),
            frame.right() - inside.right(), frame.bottom() - inside.bottom()};
}

bool Framed(const QWidget* window) {
    return window->isVisible() && window->frameGeometry() != window->geometry();
}

class ShowFilter : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const QEvent::Type type = event->type();
        if ((type != QEvent::Show && type != QEvent::ShowToParent) || !watched->isWidgetType())
            return false;
        auto* dialog = qobject_cast<QDialog*>(watched);
        if (!dialog || !dialog->isWindow()) return false;
        // Before the dialog comes up, so that it comes up fitted; once it is up, again for what
        // the dialog's own showing changed (a message box sizes itself to its text then).
        if (type == QEvent::Show) ScaleType(dialog);
        FitToScreen(dialog, type == QEvent::ShowToParent);
        return false;
    }
};

}  // namespace

QMargins FrameMargins(const QWidget* window) {
    if (Framed(window)) return FrameOf(window);
    if (const QWidget* parent = window->parentWidget(); parent && Framed(parent->window()))
        return FrameOf(parent->window());
    for (const QWidget* other : QApplication::topLevelWidgets())
        if (other != window && Framed(other)) return FrameOf(other);
    return kUsualFrame;
}

QRect AvailableArea(const QWidget* window) {
    const QScreen* screen = window->screen();
    if (const QWidget* parent = window->parentWidget(); parent && !window->isVisible())
        screen = parent->window()->screen();
    if (!screen) screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
}

QSize RoomFor(const QWidget* window) {
    const QMargins frame = FrameMargins(window);
    const QSize free = AvailableArea(window).size();
    return {std::max(1, free.width() - frame.left() - frame.right()),
            std::max(1, free.height() - frame.top() - frame.bottom())};
}

void FitToScreen(QWidget* window, bool shown) {
    const QSize room = RoomFor(window);
    // A minimum or a fixed size set by hand yields to a small screen; the size the controls need
    // is checked below.
    window->setMinimumSize(window->minimumSize().boundedTo(room));
    window->setMaximumSize(window->maximumSize().boundedTo(room).expandedTo(window->minimumSize()));
    QSize need(0, 0);
    if (QLayout* layout = window->layout()) {
        need = layout->totalMinimumSize();
        if (need.width() > room.width() || need.height() > room.height() ||
            (layout->hasHeightForWidth() && layout->totalHeightForWidth(std::min(
                                                window->width(), room.width())) > room.height())) {
            FontScale fonts;
            fonts.AddTree(window);
            FitLayout(window, fonts, room, 1.0, kSmallestType);
            layout->activate();
            need = layout->totalMinimumSize();
        }
    }
    const QSize size = window->size().expandedTo(need).boundedTo(room);
    if (size != window->size()) window->resize(size);
    // A dialog centres itself over its parent within the free area when it is first shown.
    if (!shown && qobject_cast<QDialog*>(window) && !window->testAttribute(Qt::WA_Moved)) return;
    const QMargins frame = FrameMargins(window);
    const QRect area = AvailableArea(window);
    QRect framed(window->pos(), size.grownBy(frame));
    framed.moveLeft(std::clamp(framed.left(), area.left(),
                               std::max(area.left(), area.right() + 1 - framed.width())));
    framed.moveTop(std::clamp(framed.top(), area.top(),
                              std::max(area.top(), area.bottom() + 1 - framed.height())));
    if (framed.topLeft() != window->pos()) window->move(framed.topLeft());
}

void SetDialogTypeRatio(double ratio) {
    dialogTypeRatio = ratio;
}

void InstallScreenFit() {
    static QPointer<ShowFilter> filter;
    if (filter || !qApp) return;
    filter = new ShowFilter(qApp);
    qApp->installEventFilter(filter);
}

}  // namespace tallory
