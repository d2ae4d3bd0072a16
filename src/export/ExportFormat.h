#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"

namespace tallory {

// The course's grade-book format, chosen by the CMS setting: what lblCMS shows and carries.
struct ExportFormat {
    std::string caption;     // lblCMS caption
    std::string tag;         // lblCMS Tag: the key the export commands dispatch on
    std::string rosterFile;  // the grade-book file read at course start
    std::string uploadFile;  // the file an export writes
    std::string text;        // the explanation pairing roster and upload file
};

// Looks the CMS value up, reads the course roster with the reader of its row, strips quotes.
ExportFormat SetExportFormat(Course& course, Host& host, std::string_view cms);
// The row of the format table for a CMS value, without reading anything.
ExportFormat FindExportFormat(std::string_view cms);
void StripRosterQuotes(Course& course);

}  // namespace tallory
