#include "overview/OverviewPage.h"

#include <algorithm>
#include <cmath>

#include "common/AtomicFile.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "reports/PageWriter.h"
#include "start/Settings.h"

namespace tallory {

namespace {

// Colours that keep apart in grey as well: a dark bar, a light line with marks and dashes.
constexpr std::string_view kBarColour = "#1f4e79";
constexpr std::string_view kLineColour = "#d97a1e";
constexpr std::string_view kGridColour = "#d0d0d0";

std::string Shown(std::string_view bytes) {
    return HtmlEscaped(DisplayText(bytes));
}

std::string Fixed(double value, int places) {
    return FormatFixed(value, places);
}

std::string Percent(double fraction) {
    return Fixed(fraction * 100, 0) + "%";
}

// A coordinate of a chart.
std::string At(double value) {
    return Fixed(value, 1);
}

// The plot area shared by the two column charts.
struct Plot {
    double width = 760, height = 260;
    double left = 48, right = 12, top = 16, bottom = 70;
    double Right() const { return width - right; }
    double Bottom() const { return height - bottom; }
    double InnerWidth() const { return width - left - right; }
    double InnerHeight() const { return height - top - bottom; }
    double Y(double fraction) const {
        return Bottom() - std::clamp(fraction, 0.0, 1.0) * InnerHeight();
    }
};

std::string SvgOpen(const Plot& plot, std::string_view title) {
    return "<svg class=\"chart\" viewBox=\"0 0 " + At(plot.width) + " " + At(plot.height) +
           "\" role=\"img\" aria-label=\"" + std::string(title) + "\">\n<title>" +
           std::string(title) + "</title>\n";
}

// Horizontal grid lines with their labels, from 0 to `top` in `steps`.
std::string Grid(const Plot& plot, double top, int steps, std::string_view unit) {
    std::string out;
    for (int k = 0; k <= steps; ++k) {
        const double y = plot.Y(static_cast<double>(k) / steps);
        out += "<line x1=\"" + At(plot.left) + "\" y1=\"" + At(y) + "\" x2=\"" + At(plot.Right()) +
               "\" y2=\"" + At(y) + "\" stroke=\"" + std::string(kGridColour) + "\"/>\n";
        out += "<text x=\"" + At(plot.left - 6) + "\" y=\"" + At(y + 4) +
               "\" text-anchor=\"end\">" + Fixed(top * k / steps, 0) + std::string(unit) +
               "</text>\n";
    }
    return out;
}

// A label under column i of n, turned when the columns are narrow; every k-th when crowded.
std::string ColumnLabel(const Plot& plot, int i, int n, const std::string& text) {
    const double step = plot.InnerWidth() / n;
    const int every = std::max(1, static_cast<int>(std::ceil(14.0 / step)));
    if (i % every != 0) return {};
    const double x = plot.left + step * (i + 0.5);
    const double y = plot.Bottom() + 12;
    return "<text x=\"" + At(x) + "\" y=\"" + At(y) +
           "\" text-anchor=\"end\" transform=\"rotate(-45 " + At(x) + " " + At(y) + ")\">" + text +
           "</text>\n";
}

std::string AttendanceChart(const CourseOverview& overview) {
    const Plot plot;
    const int n = static_cast<int>(overview.sessions.size());
    std::string out = SvgOpen(plot,
                              "Attendance (bars) and average score as a share of the points "
                              "available (line), by session");
    out += Grid(plot, 100, 4, "%");
    const double step = plot.InnerWidth() / std::max(n, 1);
    std::string points;
    std::string marks;
    for (int i = 0; i < n; ++i) {
        const SessionFigures& s = overview.sessions[i];
        const std::string label = Shown(s.label);
        const double x = plot.left + step * i;
        const double y = plot.Y(s.attendance);
        out += "<rect x=\"" + At(x + step * 0.15) + "\" y=\"" + At(y) + "\" width=\"" +
               At(step * 0.7) + "\" height=\"" + At(plot.Bottom() - y) + "\" fill=\"" +
               std::string(kBarColour) + "\"><title>" + label + ": attendance " +
               Percent(s.attendance) + " (" + std::to_string(s.present) + " of " +
               std::to_string(s.students) + ")</title></rect>\n";
        out += ColumnLabel(plot, i, n, label);
        if (s.average && s.available > 0) {
            const double share = *s.average / s.available;
            const std::string point = At(x + step / 2) + "," + At(plot.Y(share));
            points += (points.empty() ? "" : " ") + point;
            marks += "<circle cx=\"" + At(x + step / 2) + "\" cy=\"" + At(plot.Y(share)) +
                     "\" r=\"3.5\" fill=\"#ffffff\" stroke=\"" + std::string(kLineColour) +
                     "\" stroke-width=\"2\"><title>" + label + ": average " + Fixed(*s.average, 2) +
                     " of " + Fixed(s.available, 2) + "</title></circle>\n";
        }
    }
    if (!points.empty())
        out += "<polyline points=\"" + points + "\" fill=\"none\" stroke=\"" +
               std::string(kLineColour) + "\" stroke-width=\"2.5\" stroke-dasharray=\"6 3\"/>\n";
    out += marks;
    out += "</svg>\n";
    return out;
}

// The key of the bars or of the line, as the chart draws them.
std::string LegendKey(bool line) {
    std::string out =
        "<svg class=\"key\" width=\"28\" height=\"12\" viewBox=\"0 0 28 12\" "
        "aria-hidden=\"true\">";
    if (line)
        out += "<line x1=\"1\" y1=\"6\" x2=\"27\" y2=\"6\" stroke=\"" + std::string(kLineColour) +
               "\" stroke-width=\"2.5\" stroke-dasharray=\"6 3\"/><circle cx=\"14\" cy=\"6\" "
               "r=\"3.5\" fill=\"#ffffff\" stroke=\"" +
               std::string(kLineColour) + "\" stroke-width=\"2\"/>";
    else
        out += "<rect x=\"4\" y=\"1\" width=\"20\" height=\"10\" fill=\"" +
               std::string(kBarColour) + "\"/>";
    return out + "</svg>";
}

std::string BinLabel(int k) {
    return std::to_string(k * 10) + "\u2013" + std::to_string(k * 10 + 10) + "%";
}

std::string TotalsChart(const CourseOverview& overview) {
    // Its labels stand level: less room beneath.
    Plot plot;
    plot.height = 220;
    plot.bottom = 28;
    int highest = 1;
    for (int count : overview.bins) highest = std::max(highest, count);
    // A scale of whole students that ends on a round number.
    const int steps = std::min(highest, 5);
    const int top = (highest + steps - 1) / steps * steps;
    std::string out = SvgOpen(plot, "Students by term total, in tenths of the points available");
    out += Grid(plot, top, steps, "");
    const double step = plot.InnerWidth() / kTotalBins;
    for (int k = 0; k < kTotalBins; ++k) {
        const int count = overview.bins[k];
        const double x = plot.left + step * k;
        const double y = plot.Y(static_cast<double>(count) / top);
        out += "<rect x=\"" + At(x + 2) + "\" y=\"" + At(y) + "\" width=\"" + At(step - 4) +
               "\" height=\"" + At(plot.Bottom() - y) + "\" fill=\"" + std::string(kBarColour) +
               "\"><title>" + BinLabel(k) + ": " + std::to_string(count) +
               " students</title></rect>\n";
        if (count > 0)
            out += "<text x=\"" + At(x + step / 2) + "\" y=\"" + At(y - 4) +
                   "\" text-anchor=\"middle\">" + std::to_string(count) + "</text>\n";
        out += "<text x=\"" + At(x + step / 2) + "\" y=\"" + At(plot.Bottom() + 16) +
               "\" text-anchor=\"middle\">" + BinLabel(k) + "</text>\n";
    }
    out += "</svg>\n";
    return out;
}

// The share of those who answered that chose the correct answer; none without an answer key or
// without answers.
std::optional<double> ShareCorrect(const QuestionFigures& q) {
    if (!q.correct || q.answered == 0) return std::nullopt;
    return static_cast<double>(*q.correct) / q.answered;
}

// A small chart of a session's questions: one bar per question, its height the share correct.
std::string QuestionBars(const std::vector<const QuestionFigures*>& questions) {
    if (questions.empty()) return "&mdash;";
    const int bar = 10, gap = 3, height = 28;
    const int width = static_cast<int>(questions.size()) * (bar + gap);
    const std::string size = std::to_string(width) + "\" height=\"" + std::to_string(height);
    std::string out = "<svg class=\"mini\" width=\"" + size + "\" viewBox=\"0 0 " +
                      std::to_string(width) + " " + std::to_string(height) +
                      "\" role=\"img\" aria-label=\"Share correct per question\">";
    for (size_t i = 0; i < questions.size(); ++i) {
        const QuestionFigures& q = *questions[i];
        const std::optional<double> share = ShareCorrect(q);
        const double x = i * (bar + gap);
        std::string tip = "Q" + std::to_string(q.number) + " " + Shown(q.question) + ": ";
        tip += share ? Percent(*share) + " correct (" + std::to_string(*q.correct) + " of " +
                           std::to_string(q.answered) + ")"
                     : std::string(q.correct ? "no answers" : "no correct answer set");
        out += "<rect x=\"" + At(x) + "\" y=\"0\" width=\"" + At(bar) + "\" height=\"" +
               At(height) + "\" fill=\"#eeeeee\"/>";
        if (share) {
            const double h = std::max(1.0, *share * height);
            out += "<rect x=\"" + At(x) + "\" y=\"" + At(height - h) + "\" width=\"" + At(bar) +
                   "\" height=\"" + At(h) + "\" fill=\"" + std::string(kBarColour) + "\"><title>" +
                   tip + "</title></rect>";
        } else {
            out += "<title>" + tip + "</title>";
        }
    }
    out += "</svg>";
    return out;
}

constexpr std::string_view kStyle = R"(
:root { color-scheme: light; }
body { font-family: "DejaVu Sans", "Segoe UI", Helvetica, Arial, sans-serif; color: #1b1b1b;
  margin: 2rem auto; max-width: 62rem; padding: 0 1rem; line-height: 1.45; }
h1 { font-size: 1.6rem; margin-bottom: 0.2rem; }
h2 { font-size: 1.2rem; margin-top: 2rem; border-bottom: 2px solid #1f4e79; padding-bottom: 0.2rem; }
p.lead { color: #444; margin-top: 0; }
.facts { display: flex; flex-wrap: wrap; gap: 0.75rem; padding: 0; list-style: none; }
.facts li { border: 1px solid #c8c8c8; border-radius: 6px; padding: 0.5rem 0.9rem; }
.facts strong { display: block; font-size: 1.3rem; }
svg.chart { width: 100%; height: auto; font-size: 11px; }
svg text { fill: #1b1b1b; }
.legend span { display: inline-block; margin-right: 1.5rem; }
svg.key { vertical-align: middle; margin-right: 0.4rem; }
table { border-collapse: collapse; width: 100%; }
th, td { border-bottom: 1px solid #d8d8d8; padding: 0.35rem 0.5rem; text-align: left; vertical-align: middle; }
th { background: #eef2f7; }
td.number, th.number { text-align: right; font-variant-numeric: tabular-nums; }
tbody tr:nth-child(even) { background: #f7f7f7; }
a { color: #0b4f9c; }
footer { margin-top: 2rem; color: #555; font-size: 0.85rem; }
@media print {
  body { margin: 0; max-width: none; font-size: 10pt; }
  h2 { break-after: avoid; }
  section, tr, svg { break-inside: avoid; }
  a { color: inherit; text-decoration: none; }
  tbody tr:nth-child(even) { background: none; }
  footer { display: none; }
}
)";

std::string SessionsTable(const Course& course, const CourseOverview& overview, bool links) {
    std::string out =
        "<table>\n<thead><tr><th>Session</th><th class=\"number\">Points available</th>"
        "<th class=\"number\">Present</th><th class=\"number\">Attendance</th>"
        "<th class=\"number\">Average</th><th>Share correct per question</th></tr></thead>\n"
        "<tbody>\n";
    for (const SessionFigures& s : overview.sessions) {
        std::vector<const QuestionFigures*> questions;
        for (const QuestionFigures& q : overview.questions)
            if (q.session == s.session) questions.push_back(&q);
        std::string label = Shown(s.label);
        if (links && FileExists(SessionSummaryPath(course, s.session)))
            label = "<a href=\"SessionSummary_" + std::to_string(s.session) + ".html\">" + label +
                    "</a>";
        out += "<tr><td>" + label + "</td><td class=\"number\">" + Fixed(s.available, 2) +
               "</td><td class=\"number\">" + std::to_string(s.present) + " of " +
               std::to_string(s.students) + "</td><td class=\"number\">" + Percent(s.attendance) +
               "</td><td class=\"number\">" + (s.average ? Fixed(*s.average, 2) : "&mdash;") +
               "</td><td>" + QuestionBars(questions) + "</td></tr>\n";
    }
    out += "</tbody>\n</table>\n";
    return out;
}

std::string AtRiskTable(const CourseOverview& overview) {
    if (overview.atRisk.empty())
        return "<p>No student is at risk: everyone was present in at least 60% of the sessions "
               "and in one of the last three.</p>\n";
    const size_t sessions = overview.sessions.size();
    std::string out =
        "<table>\n<thead><tr><th>Student</th><th>ID</th><th class=\"number\">Sessions "
        "attended</th><th class=\"number\">Term total</th></tr></thead>\n<tbody>\n";
    for (const StudentAtRisk& student : overview.atRisk) {
        out += "<tr><td>" + (student.name.empty() ? "&mdash;" : Shown(student.name)) + "</td><td>" +
               Shown(Trim(student.id)) + "</td><td class=\"number\">" +
               std::to_string(student.attended) + " of " + std::to_string(sessions) +
               "</td><td class=\"number\">" + Fixed(student.total, 2) + " of " +
               Fixed(overview.available, 2) + "</td></tr>\n";
    }
    out += "</tbody>\n</table>\n";
    return out;
}

}  // namespace

std::string HtmlEscaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string OverviewPagePath(const Course& course) {
    return CoursePath(course.AppPath, "\\Reports\\Overview.html");
}

std::string OverviewPageText(const Course& course, const CourseOverview& overview,
                             bool summaryLinks) {
    const std::string name = Shown(CourseName(course));
    int students = 0;
    for (int count : overview.bins) students += count;
    double present = 0;
    for (const SessionFigures& s : overview.sessions) present += s.attendance;
    const double attendance = overview.sessions.empty() ? 0 : present / overview.sessions.size();

    std::string out =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<title>Course overview: " +
        name + "</title>\n<style>" + std::string(kStyle) +
        "</style>\n</head>\n<body>\n<header>\n<h1>" + name +
        "</h1>\n<p class=\"lead\">The course at a glance</p>\n<ul class=\"facts\">"
        "<li>Sessions<strong>" +
        std::to_string(overview.sessions.size()) + "</strong></li><li>Students<strong>" +
        std::to_string(students) + "</strong></li><li>Mean attendance<strong>" +
        Percent(attendance) + "</strong></li><li>Points available<strong>" +
        Fixed(overview.available, 2) + "</strong></li><li>At risk<strong>" +
        std::to_string(overview.atRisk.size()) +
        "</strong></li></ul>\n</header>\n"
        "<main>\n";
    out += "<section>\n<h2>Attendance and average by session</h2>\n<p class=\"legend\"><span>" +
           LegendKey(false) + "Attendance: students present</span><span>" + LegendKey(true) +
           "Average of those present, as a share of the points available</span></p>\n" +
           AttendanceChart(overview) + "</section>\n";
    out +=
        "<section>\n<h2>Spread of term totals</h2>\n<p>Students by term total, in tenths of "
        "the " +
        Fixed(overview.available, 2) + " points available.</p>\n" + TotalsChart(overview) +
        "</section>\n";
    out +=
        "<section>\n<h2>Students at risk</h2>\n<p>Present in fewer than 60% of the sessions, "
        "or absent from each of the last three.</p>\n" +
        AtRiskTable(overview) + "</section>\n";
    out += "<section>\n<h2>Sessions</h2>\n" + SessionsTable(course, overview, summaryLinks) +
           "</section>\n</main>\n<footer>Figures of roster students; a clicker nobody registered "
           "counts only among those who answered a question.</footer>\n</body>\n</html>\n";
    return out;
}

bool WriteOverviewPage(const Course& course, const CourseOverview& overview, Host& host,
                       std::string& error) {
    const std::string folder = ReportsFolderPath(course);
    CreateFolderPath(folder);
    if (!FolderExists(folder)) {
        error = "the folder " + folder + " could not be made";
        host.FileNotWritten(OverviewPagePath(course),
                            "cannot write " + OverviewPagePath(course) + ": " + error);
        return false;
    }
    return ReplaceFile(OverviewPagePath(course), OverviewPageText(course, overview), &error, &host);
}

}  // namespace tallory
