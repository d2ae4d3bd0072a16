#pragma once

#include <string>

#include "common/Course.h"
#include "common/Host.h"
#include "overview/CourseOverview.h"

namespace tallory {

// "Reports/Overview.html": the course at a glance as one page that stands alone (its style and
// charts inside it, nothing fetched, no script), for the screen and for print.

// The page's path in the course folder.
std::string OverviewPagePath(const Course& course);

// The page. `summaryLinks` links each session to its summary page where that page exists.
std::string OverviewPageText(const Course& course, const CourseOverview& overview,
                             bool summaryLinks = true);

// Escapes text for HTML: &, <, >, " and '.
std::string HtmlEscaped(std::string_view text);

// Writes the page, making the Reports folder when it is missing; the host hears of the file.
// False with the reason when the page could not be written.
bool WriteOverviewPage(const Course& course, const CourseOverview& overview, Host& host,
                       std::string& error);

}  // namespace tallory
