#include "reports/PageWriter.h"

#include <unistd.h>

#include <cerrno>

#include "common/AtomicFile.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/RunTimeError.h"
#include "common/Text.h"
#include "logs/SessionLog.h"
#include "scoring/Grading.h"
#include "scoring/ScreenParts.h"
#include "start/Settings.h"

namespace tallory {

namespace {

constexpr std::string_view kOpenFailed = "Error opening html summary file";

std::string Numbered(std::string_view stem, int session, std::string_view tail) {
    return std::string(stem) + std::to_string(session) + std::string(tail);
}

}  // namespace

std::string OfCount(long i, long count) {
    return std::to_string(i) + " Of " + std::to_string(count);
}

std::string_view RowColour(long row) {
    return row % 2 != 0 ? kOddRowColour : kEvenRowColour;
}

std::string ReportsFolderPath(const Course& course) {
    return CoursePath(course.AppPath, "\\Reports");
}

std::string TermSummaryPath(const Course& course) {
    return CoursePath(course.AppPath, "\\Term_Session Summary and Review.html");
}

std::string StudentVotingDataPath(const Course& course) {
    return CoursePath(course.AppPath, "\\Student Voting Data.html");
}

std::string SessionSummaryPath(const Course& course, int session) {
    return CoursePath(course.AppPath, Numbered("\\Reports\\SessionSummary_", session, ".html"));
}

std::string SessionDetailPath(const Course& course, int session) {
    return CoursePath(course.AppPath, Numbered("\\Reports\\SessionDetail_", session, ".html"));
}

std::string StudentTermReportPath(const Course& course) {
    return CoursePath(course.AppPath, "\\Reports\\StudentTermReport.html");
}

std::string SessionSummaryLinkFromCourse(const Course& course, int session) {
    return Numbered("../" + course.CourseFolderName + "/Reports/SessionSummary_", session, ".html");
}

std::string SessionDetailLinkFromCourse(const Course& course, int session) {
    return Numbered("../" + course.CourseFolderName + "/Reports/SessionDetail_", session, ".html");
}

std::string StudentTermReportLinkFromCourse(const Course& course) {
    return "../" + course.CourseFolderName + "/Reports/StudentTermReport.html";
}

std::string SessionSummaryLinkFromReports(int session) {
    return Numbered("../Reports/SessionSummary_", session, ".html");
}

std::string SessionDetailLinkFromReports(int session) {
    return Numbered("../Reports/SessionDetail_", session, ".html");
}

std::string AnswerLetter(long code) {
    static constexpr std::string_view kLetters = " ABCDE ";
    if (code < 0) throw RunTimeError(kInvalidProcedureCall, "answer code " + std::to_string(code));
    if (code >= static_cast<long>(kLetters.size())) return {};
    return std::string(1, kLetters[code]);
}

FilePageOutput::FilePageOutput(Host& host) : host_(host) {}
FilePageOutput::~FilePageOutput() = default;

bool FilePageOutput::Begin(const std::string& path) {
    // A page is replaced whole, but what could not be opened for writing in place still fails:
    // a folder of the page's name, or a page the instructor made read-only.
    if (FolderExists(path)) {
        host_.FileNotWritten(path, "cannot write " + path + ": " + CauseText(EISDIR));
        return false;
    }
    if (FileExists(path) && ::access(path.c_str(), W_OK) != 0) {
        host_.FileNotWritten(path, "cannot replace the read-only file " + path);
        return false;
    }
    file_ = std::make_unique<AtomicFile>(path, &host_);
    if (file_->Open()) return true;
    file_.reset();
    return false;
}

void FilePageOutput::Write(std::string_view text) {
    if (file_) file_->Write(text);
}

void FilePageOutput::End() {
    if (!file_) return;
    std::unique_ptr<AtomicFile> file = std::move(file_);
    if (!file->Commit()) throw RunTimeError(kPathFileAccessError, file->Error());
}

bool MemoryPageOutput::Begin(const std::string& path) {
    if (refuse) return false;
    path_ = path;
    current_.clear();
    return true;
}

void MemoryPageOutput::End() {
    if (!pages.count(path_)) order.push_back(path_);
    pages[path_] = std::move(current_);
    current_.clear();
}

PageWriter::PageWriter(const Course& course, Host& host, PageOutput& output)
    : course_(course), host_(host), output_(output), courseName_(CourseName(course)) {}

void PageWriter::Open(const std::string& path) {
    path_ = path;
    pending_.clear();
    open_ = output_.Begin(path);
    if (!open_) host_.Message(kOpenFailed);
}

void PageWriter::Close() {
    if (!open_) return;
    open_ = false;
    output_.Write(pending_);
    pending_.clear();
    output_.End();
}

void PageWriter::NotOpen() const {
    // The page writers' own lines do not ask whether the page is open: the first of them on a
    // page that could not be opened ends the run.
    throw RunTimeError(kBadFileNameOrNumber, "writing " + path_);
}

void PageWriter::HandOver() {
    output_.Write(pending_);
    pending_.clear();
}

PageWriter& PageWriter::Number(double value) {
    char item[kNumberItemSize];
    Write(std::string_view(item, NumberItemTo(value, item)));
    return *this;
}

PageWriter& PageWriter::Converted(double value) {
    char text[kNumberTextSize];
    Write(std::string_view(text, NumberTextTo(value, text)));
    return *this;
}

PageWriter& PageWriter::Formatted(double value) {
    Write(FormatFixed(value, 2));
    return *this;
}

void PageWriter::SessionHead(std::string_view title) {
    if (!open_) return;
    Line("<html>");
    Line("<head>");
    Text("<title> Polvane ").Text(title).Line(" Report </title>");
    Line("</head>");
    Text("<H1> <font face=\"Trebuchet MS\" color=").Text(kTitleColour).Text(">").Text(title);
    Text(" Report: <A HREF=").Text(kTermSummaryLink).Text("> <font face=\"Trebuchet MS\" color=");
    Text(kLinkColour).Text(">").Text(courseName_).Line(" </font> </A> </H1>");
}

void PageWriter::TermHead(std::string_view title) {
    if (!open_) return;
    Line("<html>");
    Line("<head>");
    Text("<title>Polvane ").Text(title).Line(" Report </title>");
    Line("</head> <br>");
    Text("<H1> <font face=\"Trebuchet MS\" color=").Text(kTitleColour).Text(">").Text(title);
    Text(" Report </H1> <br>  <H2> <font face=\"Trebuchet MS\" color=").Text(kLinkColour);
    Text(">Course Name : ").Text(courseName_).Line(" </font> </H2>");
}

void PageWriter::Tail() {
    if (!open_) return;
    Line("</html>");
}

bool PageWriter::ShowsName(std::string_view id) const {
    return !StartsWith(id, "#") && course_.ReportDisplayMode != kDisplayIdOnly;
}

void PageWriter::IndexRoster() const {
    if (indexed_) return;
    indexed_ = true;
    rosterFull_ = true;
    for (long row = 0; row <= kMaxRoster; ++row) {
        const RosterRec& entry = course_.Roster[row];
        if (TrimView(entry.StudentId).empty()) {
            rosterFull_ = false;
            break;
        }
        rosterRows_.emplace(NormalKey(entry.StudentId), row);
    }
    for (long row = 0; row < course_.RemoteTable.Allocated(); ++row)
        remoteRows_.emplace(NormalKey(course_.RemoteTable[row].StudentId), row);
}

std::string PageWriter::FirstRemoteOf(std::string_view studentId) const {
    auto found = remoteRows_.find(NormalKey(studentId));
    if (found == remoteRows_.end()) return {};
    return NormalKey(course_.RemoteTable[found->second].RemoteId);
}

const std::string& PageWriter::StudentDisplayName(std::string_view id) const {
    auto known = displayNames_.find(std::string(id));
    if (known != displayNames_.end()) return known->second;
    std::string name = DisplayNameOf(id);
    return displayNames_.emplace(std::string(id), std::move(name)).first->second;
}

std::string PageWriter::DisplayNameOf(std::string_view id) const {
    if (TrimView(id).empty()) return {};
    IndexRoster();
    std::string result;
    auto found = rosterRows_.find(NormalKey(id));
    if (found == rosterRows_.end()) {
        // A roster with no empty row runs the walk off its end.
        if (rosterFull_) CheckSubscript(kMaxRoster + 1, 0, kMaxRoster, "Roster");
        result = std::string(id);
    } else {
        const RosterRec& entry = course_.Roster[found->second];
        const std::string last = Trim(entry.LastName);
        const std::string first = Trim(entry.FirstName);
        const std::string studentId = Trim(entry.StudentId);
        switch (course_.ReportDisplayMode) {
            case kDisplayLastFirstId:
                result = last + ", " + first + ", " + studentId;
                break;
            case kDisplayLastId:
                result = last + ", " + studentId;
                break;
            case kDisplayLastFirst:
                result = last + ", " + first;
                break;
            case kDisplayRemoteOnly:
                result = FirstRemoteOf(entry.StudentId);
                break;
            default:
                result = studentId;
                break;
        }
    }
    std::string trimmed = Trim(result);
    return trimmed.empty() ? Trim(id) : trimmed;
}

}  // namespace tallory
