#include "export/ExportFormat.h"

#include "common/Paths.h"
#include "common/Text.h"
#include "export/Export.h"
#include "registration/Roster.h"

namespace tallory {

namespace {

// The reader that fills the roster when the course opens.
using RosterReader = void (*)(Course&, Host&);

void ReadGeneralRoster(Course& course, Host&) {
    ReadRoster(course, CoursePath(course.AppPath, "\\Roster.Txt"));
}

// What the explanation of a format says beyond the pairing of its two files.
enum class Explanation {
    None,          // the general format explains nothing
    Pairing,       // roster file and upload file
    WebCTPairing,  // the same, with the upload file spelled as the WebCT help spells it
    Important,     // the pairing and a reminder to export names with the IDs
    Moodle,        // the pairing and Moodle's three download choices
    ChooseSystem,  // an unknown setting: why a course-management system should be chosen
    Canvas,        // the downloaded grade book under its own name, and the upload
};

struct FormatRow {
    std::string_view cms;
    std::string_view caption;
    std::string_view tag;
    std::string_view rosterFile;
    std::string_view uploadFile;
    RosterReader reader;
    Explanation explanation;
};

constexpr std::string_view kUpload = "UploadFile.csv";
constexpr std::string_view kCampusCaption = "Campus Edition {Ver 4, 6, 6.1, 6.1.2}";

constexpr FormatRow kFormats[] = {
    {"GENERAL", "General", "GENERAL", "Roster.Txt", kUpload, ReadGeneralRoster, Explanation::None},
    {"WEB CT V", "Vista {Ver 3, 4, 8}", "WEB CT V", "class.txt", kUpload, ReadWebCTRoster,
     Explanation::WebCTPairing},
    {"WEB CT", "Web Ct Campus Edition", "WEB CT", "class.txt", kUpload, ReadWebCTRoster,
     Explanation::WebCTPairing},
    {"D2L", "Desire2Learn", "D2L", "gradesexport.csv", kUpload, ReadD2LGradebook,
     Explanation::Important},
    {"ANGEL", "Angel {Ver 6, 7.1, 7.2, 7.3}", "ANGEL", "gradebook.csv", kUpload, ReadAngelGradebook,
     Explanation::Pairing},
    {"BB", "Blackboard {Ver 6, 6.3, 7, 7.3}", "BB", "gb_export.csv", kUpload,
     ReadBlackboardGradebook, Explanation::Pairing},
    {"BB73", "Blackboard {Ver 6, 6.3, 7, 7.3}", "BB73", "gb_export.csv", kUpload,
     ReadBlackboardGradebook, Explanation::Important},
    {"BB80", "Blackboard {Ver 8}", "BB80", "gb_export.csv", kUpload, ReadBlackboardGradebook,
     Explanation::Important},
    {"BLACKBOARD", "Blackboard {Ver 6, 6.3, 7, 8}", "BB", "gb_export.csv", kUpload,
     ReadBlackboardGradebook, Explanation::Pairing},
    {"MOODLE", "Moodle {Ver 1.6, 1.8, 1.9}", "MOODLE", "MoodleRoster.txt", "MoodleUpload.xls",
     ReadMoodleRoster, Explanation::Moodle},
    {"SAKAI", "Sakai {Ver 2.4, 2.5}", "SAKAI", "sakaigradebook.csv", kUpload, ReadSakaiGradebook,
     Explanation::Important},
    {"WEB CT CE 4.1", kCampusCaption, "WebCT CE 4.1", "class.txt", kUpload, ReadCampusClass,
     Explanation::WebCTPairing},
    {"WEB CT CE 6.1", kCampusCaption, "WebCT CE 4.1", "class.txt", kUpload, ReadCampusClass,
     Explanation::WebCTPairing},
    {"CANVAS", "Canvas", "CANVAS", "*.csv", "CanvasUpload.csv", ReadCanvasRoster,
     Explanation::Canvas},
};

constexpr FormatRow kAnyOtherFormat = {
    "", "General", "GENERAL", "Roster.Txt", kUpload, ReadGeneralRoster, Explanation::ChooseSystem};

const FormatRow& FindRow(std::string_view cms) {
    std::string key = NormalKey(cms);
    for (const FormatRow& row : kFormats)
        if (row.cms == key) return row;
    return kAnyOtherFormat;
}

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

std::string ExplanationOf(const FormatRow& row) {
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

ExportFormat FormatOf(const FormatRow& row) {
    return ExportFormat{std::string(row.caption), std::string(row.tag), std::string(row.rosterFile),
                        std::string(row.uploadFile), ExplanationOf(row)};
}

}  // namespace

ExportFormat FindExportFormat(std::string_view cms) {
    return FormatOf(FindRow(cms));
}

ExportFormat SetExportFormat(Course& course, Host& host, std::string_view cms) {
    const FormatRow& row = FindRow(cms);
    row.reader(course, host);
    StripRosterQuotes(course);
    return FormatOf(row);
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
