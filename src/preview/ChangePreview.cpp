#include "preview/ChangePreview.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <unordered_map>

#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"
#include "common/Paths.h"
#include "common/ReadGuard.h"
#include "common/RecordingHost.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "grid/CourseLoad.h"
#include "grid/HeadlessGrid.h"
#include "grid/ScoreGrid.h"
#include "housekeeping/GhostRemote.h"
#include "housekeeping/UnregisteredStudents.h"
#include "overview/CourseOverview.h"
#include "registration/Roster.h"

namespace tallory {

namespace fs = std::filesystem;

int ChangePreview::Students() const {
    std::set<std::string> ids;
    for (const ScoreChange& change : changes) ids.insert(change.id);
    return static_cast<int>(ids.size());
}

int ChangePreview::Sessions() const {
    std::set<std::string> logs;
    for (const ScoreChange& change : changes) logs.insert(change.sessionFile);
    return static_cast<int>(logs.size());
}

namespace {

// A row or column that one grid lacks reads as a student who was not there.
const StudentRec kNobody{};

// The columns of both grids: `after`'s in order, then those only `before` had.
struct Column {
    std::string file;
    std::string label;
    int before = 0;  // the column in each grid, 0 when that grid has none
    int after = 0;
};

std::vector<Column> Columns(const Course& before, const Course& after) {
    std::vector<Column> columns;
    std::unordered_map<std::string, size_t> byFile;
    for (int s = 1; s <= after.NumSessions; ++s) {
        byFile.emplace(after.SessionFile[s], columns.size());
        columns.push_back({after.SessionFile[s], SessionLabel(after, s), 0, s});
    }
    for (int s = 1; s <= before.NumSessions; ++s) {
        auto found = byFile.find(before.SessionFile[s]);
        if (found != byFile.end())
            columns[found->second].before = s;
        else
            columns.push_back({before.SessionFile[s], SessionLabel(before, s), s, 0});
    }
    return columns;
}

// The rows of both grids as (before row, after row) pairs, 0 where a grid has none.
std::vector<std::pair<int, int>> Rows(const Course& before, const Course& after) {
    std::unordered_map<std::string, int> afterRow;
    for (int i = 1; i <= after.NumStudents; ++i) afterRow.emplace(after.Students[i].StudentId, i);
    std::vector<int> beforeOfAfter(after.NumStudents + 1, 0);
    // Rows that went, each behind the last row before it that stayed (bucket 0: in front).
    std::vector<std::vector<int>> gone(after.NumStudents + 1);
    int anchor = 0;
    for (int i = 1; i <= before.NumStudents; ++i) {
        auto found = afterRow.find(before.Students[i].StudentId);
        if (found == afterRow.end()) {
            gone[anchor].push_back(i);
        } else if (beforeOfAfter[found->second] == 0) {
            beforeOfAfter[found->second] = i;
            anchor = found->second;
        }
    }
    std::vector<std::pair<int, int>> rows;
    for (int i : gone[0]) rows.emplace_back(i, 0);
    for (int a = 1; a <= after.NumStudents; ++a) {
        rows.emplace_back(beforeOfAfter[a], a);
        for (int i : gone[a]) rows.emplace_back(i, 0);
    }
    return rows;
}

std::optional<double> Figure(const StudentRec& student, int session) {
    if (session == 0 || student.Present[session] == 0) return std::nullopt;
    return student.Score[session];
}

}  // namespace

std::vector<ScoreChange> GridChanges(const Course& before, const Course& after) {
    const std::vector<Column> columns = Columns(before, after);
    std::vector<ScoreChange> changes;
    for (auto [b, a] : Rows(before, after)) {
        const StudentRec& was = b != 0 ? before.Students[b] : kNobody;
        const StudentRec& is = a != 0 ? after.Students[a] : kNobody;
        const Course& named = a != 0 ? after : before;
        const std::string& id = a != 0 ? is.StudentId : was.StudentId;
        for (const Column& column : columns) {
            std::optional<double> from = Figure(was, column.before);
            std::optional<double> to = Figure(is, column.after);
            if (from == to) continue;
            ScoreChange change;
            change.id = id;
            change.name = LastFirstName(GetRosterEntry(named, id));
            change.session = column.label;
            change.sessionFile = column.file;
            change.before = from;
            change.after = to;
            change.beforeText = column.before != 0 ? SessionCellText(was, column.before)
                                                   : SessionCellText(kNobody, 1);
            change.afterText =
                column.after != 0 ? SessionCellText(is, column.after) : SessionCellText(kNobody, 1);
            changes.push_back(std::move(change));
        }
    }
    return changes;
}

namespace {

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The course's files as they stood when copied: relative name -> ContentHash.
using Snapshot = std::map<std::string, uint64_t>;

// The copy of a course in a temporary folder, gone with the object.
class CourseCopy {
  public:
    explicit CourseCopy(const std::string& courseFolder) {
        std::string pattern = (fs::temp_directory_path() / "tallory-preview-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw RunTimeError(kPathFileAccessError, "cannot make a folder for the preview");
        folder_ = pattern;
        try {
            Copy(courseFolder);
        } catch (...) {
            Remove();
            throw;
        }
    }
    ~CourseCopy() { Remove(); }
    CourseCopy(const CourseCopy&) = delete;
    CourseCopy& operator=(const CourseCopy&) = delete;

    const std::string& Folder() const { return folder_; }
    const Snapshot& Files() const { return files_; }

    // The files of the copy as they stand now.
    Snapshot Now() const {
        Snapshot now;
        for (auto entry = fs::recursive_directory_iterator(folder_);
             entry != fs::recursive_directory_iterator(); ++entry) {
            const std::string name = entry->path().filename().string();
            if (entry.depth() == 0 && Skipped(name)) {
                if (entry->is_directory()) entry.disable_recursion_pending();
                continue;
            }
            if (!entry->is_regular_file() || entry->is_symlink() || IsTemporaryName(name)) continue;
            now.emplace(entry->path().lexically_relative(folder_).generic_string(),
                        ContentHash(ReadBytes(entry->path())));
        }
        return now;
    }

  private:
    // Top-level entries no grade depends on: pictures of the questions and report pages can be
    // large, and a change under way has its own bookkeeping.
    static bool Skipped(const std::string& name) {
        static const std::string journal = LastComponent(JournalFolder("/"));
        return ToUpper(name) == "IMAGES" || ToUpper(name) == "REPORTS" || name.starts_with(journal);
    }

    void Copy(const std::string& courseFolder) {
        // Folder permissions are set after their files are in, so a read-only folder stays one.
        std::vector<std::pair<fs::path, fs::perms>> folders;
        for (auto entry = fs::recursive_directory_iterator(courseFolder);
             entry != fs::recursive_directory_iterator(); ++entry) {
            const std::string name = entry->path().filename().string();
            const fs::path target =
                fs::path(folder_) / entry->path().lexically_relative(courseFolder);
            if (entry.depth() == 0 && Skipped(name)) {
                if (entry->is_directory() && !entry->is_symlink())
                    entry.disable_recursion_pending();
                continue;
            }
            if (entry->is_symlink()) {
                fs::copy_symlink(entry->path(), target);
            } else if (entry->is_directory()) {
                fs::create_directory(target);
                folders.emplace_back(target, entry->status().permissions());
            } else if (entry->is_regular_file() && !IsTemporaryName(name)) {
                fs::copy_file(entry->path(), target);
                // The newest grade book is found by its time.
                fs::last_write_time(target, entry->last_write_time());
                files_.emplace(target.lexically_relative(folder_).generic_string(),
                               ContentHash(ReadBytes(target)));
            }
        }
        for (auto it = folders.rbegin(); it != folders.rend(); ++it)
            fs::permissions(it->first, it->second);
    }

    void Remove() {
        if (folder_.empty()) return;
        std::error_code error;
        // A read-only folder of the copy must open up before its files can go.
        for (auto entry = fs::recursive_directory_iterator(folder_, error);
             !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            if (entry->is_directory() && !entry->is_symlink())
                fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, error);
        }
        fs::permissions(folder_, fs::perms::owner_all, fs::perm_options::add, error);
        fs::remove_all(folder_, error);
        folder_.clear();
    }

