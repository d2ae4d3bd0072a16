// The one table of export targets, and the commands that dispatch on it: the export of every
// session or of the selected ones, and a grade book read from a text.

#include "common/Paths.h"
#include "common/Text.h"
#include "export/ExportTarget.h"

namespace tallory {

namespace {

constexpr std::string_view kCampusCaption = "Campus Edition {Ver 4, 6, 6.1, 6.1.2}";

// A course's CMS setting chooses its row; the export commands find it again by its tag, the first
// row of that tag answering. The two Campus Edition rows share the tag "WebCT CE 4.1", so that the
// WebCT6Upload.csv writer is reached by that tag-only row alone, and by export selected alone.
constexpr ExportTarget kTargets[] = {
    {.cms = "GENERAL",
     .caption = "General",
     .tag = "GENERAL",
     .rosterFile = "Roster.Txt",
     .explanation = Explanation::None,
     .readAtStart = ReadGeneralRoster,
     .write = WriteGeneralUpload},
    {.cms = "WEB CT V",
     .caption = "Vista {Ver 3, 4, 8}",
     .tag = "WEB CT V",
     .rosterFile = "class.txt",
     .explanation = Explanation::WebCTPairing,
     .read = ReadClassLines,
     .readAtStart = ReadClassRoster,
     .layout = &kWebCTUpload},
    {.cms = "WEB CT",
     .caption = "Web Ct Campus Edition",
     .tag = "WEB CT",
     .rosterFile = "class.txt",
     .explanation = Explanation::WebCTPairing,
     .read = ReadClassLines,
     .readAtStart = ReadClassRoster,
     .layout = &kWebCTUpload},
    {.cms = "D2L",
     .caption = "Desire2Learn",
     .tag = "D2L",
     .rosterFile = "gradesexport.csv",
     .explanation = Explanation::Important,
     .read = ReadD2LGradebook,
     .layout = &kD2LUpload},
    {.cms = "ANGEL",
     .caption = "Angel {Ver 6, 7.1, 7.2, 7.3}",
     .tag = "ANGEL",
     .rosterFile = "gradebook.csv",
     .read = ReadAngelGradebook,
     .layout = &kAngelUpload},
    {.cms = "BB",
     .caption = "Blackboard {Ver 6, 6.3, 7, 7.3}",
     .tag = "BB",
     .rosterFile = "gb_export.csv",
     .read = ReadBlackboardGradebook,
     .layout = &kBlackboardUpload},
    {.cms = "BB73",
     .caption = "Blackboard {Ver 6, 6.3, 7, 7.3}",
     .tag = "BB73",
     .rosterFile = "gb_export.csv",
     .explanation = Explanation::Important,
     .read = ReadBlackboardGradebook,
     .layout = &kBlackboardUpload},
    {.cms = "BB80",
     .caption = "Blackboard {Ver 8}",
     .tag = "BB80",
     .rosterFile = "gb_export.csv",
     .explanation = Explanation::Important,
     .read = ReadBlackboardGradebook,
     .layout = &kBlackboard8Upload},
    {.cms = "BLACKBOARD",
     .caption = "Blackboard {Ver 6, 6.3, 7, 8}",
     .tag = "BB",
     .rosterFile = "gb_export.csv",
     .read = ReadBlackboardGradebook,
     .layout = &kBlackboardUpload},
    {.cms = "MOODLE",
     .caption = "Moodle {Ver 1.6, 1.8, 1.9}",
     .tag = "MOODLE",
     .rosterFile = "MoodleRoster.txt",
     .uploadFile = "MoodleUpload.xls",
     .explanation = Explanation::Moodle,
     .read = ReadMoodleRoster,
     .layout = &kMoodleUpload,
     .write = WriteMoodleUpload},
    {.cms = "SAKAI",
     .caption = "Sakai {Ver 2.4, 2.5}",
     .tag = "SAKAI",
     .rosterFile = "sakaigradebook.csv",
     .explanation = Explanation::Important,
     .read = ReadSakaiGradebook,
     .layout = &kSakaiUpload},
    {.cms = "WEB CT CE 4.1",
     .caption = kCampusCaption,
     .tag = "WebCT CE 4.1",
     .rosterFile = "class.txt",
     .explanation = Explanation::WebCTPairing,
     .read = ReadCampusClass,
     .layout = &kCampusUpload},
    {.cms = "WEB CT CE 6.1",
     .caption = kCampusCaption,
     .tag = "WebCT CE 4.1",
     .rosterFile = "class.txt",
     .explanation = Explanation::WebCTPairing,
     .read = ReadCampusClass,
     .layout = &kCampusUpload},
    {.caption = kCampusCaption,
     .tag = "WebCT CE 6.1",
     .rosterFile = "class.txt",
     .uploadFile = "WebCT6Upload.csv",
     .explanation = Explanation::WebCTPairing,
     .read = ReadCampusClassByLine,
     .layout = &kCampusUpload,
     .allAs = "WebCT CE 4.1"},
    {.cms = "CANVAS",
     .caption = "Canvas",
     .tag = "CANVAS",
     .rosterFile = "*.csv",
     .uploadFile = "CanvasUpload.csv",
     .explanation = Explanation::Canvas,
     .readAtStart = ReadCanvasRoster,
     .write = WriteCanvasUpload},
};

// Any other setting: the General export, with a word on why a system should be chosen.
constexpr ExportTarget kAnyOtherTarget = {.caption = "General",
                                          .tag = "GENERAL",
                                          .rosterFile = "Roster.Txt",
                                          .explanation = Explanation::ChooseSystem,
                                          .readAtStart = ReadGeneralRoster,
                                          .write = WriteGeneralUpload};

// An unknown key falls back to the General export once the person agrees; the two commands ask
// in their own words.
std::vector<UploadColumn> AskForGeneral(Course& course, Host& host, const ExportRun& run) {
    const std::string_view title = run.fullUpload ? "Confirm General Export : UploadFile.csv"
                                                  : "Confirm General Export : Tallory";
    const std::string_view question = run.fullUpload
                                          ? " Would you like to proceed with general export for"
                                          : " Do you want to proceed with general export for";
    std::string text = "No default or Invalid output Format selected for export,";
    text += question;
    text += " the selected session(s)";
    if (host.Message(text, title, Icon::None, Buttons::YesNo) != Answer::Yes) return {};
    const ExportTarget& general = *TargetOfTag("GENERAL");
    return general.write(course, host, general, run);
}

std::vector<UploadColumn> Run(Course& course, Host& host, std::string_view tag,
                              const ExportRun& run) {
    const ExportTarget* target = TargetOfTag(tag);
    if (!target) return AskForGeneral(course, host, run);
    if (run.fullUpload && !target->allAs.empty()) target = TargetOfTag(target->allAs);
    return target->write(course, host, *target, run);
}

}  // namespace

const ExportTarget& TargetOfSetting(std::string_view cms) {
    const std::string key = NormalKey(cms);
    for (const ExportTarget& target : kTargets)
        if (!target.cms.empty() && target.cms == key) return target;
    return kAnyOtherTarget;
}

const ExportTarget* TargetOfTag(std::string_view tag) {
    const std::string key = NormalKey(tag);
    for (const ExportTarget& target : kTargets)
        if (NormalKey(target.tag) == key) return &target;
    return nullptr;
}

std::vector<UploadColumn> ExportAll(Course& course, Host& host, std::string_view tag,
                                    const std::optional<CanvasChoice>& canvas) {
    return Run(course, host, tag, ExportRun{true, canvas});
}

std::vector<UploadColumn> ExportSelected(Course& course, Host& host, std::string_view tag,
                                         const std::optional<CanvasChoice>& canvas) {
    bool any = false;
    for (int session = 1; session <= course.NumSessions; ++session)
        if (course.ExportSel[session] != 0) any = true;
    if (!any) {
        host.Message("Please first select a session to export using checkbox in top row.");
        return {};
    }
    return Run(course, host, tag, ExportRun{false, canvas});
}

void ReadTargetRoster(Course& course, Host& host, const ExportTarget& target) {
    if (target.readAtStart) {
        target.readAtStart(course, host, target);
        return;
    }
    GradeBook book;
    target.read(
        course, host, book,
        ReadGradeBookFile(CoursePath(course.AppPath, "\\" + std::string(target.rosterFile))));
}

bool ReadGradeBookText(Course& course, Host& host, std::string_view cms, std::string_view text) {
    const ExportTarget& target = TargetOfSetting(cms);
    if (!target.read) return false;
    GradeBook book;
    target.read(course, host, book,
                GradeBookText{std::string(target.rosterFile), std::string(text)});
    return true;
}

}  // namespace tallory
