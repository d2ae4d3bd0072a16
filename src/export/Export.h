#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// How the Canvas upload is laid out: what the desktop program's export dialog asks (and the course
// settings remember), and what a command line gives instead.
struct CanvasChoice {
    bool totalColumn = false;  // one "Clicker Total" column instead of one per session
    bool absentZero = false;   // a session without a score counts 0 instead of staying blank
    bool operator==(const CanvasChoice&) const = default;
};

// A grade column an export wrote: its heading and its points possible.
struct UploadColumn {
    std::string title;
    double points = 0;
};

// The two export commands of the main window (lblExportAll, lblExportSelected), dispatched on the
// lblCMS Tag the course was opened with. Export all takes every session and the total column;
// export selected the sessions whose ExportSel flag is set, and refuses when none is. A Canvas
// export takes `canvas` as its layout, or asks for one without it; it returns the grade columns it
// wrote (none for the other targets).
std::vector<UploadColumn> ExportAll(Course& course, Host& host, std::string_view tag,
                                    const std::optional<CanvasChoice>& canvas = std::nullopt);
std::vector<UploadColumn> ExportSelected(Course& course, Host& host, std::string_view tag,
                                         const std::optional<CanvasChoice>& canvas = std::nullopt);

// The grade-book reader an export of the target a CMS value chooses runs, over a text given as its
// file's; false (nothing read) for a target without such a reader (General, Canvas).
bool ReadGradeBookText(Course& course, Host& host, std::string_view cms, std::string_view text);

}  // namespace tallory
