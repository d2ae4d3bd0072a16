#include "ui/HousekeepingStyle.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/KeyFilter.h"
#include "ui/QtHost.h"

namespace tallory {

const char* const kHousekeepingStyle = R"(
QDialog { background: rgb(238, 240, 236); }
QFrame#listPanel { background: white; border: 1px solid #c8ccc3; border-radius: 8px; }
QPushButton[role="heading"] { border: none; border-bottom: 2px solid #b5bbae; background: white;
                              color: #1f2a1f; font-weight: bold; padding: 5px 4px; }
QPushButton[role="heading"]:disabled { color: #9aa39a; }
QPushButton[role="tab"] { border: 1px solid #b5bbae; background: #e3e6df; color: #3c4639;
                          padding: 6px 16px; }
QPushButton[role="tab"]:checked { background: white; color: #1f2a1f;
                                  border-bottom-color: white; }
QPushButton[role="tab"]:disabled { color: #9aa39a; }
QPushButton[role="danger"] { color: #8b0000; font-weight: bold; }
QPushButton[role="danger"]:disabled { color: #b7a0a0; }
QLineEdit[role="row"] { border: none; border-bottom: 1px solid #e4e7e0; background: white;
                        padding: 3px 4px; }
QFrame#help { background: #fffef4; border: 1px solid #c9c48a; border-radius: 8px; }
QFrame#help QLabel { background: transparent; color: #2b2b1f; }
QLabel[role="fact"] { color: #5b6358; }
)";

QPushButton* MakeTab(QWidget* parent, const char* name) {
    auto* tab = new QPushButton(parent);
    tab->setObjectName(name);
    tab->setProperty("role", "tab");
    tab->setCheckable(true);
    tab->setAutoDefault(false);
    return tab;
}

QHBoxLayout* MakeTabRow(QWidget* parent, QPushButton*& clickers, QPushButton*& students) {
    auto* tabs = new QHBoxLayout;
    tabs->setSpacing(0);
    clickers = MakeTab(parent, "CmdUnRegisteredClickers");
    students = MakeTab(parent, "CmdUnRegisteredStudents");
    tabs->addWidget(clickers);
    tabs->addWidget(students);
    tabs->addStretch(1);
    return tabs;
}

QPushButton* MakeButton(QWidget* parent, const char* name) {
    auto* button = new QPushButton(parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QFrame* MakeHelp(QWidget* parent, std::string_view title, std::string_view text) {
    auto* help = new QFrame(parent);
    help->setObjectName("help");
    auto* layout = new QVBoxLayout(help);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->setSpacing(4);
    auto* heading = new QLabel(DisplayString(title), help);
    heading->setObjectName("helpTitle");
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    auto* body = new QLabel(DisplayString(text), help);
    body->setObjectName("helpText");
    body->setWordWrap(true);
    layout->addWidget(heading);
    layout->addWidget(body);
    return help;
}

QLineEdit* MakeRowBox(QWidget* parent, const QString& name, std::function<void(int)> pageKey) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setProperty("role", "row");
    box->setReadOnly(true);
    box->installEventFilter(new KeyFilter(box, {}, std::move(pageKey)));
    return box;
}

}  // namespace tallory
