#pragma once

class QWidget;

namespace tallory {

struct Course;
class Host;
class ScoreGrid;

// The screens a session column of the main window opens. `largeFonts` chooses the 120 DPI layout.
// Opens "Tallory - Set Scores" on a session (the log is read and scored first); returns after the
// dialog closes, with the grid refreshed when the instructor saved.
void OpenSetScores(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int session,
                   bool largeFonts);
// Opens frmEditSession from a session heading; renames or removes the session.
void OpenEditSession(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int session);

}  // namespace tallory
