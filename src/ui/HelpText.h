#pragma once

#include <QString>
#include <vector>

namespace tallory {

struct Course;

// One paragraph of the main window's help, the heading of a group of them, or a folder's path
// (shown whole, to be copied, however long it is).
struct HelpParagraph {
    enum Kind { Heading, Text, Folder };
    Kind kind = Text;
    QString text;
};

// The main window's help: what the grid shows, what each command does, and where this course
// keeps its files (the folder of `course`).
std::vector<HelpParagraph> MainWindowHelp(const Course& course);

}  // namespace tallory
