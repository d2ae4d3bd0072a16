#pragma once

#include <string>

#include "common/Course.h"
#include "reports/PageWriter.h"
#include "reports/SessionPasses.h"

namespace tallory {

// The two term pages of the course folder share their walk: a pass that reads every live session
// for the term's figures, then the page with one row per session. What differs is named here.
struct TermPage {
    std::string path;
    std::string title;
    std::string steps;         // the progress text before "0 Of 3" and the like
    std::string finishedText;  // the progress text of the last step
    bool studentPage = false;  // the student voting data: links to the students' pages
};

void WriteTermPage(Course& course, PageWriter& page, const TermPage& kind, SessionPasses& passes);

}  // namespace tallory
