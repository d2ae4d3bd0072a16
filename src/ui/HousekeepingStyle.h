#pragma once

#include <QString>
#include <functional>
#include <string_view>

class QFrame;
class QLineEdit;
class QPushButton;
class QWidget;
class QHBoxLayout;

namespace tallory {

// The look the clicker housekeeping screens share: the list panel, the two tabs, the help note.
extern const char* const kHousekeepingStyle;

// A tab of the two lists (checkable; the current one is checked).
QPushButton* MakeTab(QWidget* parent, const char* name);
// The row of the two tabs, clickers then students, both lists' screens start with.
QHBoxLayout* MakeTabRow(QWidget* parent, QPushButton*& clickers, QPushButton*& students);
QPushButton* MakeButton(QWidget* parent, const char* name);
// The help note: a bold title over its text.
QFrame* MakeHelp(QWidget* parent, std::string_view title, std::string_view text);
// A read-only box of a list row; page up and page down go to `pageKey`.
QLineEdit* MakeRowBox(QWidget* parent, const QString& name, std::function<void(int)> pageKey);

}  // namespace tallory
