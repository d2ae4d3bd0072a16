#include "export/Export.h"

#include <utility>

#include "common/AtomicFile.h"
#include "common/LineReader.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "export/ExportTarget.h"
#include "logs/SessionStore.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

using Exporter = void (*)(Course&, Host&, bool);
// An exporter whose layout a command line may give instead of a dialog.
using LayoutExporter = std::vector<UploadColumn> (*)(Course&, Host&, bool,
                                                     const std::optional<CanvasChoice>&);

// The exporter of each export key; "WEBCT CE 6.1" reaches the Campus Edition 6 writer only from
// export selected, and no course's settings give that key.
struct Dispatch {
    std::string_view key;
    Exporter all;
    Exporter selected;
    LayoutExporter withLayout = nullptr;  // instead of the two above
};

void General(Course& course, Host& host, bool fullUpload) {
    ExportGeneral(course, host, CoursePath(course.AppPath, "\\UploadFile.csv"), fullUpload);
}

constexpr Dispatch kDispatch[] = {
    {"GENERAL", General, General},
    {"WEB CT V", ExportWebCT, ExportWebCT},
    {"WEB CT", ExportWebCT, ExportWebCT},
    {"ANGEL", ExportAngel, ExportAngel},
    {"D2L", ExportD2L, ExportD2L},
    {"BB", ExportBlackboard, ExportBlackboard},
    {"BB73", ExportBlackboard, ExportBlackboard},
    {"BB80", ExportBlackboard8, ExportBlackboard8},
    {"MOODLE", CheckMoodleRoster, CheckMoodleRoster},
    {"SAKAI", ExportSakai, ExportSakai},
    {"WEBCT CE 4.1", ExportWebCTCampus, ExportWebCTCampus},
    {"WEBCT CE 6.1", ExportWebCTCampus, ExportWebCTCampus6},
    {"CANVAS", nullptr, nullptr, ExportCanvas},
};

const Dispatch* FindDispatch(std::string_view tag) {
    const std::string key = NormalKey(tag);
    for (const Dispatch& row : kDispatch)
        if (row.key == key) return &row;
    return nullptr;
}

// An unknown key falls back to the General export once the person agrees; the two commands ask
// in their own words.
void AskForGeneral(Course& course, Host& host, bool fullUpload) {
    const std::string_view title =
        fullUpload ? "Confirm General Export : UploadFile.csv" : "Confirm General Export : Tallory";
    const std::string_view question = fullUpload
                                          ? " Would you like to proceed with general export for"
                                          : " Do you want to proceed with general export for";
    std::string text = "No default or Invalid output Format selected for export,";
    text += question;
    text += " the selected session(s)";
    if (host.Message(text, title, Icon::None, Buttons::YesNo) == Answer::Yes)
        General(course, host, fullUpload);
}

std::vector<UploadColumn> Run(Course& course, Host& host, std::string_view tag, bool fullUpload,
                              const std::optional<CanvasChoice>& canvas) {
    const Dispatch* row = FindDispatch(tag);
    if (!row) {
        AskForGeneral(course, host, fullUpload);
        return {};
    }
    if (row->withLayout) return row->withLayout(course, host, fullUpload, canvas);
    (fullUpload ? row->all : row->selected)(course, host, fullUpload);
    return {};
}

void StartUploadTool(const Course& course, Host& host) {
    if (CampusBridgelineInstalled(course))
        host.StartProgram(course.AppPath + "/Campus Bridgeline.exe", "upload");
}

}  // namespace

std::vector<UploadColumn> ExportAll(Course& course, Host& host, std::string_view tag,
                                    const std::optional<CanvasChoice>& canvas) {
    return Run(course, host, tag, true, canvas);
}

std::vector<UploadColumn> ExportSelected(Course& course, Host& host, std::string_view tag,
                                         const std::optional<CanvasChoice>& canvas) {
    bool any = false;
    for (int session = 1; session <= course.NumSessions; ++session)
        if (course.ExportSel[session] != 0) any = true;
    if (!any) {
        host.Message("Please first select a session to export using checkbox in top row.");
        return {};
    }
    return Run(course, host, tag, false, canvas);
}

bool ColumnWanted(const Course& course, bool fullUpload, int session) {
    CheckSubscript(session, 0, kSessionTableUpper, "ExportSel");
    return fullUpload || course.ExportSel[session] != 0;
}

