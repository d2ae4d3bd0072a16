#include "ui/HousekeepingDialogs.h"

#include "grid/EditStudent.h"
#include "grid/ScoreGrid.h"
#include "housekeeping/GhostRemote.h"
#include "housekeeping/UnregisteredStudents.h"
#include "ui/EditStudentDialog.h"
#include "ui/GhostRemoteDialog.h"

namespace tallory {

void OpenEditStudent(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int row) {
    EditStudentScreen screen(course, host, grid, row);
    screen.Activate();
    EditStudentDialog dialog(screen, host, parent);
    dialog.exec();
}

void OpenViewAll(QWidget* parent, Course& course, Host& host, ScoreGrid& grid) {
    UnregisteredTable students;
    BuildUnregisteredList(course, students);
    GhostRemoteScreen screen(course, host, grid, students);
    screen.Load();
    GhostRemoteDialog dialog(screen, host, students, parent);
    // The list hides itself while the students' tab or a deletion is up, and comes back, modally,
    // unless it was closed.
    while (!screen.Closed()) {
        if (!screen.Form().visible) screen.Show();
        dialog.exec();
    }
}

}  // namespace tallory
