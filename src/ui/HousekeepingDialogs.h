#pragma once

class QWidget;

namespace tallory {

struct Course;
class Host;
class ScoreGrid;

// frmEditStudent for row `row` of Students, from a name in the grid. Nothing is redrawn after
// it: the grid keeps its figures until the sessions are next loaded.
void OpenEditStudent(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int row);
// CmdViewAll: the unregistered students' list is built, then the unregistered clickers are shown
// until they are closed or their votes deleted.
void OpenViewAll(QWidget* parent, Course& course, Host& host, ScoreGrid& grid);

}  // namespace tallory
