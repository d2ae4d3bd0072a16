#include "export/ExportFormat.h"

#include "common/Text.h"
#include "export/ExportTarget.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

std::string ExplanationOf(const ExportTarget& row) {
    const std::string caption(row.caption);
    switch (row.explanation) {
        case Explanation::None:
            return {};
        case Explanation::ChooseSystem:
            return "If you are using a course management system to report / record grades, "
                   "you will want to select your system here. By doing this, your exported "
                   "session data (from Tallory) will be formatted for easy upload to your CMS."
                   "\r\n\r\nNote: It is very important to read and follow the directions located "
                   "in the course management system chapter of the manual, to avoid "
                   "confusion and ensure your registration data is consistent with your course "
                   "management system.";
        case Explanation::Canvas:
            return "Canvas reads your class from the grade book you download from Canvas (Grades "
                   "> Export > Export Entire Gradebook) into your course folder, under the name "
                   "Canvas gives it; the newest one counts. Without one, Roster.txt is your "
                   "roster.\r\nTallory will export polling grades formatted for Canvas as "
                   "\"CanvasUpload.csv\" in your course folder: in Canvas, open Grades, choose "
                   "Import and upload that file.";
        default:
            break;
    }
    std::string text = caption + " requires you to export your grade book from " + caption +
                       " and save it as  " + Quoted(row.rosterFile) +
                       " within your Polvane application folder. ";
    if (row.explanation == Explanation::Moodle) {
        text += " You have three download options when you export your student roster from" +
                caption + ":" + Quoted("Download in ODS format") + ", " +
                Quoted("Download in Excel format") + " and \r\n" +
                Quoted("Download in text format") +
                ". You need to download the text(txt) version of your roster";
    }
    std::string_view upload =
        row.explanation == Explanation::WebCTPairing ? "UpLoadFile.csv" : row.uploadFile;
    text += "\r\nTallory will export polling grades formatted for " + caption + ".\r\n" +
            "This file will be saved in the Polvane application folder as " + Quoted(upload) +
            " and can then be easily uploaded into  " + caption;
    if (row.explanation == Explanation::Important) {
        text +=
            "\r\n\r\nImportant: Please make sure both Student Last Name and First Name are "
            "included in your roster, along with the Student ID.\r\n If all of this information "
            "is not included, you will be unable display complete student information in the "
            "roll-call registration, export data, or HTML reports. ";
    }
    return text;
}

ExportFormat FormatOf(const ExportTarget& row) {
    return ExportFormat{std::string(row.caption), std::string(row.tag), std::string(row.rosterFile),
                        std::string(row.uploadFile), ExplanationOf(row)};
}

}  // namespace

ExportFormat FindExportFormat(std::string_view cms) {
    return FormatOf(TargetOfSetting(cms));
}

ExportFormat SetExportFormat(Course& course, Host& host, std::string_view cms) {
    const ExportTarget& target = TargetOfSetting(cms);
    ReadTargetRoster(course, host, target);
    StripRosterQuotes(course);
    return FormatOf(target);
}

void StripRosterQuotes(Course& course) {
    for (long row = 0; row < course.Roster.Allocated(); ++row) {
        RosterRec& entry = course.Roster[row];
        for (std::string* text : {&entry.FirstName, &entry.LastName, &entry.StudentId})
            if (text->find('"') != std::string::npos) *text = ReplaceAll(*text, "\"", "");
    }
    // Student IDs may have changed under the look-up.
    RebuildRosterIndex(course);
}

}  // namespace tallory
