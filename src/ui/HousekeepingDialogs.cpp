#include "ui/HousekeepingDialogs.h"

#include "grid/EditStudent.h"
#include "grid/ScoreGrid.h"
#include "housekeeping/GhostRemote.h"
#include "housekeeping/UnregisteredStudents.h"
#include "ui/EditStudentDialog.h"
#include "ui/GhostRemoteDialog.h"
#include "ui/PreviewDialog.h"

namespace tallory {

namespace {

// The remotes ticked in the clicker list, as it shows them.
std::vector<std::string> TickedRemotes(const GhostRemoteScreen& screen) {
    std::vector<std::string> remotes;
    for (int row = 0; row < screen.GhostCount(); ++row)
        if (screen.GhostList()[row].Selected == kTrue)
            remotes.push_back(screen.GhostList()[row].RemoteId);
    return remotes;
}

}  // namespace

void OpenEditStudent(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int row) {
    EditStudentScreen screen(course, host, grid, row);
    screen.Activate();
    EditStudentDialog dialog(screen, host, parent);
    // The same button pressed on a copy of the screen, as it stands, over a copy of the course.
    dialog.lookFirst = [&](void (EditStudentScreen::*handler)()) {
        return GoAheadAfterPreview(&dialog, [&] {
            return PreviewOpenCourseChange(
                course, grid.Order(), [&](Course& copy, Host& goAhead, MainScreen& main) {
                    EditStudentScreen twin(copy, goAhead, main, row);
                    twin.Activate();
                    twin.TxtNewClickerIdChange(screen.TxtNewClickerId().text);
                    twin.cmbClickListClick(screen.cmbClickList().index);
                    (twin.*handler)();
                });
        });
    };
    dialog.exec();
}

void OpenViewAll(QWidget* parent, Course& course, Host& host, ScoreGrid& grid) {
    UnregisteredTable students;
    BuildUnregisteredList(course, students);
    GhostRemoteScreen screen(course, host, grid, students);
    screen.Load();
    GhostRemoteDialog dialog(screen, host, students, parent);
    dialog.lookFirst = [&] {
        return GoAheadAfterPreview(
            &dialog, [&] { return PreviewPurge(course, grid.Order(), TickedRemotes(screen)); });
    };
    // The list hides itself while the students' tab or a deletion is up, and comes back, modally,
    // unless it was closed.
    while (!screen.Closed()) {
        if (!screen.Form().visible) screen.Show();
        dialog.exec();
    }
}

}  // namespace tallory
