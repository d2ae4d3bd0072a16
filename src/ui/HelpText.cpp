#include "ui/HelpText.h"

#include <QDir>

#include "common/Course.h"
#include "ui/QtHost.h"

namespace tallory {

std::vector<HelpParagraph> MainWindowHelp(const Course& course) {
    const QString folder = QDir::toNativeSeparators(DisplayString(course.AppPath));
    return {
        {HelpParagraph::Heading, "What the grid shows"},
        {HelpParagraph::Text,
         "Each row is a student and each column a session of this course, four sessions and six "
         "students at a time. A number is the points the student earned in that session; a "
         "student whose clicker was there but answered nothing has 0."},
        {HelpParagraph::Text,
         "Ab means absent: no clicker of the student answered in that session. Point at it to "
         "read the word."},
        {HelpParagraph::Text,
         "Blue names are students with a registered clicker. Red names are clickers that nobody "
         "has registered, shown as # and the clicker's ID, and students on the roster who have "
         "not voted yet."},
        {HelpParagraph::Text,
         "Total adds up the student's points. Average divides the total by the number of all "
         "sessions, attended or not."},
        {HelpParagraph::Heading, "Moving around"},
        {HelpParagraph::Text,
         "Previous and Next, the bar under the grid, or the Left and Right keys move one session "
         "at a time; Home and End go to the first and the last sessions."},
        {HelpParagraph::Text,
         "The bar at the right, the Up and Down keys and the mouse wheel move through the "
         "students, three a notch; Page Up and Page Down move a page of six."},
        {HelpParagraph::Heading, "Commands"},
        {HelpParagraph::Text,
         "Click a session's heading to give the session a title or to remove it. Set Scores under "
         "a column sets the session's correct answers and the points of each choice. Tick Export "
         "to include the session in Export Selected."},
        {HelpParagraph::Text,
         "Click a student's name to see the student's clickers, add one, or take one away."},
        {HelpParagraph::Text, "Show names by lists the students by last name or by student ID."},
        {HelpParagraph::Text,
         "Unregistered Clickers lists the clickers that nobody has registered, to delete their "
         "votes or find whose they are. Whole Class shows every student in every session in one "
         "table that you can sort and search."},
        {HelpParagraph::Text,
         "Export All writes the grades of every session, Export Selected those of the ticked "
         "sessions, in the grade-book format shown at the top right."},
        {HelpParagraph::Text,
         "HTML Reports writes the reports of every session and student; Term Summary Report "
         "writes the summary of the term again."},
        {HelpParagraph::Text,
         "Sync Web Registrations registers clickers from what students entered on the "
         "registration web site. Web Update shows the notes of the latest versions."},
        {HelpParagraph::Text, "Exit, or Ctrl+Q, closes Tallory."},
        {HelpParagraph::Heading, "Where the course is kept"},
        {HelpParagraph::Text, "This course is the folder"},
        {HelpParagraph::Folder, folder},
        {HelpParagraph::Text,
         "The roster is Roster.txt. The folder SessionData holds one log per session (L followed "
         "by the session's date and time), the course settings (Config.csv) and the registered "
         "clickers (RemoteID.csv). Reports go into the folder Reports, grade exports into the "
         "course folder itself."},
        {HelpParagraph::Text,
         "Tallory saves every change in these files as you make it: there is nothing to save "
         "before you exit."},
    };
}

}  // namespace tallory
