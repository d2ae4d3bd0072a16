#include "ui/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDialog>
#include <QTextDocument>

#include "ui/CommandLabel.h"

namespace tallory {

namespace {

class CommandLabelAccessible : public QAccessibleWidget {
  public:
    explicit CommandLabelAccessible(CommandLabel* label)
        : QAccessibleWidget(label, QAccessible::Button) {}

    QAccessible::Role role() const override {
        return Label()->IsKeyboardCommand() ? QAccessible::Button : QAccessible::StaticText;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) return QAccessibleWidget::text(kind);
        // A name given for a screen reader first (a cell says whose score of which session it
        // is); else what the label shows, as plain words.
        if (!Label()->accessibleName().isEmpty()) return Label()->accessibleName();
        QString shown = Label()->text();
        if (Qt::mightBeRichText(shown)) {
            QTextDocument document;
            document.setHtml(shown);
            shown = document.toPlainText();
        }
        return shown.trimmed();
    }

    QStringList actionNames() const override {
        if (!Label()->IsKeyboardCommand()) return {};
        return {pressAction()};
    }

    void doAction(const QString& action) override {
        if (action == pressAction() && Label()->isEnabled() && Label()->IsKeyboardCommand())
            Label()->Activate();
    }

    QStringList keyBindingsForAction(const QString& action) const override {
        if (action == pressAction() && Label()->IsKeyboardCommand()) return {"Space"};
        return {};
    }

  private:
    CommandLabel* Label() const { return static_cast<CommandLabel*>(widget()); }
};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
    if (className == QLatin1String("tallory::CommandLabel"))
        if (auto* label = qobject_cast<CommandLabel*>(object))
            return new CommandLabelAccessible(label);
    // Our own top-level windows are plain widgets, which a reader would take for a filler: they
    // are windows. Dialogs have their own kind already, further up their classes.
    if (className.startsWith(QLatin1String("tallory::")) && object->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(object);
        if (widget->isWindow() && !qobject_cast<QDialog*>(widget))
            return new QAccessibleWidget(widget, QAccessible::Window);
    }
    return nullptr;
}

}  // namespace

void InstallAccessibility() {
    QAccessible::installFactory(MakeInterface);
}

}  // namespace tallory
