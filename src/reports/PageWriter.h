#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/AtomicFile.h"
#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// The HTML report pages: how their lines are written, where they go and how they link.

// Colours of the pages. No page uses any other.
inline constexpr std::string_view kTitleColour = "#69C44D";
inline constexpr std::string_view kLinkColour = "#0000FF";  // course name, dates, names, links
inline constexpr std::string_view kLegendColour = "#FFFDA6";
inline constexpr std::string_view kEvenRowColour = "#E4E4E4";
inline constexpr std::string_view kOddRowColour = "#FFFFFF";
inline constexpr std::string_view kWrongColour = "#FF0000";  // also unregistered remotes
inline constexpr std::string_view kRightColour = "#339900";
inline constexpr std::string_view kNeutralColour = "#000000";

// The font the pages' text is set in.
inline constexpr std::string_view kPageFont = "<font face = \"Trebuchet MS\">";

// Where a pass over sessions or students stands, for the progress text: "3 Of 30".
std::string OfCount(long i, long count);

// The background of a table row numbered from 1: white for odd rows, grey for even ones.
std::string_view RowColour(long row);

// How a student is shown on the pages (ReportDisplayMode).
enum ReportDisplay : int16_t {
    kDisplayLastFirstId = 0,
    kDisplayLastId = 1,
    kDisplayIdOnly = 2,
    kDisplayLastFirst = 3,
    kDisplayRemoteOnly = 4,
};

// The page files, under the course folder, resolved without regard to case.
std::string ReportsFolderPath(const Course& course);
std::string TermSummaryPath(const Course& course);
std::string StudentVotingDataPath(const Course& course);
std::string SessionSummaryPath(const Course& course, int session);
std::string SessionDetailPath(const Course& course, int session);
std::string StudentTermReportPath(const Course& course);

// The links as the pages carry them. The pages of the course folder go up and down again through
// the course folder's own name.
inline constexpr std::string_view kTermSummaryLink =
    "../Term_Session%20Summary%20and%20Review.html";
std::string SessionSummaryLinkFromCourse(const Course& course, int session);
std::string SessionDetailLinkFromCourse(const Course& course, int session);
std::string StudentTermReportLinkFromCourse(const Course& course);
std::string SessionSummaryLinkFromReports(int session);  // without the question's anchor
std::string SessionDetailLinkFromReports(int session);

// The character at place x + 1 of " ABCDE ": the letter of an answer code, a blank for 0 and 6,
// nothing past the end; a code below 0 is run-time error 5.
std::string AnswerLetter(long code);

// Where the bytes of the pages go: files in the course folder, or memory for tests.
class PageOutput {
  public:
    virtual ~PageOutput() = default;
    // Starts the page `path` afresh; false when it cannot be opened.
    virtual bool Begin(const std::string& path) = 0;
    virtual void Write(std::string_view text) = 0;
    // Puts the finished page in place.
    virtual void End() = 0;
};

// Pages as files, each replaced whole when it is finished; the host hears of every page.
class FilePageOutput : public PageOutput {
  public:
    explicit FilePageOutput(Host& host);
    ~FilePageOutput() override;
    bool Begin(const std::string& path) override;
    void Write(std::string_view text) override;
    void End() override;

  private:
    Host& host_;
    std::unique_ptr<class AtomicFile> file_;
};

// Pages kept in memory by path, in the order they were finished.
class MemoryPageOutput : public PageOutput {
  public:
    bool Begin(const std::string& path) override;
    void Write(std::string_view text) override { current_.append(text); }
    void End() override;

    std::map<std::string, std::string> pages;
    std::vector<std::string> order;
    bool refuse = false;  // every Begin fails, as a folder that cannot be written

  private:
    std::string path_;
    std::string current_;
};

// Writes the lines of one report page at a time. A line is a list of items with nothing between
// them, ended by CR LF. Heads and the tail write nothing while no page is open; every other item
// on a page that could not be opened is run-time error 52, which ends the run.
class PageWriter {
  public:
    PageWriter(const Course& course, Host& host, PageOutput& output);

    // OpenReportFile: on failure "Error opening html summary file", and the page stays closed.
    void Open(const std::string& path);
    // CloseReportFile.
    void Close();
    bool IsOpen() const { return open_; }

    // A string item, as it stands.
    PageWriter& Text(std::string_view text) {
        Write(text);
        return *this;
    }
    // A number item: a sign place, the general digits without a zero before the point, a blank.
    PageWriter& Number(double value);
    // A number converted to a string: the general digits, nothing added ("0.5").
    PageWriter& Converted(double value);
    // A formatted figure, "#0.00" or "0.00" (the two agree): two places, halves away from zero.
    PageWriter& Formatted(double value);
    PageWriter& EndLine() { return Text("\r\n"); }
    // One line of a single string item.
    PageWriter& Line(std::string_view text) { return Text(text).EndLine(); }

    // The heads and the tail of the pages.
    void SessionHead(std::string_view title);
    void TermHead(std::string_view title);
    void Tail();

    // How a student is shown, by the course's ReportDisplayMode.
    // The same student is shown on every session's page: each name is made once per run.
    const std::string& StudentDisplayName(std::string_view id) const;
    // Whether a student is shown by name: not an unregistered remote and not "ID only".
    bool ShowsName(std::string_view id) const;

    const Course& course() const { return course_; }
    Host& host() const { return host_; }

  private:
    // Every item of every page comes through here: inline, and checked in the same step.
    void Write(std::string_view text) {
        if (!open_) NotOpen();
        pending_.append(text);
        if (pending_.size() >= kPendingSize) HandOver();
    }
    [[noreturn]] void NotOpen() const;
    void HandOver();
    void IndexRoster() const;
    std::string FirstRemoteOf(std::string_view studentId) const;

    const Course& course_;
    Host& host_;
    PageOutput& output_;
    bool open_ = false;
    std::string path_;  // of the page last opened, or tried
    std::string courseName_;
    // The items of a page go to the output in pieces the file takes as they are (see
    // AtomicFile): a page of every student's votes is millions of items.
    static constexpr size_t kPendingSize = AtomicFile::kBufferSize;
    std::string pending_;

    // Roster rows up to the first without an ID, by normal key (first row wins), and the
    // registrations by normal student key; built at first use, as neither changes during a run.
    mutable bool indexed_ = false;
    mutable bool rosterFull_ = false;
    mutable std::unordered_map<std::string, long> rosterRows_;
    mutable std::unordered_map<std::string, long> remoteRows_;
    mutable std::unordered_map<std::string, std::string> displayNames_;  // by the ID as given
    std::string DisplayNameOf(std::string_view id) const;
};

}  // namespace tallory