std::vector<std::string> SplitAt(std::string_view text, std::string_view separator) {
    std::vector<std::string> pieces;
    if (text.empty()) return pieces;
    size_t start = 0;
    for (;;) {
        size_t end = text.find(separator, start);
        if (end == std::string_view::npos) break;
        pieces.emplace_back(text.substr(start, end - start));
        start = end + separator.size();
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

const std::string& CellAt(const std::vector<std::string>& cells, size_t index) {
    if (index >= cells.size()) throw GradeBookError{};
    return cells[index];
}

std::string WithoutQuotes(std::string_view text) {
    return ReplaceAll(text, "\"", "");
}

GradeBookText ReadGradeBookFile(const std::string& path) {
    LineReader reader(path);
    if (!reader.IsOpen()) return {path, std::nullopt};
    return {path, std::string(reader.Text())};
}

RosterRec& RosterRow(Course& course, int row) {
    try {
        return course.Roster[row];
    } catch (const RunTimeError&) {
        // A grade book of more rows than the roster holds ends its read as a short row does.
        throw GradeBookError{};
    }
}

std::string UploadErrorText(std::string_view file) {
    const std::string name(file);
    return "The " + name +
           " is already open (with write access by another program). Please close this file "
           "before attempting to export scores from Tallory.\r\nWhile " +
           name +
           " is open, any changes you make in Tallory will not be saved and will be "
           "overwritten.  Please close " +
           name + " before continuing with your work and exporting session data from Tallory";
}

void ShowUploadError(Host& host, std::string_view text) {
    host.Message(text, "Error", Icon::Information);
}

void ShowGradeBookMissing(const Course& course, Host& host, std::string_view title, Icon icon,
                          std::string_view withTool, std::string_view withoutTool, bool helpLine) {
    std::string text(CampusBridgelineInstalled(course) ? withTool : withoutTool);
    if (helpLine) text += "\r\n" + GradeBookHelpLine();
    host.Message(text, title, icon);
}

void RunExport(Course& course, Host& host, const ExportTarget& target, bool fullUpload) {
    GradeBook book;
    if (target.read(course, host, book) < 1) {
        host.Message(target.emptyText);
        return;
    }
    const std::string name(target.uploadFile);
    const std::string path =
        target.bareName ? JoinPath(course.AppPath, name) : CoursePath(course.AppPath, "\\" + name);
    AtomicFile file(path, &host);
    bool written = false;
    try {
        if (file.Open()) {
            course.SessionTitle[0] = std::string(target.totalTitle);
            std::string text = target.headerCells(book);
            for (int k = 0; k <= course.NumSessions; ++k)
                if (ColumnWanted(course, fullUpload, k))
                    text += target.heading(SessionLabel(course, k));
            text += target.headerEnd;
            file.Write(text);

            // The first Students row of each ID, and the first Roster row, as the searches find
            // them.
            std::unordered_map<std::string, int> studentRow;
            for (int j = 1; j <= course.NumStudents; ++j)
                studentRow.emplace(NormalKey(course.Students[j].StudentId), j);
            const auto& roster = std::as_const(course).Roster;
            for (long i = 0; i < roster.Allocated(); ++i)
                book.rosterRowOf.emplace(NormalKey(roster[i].StudentId), static_cast<int>(i));

            std::vector<UploadRow> rows;
            if (target.userOf) {
                // Grade-book lines are written back whole; their user IDs are found one by one,
                // as the lines are written.
                for (const std::string& line : book.lines)
                    rows.push_back(UploadRow{"", line, nullptr});
            } else {
                for (long i = 0; i < roster.Allocated(); ++i) {
                    if (target.skipEmptyIds && TrimView(roster[i].StudentId).empty()) continue;
                    rows.push_back(UploadRow{roster[i].StudentId, "", &roster[i]});
                }
            }
            for (UploadRow& row : rows) {
                if (target.userOf) row.id = target.userOf(course, host, row.line);
                auto found = studentRow.find(NormalKey(row.id));
                std::string line;
                if (found != studentRow.end()) {
                    const StudentRec& student = course.Students[found->second];
                    line = target.nameCells(book, course, row);
                    for (int k = 0; k <= course.NumSessions; ++k)
                        if (ColumnWanted(course, fullUpload, k))
                            line += target.scoreCell(student.Score[k]);
                } else if (target.unmatched != UnmatchedRow::Left) {
                    line = target.unmatched == UnmatchedRow::FirstName
                               ? row.roster->FirstName
                               : target.nameCells(book, course, row);
                    if (TrimView(line).empty()) continue;
                    for (int k = target.unmatchedFrom; k <= course.NumSessions; ++k)
                        if (ColumnWanted(course, fullUpload, k)) line += target.unmatchedCell;
                } else {
                    continue;
                }
                line += target.lineEnd;
                file.Write(line);
            }
            written = file.Commit();
        }
    } catch (const RunTimeError&) {
        written = false;
    }
    if (!written) {
        ShowUploadError(host, UploadErrorText(name));
        return;
    }
    host.Message(std::string(target.doneText) + name);
    StartUploadTool(course, host);
}

}  // namespace tallory
