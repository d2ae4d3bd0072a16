// overview [--html]: the course at a glance; with --html also the page Reports/Overview.html.
#include <memory>
#include <sstream>

#include "cli/commands/Commands.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "overview/CourseOverview.h"
#include "overview/OverviewPage.h"

namespace tallory::cli {

namespace {

using nlohmann::json;

constexpr std::string_view kPageFile = "Reports/Overview.html";

template <class T>
json OrNull(const std::optional<T>& value) {
    return value ? json(*value) : json(nullptr);
}

json OverviewJson(const CourseOverview& overview) {
    json sessions = json::array();
    for (const SessionFigures& s : overview.sessions)
        sessions.push_back({{"label", JsonText(s.label)},
                            {"available", s.available},
                            {"present", s.present},
                            {"students", s.students},
                            {"attendance", s.attendance},
                            {"average", OrNull(s.average)}});
    json atRisk = json::array();
    for (const StudentAtRisk& student : overview.atRisk)
        atRisk.push_back({{"id", JsonText(student.id)},
                          {"name", JsonText(student.name)},
                          {"attended", student.attended},
                          {"total", student.total}});
    json questions = json::array();
    for (const QuestionFigures& q : overview.questions)
        questions.push_back({{"session", JsonText(q.label)},
                             {"question", JsonText(q.question)},
                             {"answered", q.answered},
                             {"correct", OrNull(q.correct)}});
    return {{"sessions", sessions},
            {"totals", {{"available", overview.available}, {"bins", overview.bins}}},
            {"at_risk", atRisk},
            {"questions", questions}};
}

std::string OverviewText(const CourseOverview& overview) {
    std::ostringstream out;
    out << "Session" << Padding(16, 7) << "Available  Present    Attendance  Average\n";
    for (const SessionFigures& s : overview.sessions) {
        const std::string label = Left(Trim(s.label), 15);
        const std::string available = FormatFixed(s.available, 2);
        const std::string present = std::to_string(s.present) + "/" + std::to_string(s.students);
        const std::string attendance = FormatFixed(s.attendance * 100, 0) + "%";
        out << DisplayText(label) << Padding(16, label.size()) << available
            << Padding(11, available.size()) << present << Padding(11, present.size()) << attendance
            << Padding(12, attendance.size()) << (s.average ? FormatFixed(*s.average, 2) : "-")
            << "\n";
    }
    out << "\nTerm totals out of " << FormatFixed(overview.available, 2) << " points:\n";
    for (int k = 0; k < kTotalBins; ++k) {
        const std::string range = std::to_string(k * 10) + "-" + std::to_string(k * 10 + 10) + "%";
        out << "  " << range << Padding(9, range.size()) << overview.bins[k] << "\n";
    }
    out << "\nAt risk (present in fewer than 60% of the sessions or absent from the last three):\n";
    if (overview.atRisk.empty()) out << "  nobody\n";
    for (const StudentAtRisk& student : overview.atRisk) {
        const std::string id = Trim(student.id);
        out << "  " << DisplayText(id) << Padding(14, id.size()) << DisplayText(student.name)
            << " - " << student.attended << " of " << overview.sessions.size() << " sessions, "
            << FormatFixed(student.total, 2) << " points\n";
    }
    return out.str();
}

int RunOverview(Context& context, bool html) {
    const CourseOverview overview = MakeCourseOverview(context.course);
    bool written = true;
    if (html) {
        std::string error;
        written = WriteOverviewPage(context.course, overview, context.host, error);
        if (!written)
            context.host.Message(
                "The page " + std::string(kPageFile) + " was not written: " + error,
                "Course Overview", Icon::Exclamation, Buttons::Ok);
    }
    // The files written and not written are the host's to list; a page not written makes the
    // status 3 as for every writing command.
    std::string text = OverviewText(overview);
    if (html && written) text += "\nWritten: " + std::string(kPageFile) + "\n";
    Print(context, OverviewJson(overview), text, Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareOverviewCommand(CLI::App& command, Context& context) {
    auto html = std::make_shared<bool>(false);
    command.add_flag("--html", *html, "also write the page Reports/Overview.html");
    return [&context, html] { return RunOverview(context, *html); };
}

}  // namespace tallory::cli
