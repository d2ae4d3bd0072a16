#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/SessionStore.h"

namespace tallory {

// A look at what a change would do to grades before anything is written: the change runs on a
// copy of the course in a temporary folder, and the grid of the copy is set against the grid of
// the course as it stands.

// One figure of the grid a change would move: a student's score in one session.
struct ScoreChange {
    std::string id;           // the grid row's StudentId ("#" + remote for a stray clicker)
    std::string name;         // "Last, First" of the roster entry; empty without one
    std::string session;      // the session's label, as its column heading shows it
    std::string sessionFile;  // the session's log, which tells sessions apart
    std::optional<double> before, after;  // none where the grid shows "Ab"
    std::string beforeText, afterText;    // the cell as the grid shows it
};

struct ChangePreview {
    // Course files whose bytes would differ (made, replaced or gone), relative to the course
    // folder, "/"-separated, in name order.
    std::vector<std::string> files;
    // Every cell of the grid whose figure would differ, in the grid's order, sessions in column
    // order within a student.
    std::vector<ScoreChange> changes;
    // Session logs among `files`.
    int logs = 0;
    // Session logs the change wrote, whether their bytes came out different or not (known for a
    // change of the open course only).
    int logsWritten = 0;

    int Students() const;
    int Sessions() const;
};

// The cells in which two grids of the same course differ. Rows are matched by StudentId and
// columns by log; a row or column only one grid has counts as "Ab" in the other. Rows follow
// `after`'s order, a row that only `before` had stands behind the row it followed there.
std::vector<ScoreChange> GridChanges(const Course& before, const Course& after);

// The change itself, run on the copy: `copyFolder` is where the course's files are.
using CourseChange = std::function<void(const std::string& copyFolder)>;

// Copies the course folder to a temporary folder (without its pictures, its report pages and the
// bookkeeping of a change under way, which no grade depends on), reads its grid, runs `change` on
// the copy, reads the grid again and removes the copy. Nothing in `courseFolder` is written. What
// `change` throws passes through, after the copy is gone.
ChangePreview PreviewChange(const std::string& courseFolder, DisplayOrder order,
                            const CourseChange& change);

// The change of an open course, as the desktop program is about to make it: `change` gets a copy of
// the course's tables whose files are the copy's, a host that answers every question to go ahead,
// and a main screen that shows nothing. The tables are copied rather than read again because what
// they carry from one log to the next decides the bytes a rewrite writes.
using OpenCourseChange = std::function<void(Course& copy, Host& host, MainScreen& screen)>;
ChangePreview PreviewOpenCourseChange(const Course& course, DisplayOrder order,
                                      const OpenCourseChange& change);

// The deletion of the votes of the unregistered clickers `remotes` (as the clicker list shows
// them), confirmed.
ChangePreview PreviewPurge(const Course& course, DisplayOrder order,
                           const std::vector<std::string>& remotes);

// "This changes 14 scores of 9 students in 12 sessions".
std::string PreviewSummary(const ChangePreview& preview);

}  // namespace tallory