    std::string folder_;
    Snapshot files_;
};

// The grid of the course in `folder`, read as tallory-cli reads it, with no one to tell.
std::unique_ptr<Course> ReadGrid(const std::string& folder, DisplayOrder order) {
    auto course = std::make_unique<Course>();
    course->AppPath = folder;
    course->ProgramFolder = folder;
    RecordingHost quiet;
    HeadlessScreen screen(order);
    LoadCourse(*course, quiet, screen, ReadOnlyLoad());
    return course;
}

bool IsLogFile(const std::string& relative, const Course& course) {
    for (int s = 1; s <= course.NumSessions; ++s)
        if (ToUpper(relative) == ToUpper("SessionData/" + course.SessionFile[s])) return true;
    return false;
}

}  // namespace

ChangePreview PreviewChange(const std::string& courseFolder, DisplayOrder order,
                            const CourseChange& change) {
    CourseCopy copy(courseFolder);
    std::unique_ptr<Course> before = ReadGrid(copy.Folder(), order);
    {
        UnkeptChanges unkept;
        change(copy.Folder());
    }
    std::unique_ptr<Course> after = ReadGrid(copy.Folder(), order);

    ChangePreview preview;
    const Snapshot now = copy.Now();
    const Snapshot& was = copy.Files();
    std::set<std::string> names;
    for (const auto& [name, hash] : now) {
        auto found = was.find(name);
        if (found == was.end() || found->second != hash) names.insert(name);
    }
    for (const auto& [name, hash] : was)
        if (!now.count(name)) names.insert(name);
    for (const std::string& name : names) {
        preview.files.push_back(name);
        if (IsLogFile(name, *before) || IsLogFile(name, *after)) ++preview.logs;
    }
    preview.changes = GridChanges(*before, *after);
    return preview;
}

ChangePreview PreviewOpenCourseChange(const Course& course, DisplayOrder order,
                                      const OpenCourseChange& change) {
    int logsWritten = 0;
    ChangePreview preview =
        PreviewChange(course.AppPath, order, [&](const std::string& copyFolder) {
            auto copy = std::make_unique<Course>(course);
            copy->AppPath = copyFolder;
            copy->ProgramFolder = copyFolder;
            RecordingHost goAhead;
            goAhead.defaultAnswer = Answer::Yes;
            HeadlessScreen screen(order);
            change(*copy, goAhead, screen);
            std::set<std::string> logs;
            for (const std::string& path : goAhead.written) {
                const std::string name = ToUpper(LastComponent(path));
                for (int s = 1; s <= course.NumSessions; ++s)
                    if (name == ToUpper(course.SessionFile[s])) logs.insert(name);
            }
            logsWritten = static_cast<int>(logs.size());
        });
    preview.logsWritten = logsWritten;
    return preview;
}

ChangePreview PreviewPurge(const Course& course, DisplayOrder order,
                           const std::vector<std::string>& remotes) {
    return PreviewOpenCourseChange(
        course, order, [&](Course& copy, Host& host, MainScreen& screen) {
            UnregisteredTable students;
            BuildUnregisteredList(copy, students);
            GhostRemoteScreen ghosts(copy, host, screen, students);
            ghosts.Load();
            for (int row = 0; row < ghosts.GhostCount(); ++row) {
                const std::string& remote = ghosts.GhostList()[row].RemoteId;
                if (std::find(remotes.begin(), remotes.end(), remote) != remotes.end())
                    ghosts.SetGhostSelected(row, kTrue);
            }
            ghosts.CmdDeleteClick();
        });
}

std::string PreviewSummary(const ChangePreview& preview) {
    auto count = [](int n, const char* one, const char* many) {
        return std::to_string(n) + " " + (n == 1 ? one : many);
    };
    if (preview.changes.empty()) return "This changes no scores";
    return "This changes " + count(static_cast<int>(preview.changes.size()), "score", "scores") +
           " of " + count(preview.Students(), "student", "students") + " in " +
           count(preview.Sessions(), "session", "sessions");
}

}  // namespace tallory
