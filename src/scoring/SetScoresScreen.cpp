#include "scoring/SetScoresScreen.h"

#include <utility>

#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "logs/QuestionName.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "scoring/Grading.h"
#include "scoring/SaveSession.h"
#include "scoring/SessionDateText.h"
#include "scoring/SessionStore.h"
#include "start/Settings.h"

namespace tallory {

namespace {

constexpr std::string_view kPointsNotNumeric = "Must enter a numberic value for points ";
constexpr std::string_view kNotValidNumber = "Not a valid number";
constexpr std::string_view kTooManyResponses =
    "Minimum number of required responses (to qualify for points) cannot be greater than the "
    "total number of question(s) available for this session";
constexpr std::string_view kQuestionDeleted = "Question Deleted";
constexpr std::string_view kAnonymousQuestion = "Anonymous Polling Question";
constexpr std::string_view kLastQuestionTitle =
    "Confirm deletion: Last question available in this session.";
constexpr std::string_view kLastQuestionText =
    "This is the last remaining question in this session. Are you sure you don\xE2\x80\x99t want "
    "to simply delete the session?";

// The message that tells how deleting or restoring a question moves the response requirement.
std::string RequirementShiftText(bool deleting, int from, int to) {
    std::string text = deleting
                           ? "Because you are deleting this question and the number of overall "
                             "questions in your session has changed, "
                           : "Because you are un-deleting this question and the number of "
                             "overall questions in your session will increase, ";
    text +=
        "\r\nTallory will automatically adjust the session's participation points requirements "
        "(as determined in Settings/Preferences).\r\nThe number of required responses needed "
        "to earn participation points will now shift from " +
        std::to_string(from) + " to " + std::to_string(to) +
        ".\r\n\r\nYou can override this change by manually entering the new requirement in the "
        "\"Minimum Number of Required Responses (to qualify for points)\" box on the \"Set "
        "Scores\" screen.";
    return text;
}

// A point setting of Config.csv; one that is not a number counts as 0.
double PointSetting(const Course& course, std::string_view key) {
    double value = 0;
    return ToDouble(GetParam(course, key, "0"), value) ? value : 0;
}

// The row of cmbCorrect for a correct answer; a log can carry a digit the list has no row for.
int CorrectRow(const QuestionRec& question) {
    int row = question.CorrectAnswer;
    return row >= 0 && row < static_cast<int>(kCorrectChoices.size()) ? row : -1;
}

}  // namespace

std::string PointText(double value) {
    std::string text = NumberText(value);
    if (value == 0 || value >= 1) return text;
    size_t point = text.find('.');
    return "." + (point == std::string::npos ? std::string() : text.substr(point + 1));
}

void ReadSessionForScoring(Course& course, int session) {
    course.CurrentSession = session;
    course.CurrentLogFile = course.SessionFile[session];
    OpenSession(course, session);
}

SetScoresScreen::SetScoresScreen(Course& course, Host& host, SessionGrid& grid,
                                 SetScoresOptions options)
    : course_(course), host_(host), grid_(grid), options_(std::move(options)) {
    if (!options_.imageLoads)
        options_.imageLoads = [](const std::string& path) { return FileExists(path); };
    controls_.lblQuestionDelete.text = std::string(kQuestionDeleted);
    controls_.lblQuestionDelete.visible = false;
    controls_.Image1.visible = false;
    controls_.cmdViewScreenShot.text = std::string(kViewScreenShot);
    controls_.PicHelp.visible = false;
    controls_.OptNo.checked = true;
}

QuestionRec& SetScoresScreen::Current() {
    return course_.Questions[curQuestion_];
}

std::string SetScoresScreen::LogBaseName() const {
    const std::string& name = course_.CurrentLogFile;
    return name.size() >= 4 ? name.substr(0, name.size() - 4) : std::string();
}

std::string SetScoresScreen::ImagePath(char kind) const {
    return CoursePath(course_.AppPath, "\\Images\\" + LogBaseName() + "_" + kind +
                                           std::to_string(curQuestion_) + ".jpg");
}

void SetScoresScreen::Load() {
    refreshing_ = false;
    curQuestion_ = 1;
    // Selecting the row only shows the question's answer; it is not a click.
    controls_.cmbCorrect.index = CorrectRow(Current());
    loading_ = false;
    if (course_.SessPerformance > 0)
        controls_.txtPerfMaxPoints.text = NumberText(course_.SessPerformance);
    controls_.lblPrevious.enabled = controls_.lblNext.enabled = course_.NumQuestions > 1;
    controls_.lblClass.text = CourseName(course_);
    UpdateQuestion();
    opened_ = CurrentScoring();
    nameTyped_ = false;
}

SetScoresScreen::Scoring SetScoresScreen::CurrentScoring() const {
    Scoring scoring;
    for (int q = 1; q <= course_.NumQuestions; ++q) {
        const QuestionRec& question = std::as_const(course_).Questions[q];
        std::array<double, 8> values{static_cast<double>(question.CorrectAnswer),
                                     static_cast<double>(question.Deleted != 0)};
        for (int choice = 1; choice <= 5; ++choice)
            values[choice + 1] = question.ChoicePoints[choice];
        scoring.questions.push_back(values);
    }
    scoring.performance = course_.SessPerformance;
    scoring.participation = course_.SessParticipation;
    return scoring;
}

bool SetScoresScreen::HasUnsavedEdits() const {
    // Titles are compared by the typing alone: the screen rewrites a name just by showing it.
    return nameTyped_ || CurrentScoring() != opened_;
}

// The question box reports every change of its text to txtQuestionNameChange, also when the
// screen itself fills it; so what it shows is what the question's name becomes.
void SetScoresScreen::ShowQuestionName(std::string text) {
    controls_.txtQuestionName.text = text;
    Current().Name = std::move(text);
}

void SetScoresScreen::UpdateQuestion() {
    if (refreshing_) return;
    refreshing_ = loading_ = true;
    SetScoresControls& c = controls_;
    RecomputeSession(course_);
    const int live = CountLiveQuestions(course_);
    if (live == 0) course_.SessParticipation = 0;

    c.lblSession.text = SessionDateCaption(SessionDate(course_.CurrentLogFile));
    c.lblStudents.text = std::to_string(course_.NumVoters);
    c.lblTime.text = SessionTimeCaption(SessionTime(course_.CurrentLogFile));
    c.lblAverage.text = NumberText(Round(course_.Questions[0].AveragePoints, 2));
    c.txtPointsAwarded.text = PointText(course_.SessParticipation);
    c.txtMinResponses.text = std::to_string(course_.SessMinReply);
    c.lblCurQuestionNo.text = std::to_string(curQuestion_);
    c.lblTotQuestions.text = std::to_string(course_.NumQuestions);
    c.lblDeleteNo.text = std::to_string(std::max(0, course_.NumQuestions - live));
    c.lblNonDeleted.text = std::to_string(live);
    LoadImages();
    ShowCapControls();

    const double available = course_.Questions[0].MaxPoints;
    if (options_.largeFonts)
        c.lblTotalPerfPoints.text = NumberText(Int(available));
    else
        c.lblTotalPerfPoints.text = available > 0 ? FormatFixed(available, 2) : "0.00";

    ShowQuestionState();

    const QuestionRec& question = Current();
    for (int i = 1; i <= 5; ++i) {
        c.txtPoints[i - 1].text = NumberText(question.ChoicePoints[i]);
        c.lblNum[i - 1].text = std::to_string(question.ResponseCount[i]);
        double percent = question.ResponseCount[0] < 1
                             ? 0
                             : Round(question.ResponseCount[i] * 100.0 / question.ResponseCount[0]);
        c.lblPer[i - 1].text = NumberText(percent);
    }
    c.lblTotalPoints.text = FormatFixed(
        LeadingNumber(c.lblTotalPerfPoints.text) + LeadingNumber(c.txtPointsAwarded.text), 2);
    refreshing_ = loading_ = false;
}

void SetScoresScreen::ShowCapControls() {
    SetScoresControls& c = controls_;
    if (course_.SessPerformance < 0) {
        c.chkTruncPerf.checked = false;
        c.txtPerfMaxPoints.enabled = false;
        double typed = 0;
        if (!ToDouble(c.txtPerfMaxPoints.text, typed) || Round(typed + 0.5) < 0)
            c.txtPerfMaxPoints.text.clear();
    } else {
        c.chkTruncPerf.checked = true;
        c.txtPerfMaxPoints.enabled = true;
        c.txtPerfMaxPoints.text = PointText(course_.SessPerformance);
    }
}

// The deletion banner, the question's name and which question controls take input.
void SetScoresScreen::ShowQuestionState() {
    SetScoresControls& c = controls_;
    QuestionRec& question = Current();
    if (HasDeletionMark(question.Name) || question.Deleted) {
        c.OptYes.checked = true;
        c.OptNo.checked = false;
        question.Deleted = kTrue;
        c.lblQuestionDelete.text = std::string(kQuestionDeleted);
        c.lblQuestionDelete.visible = true;
        ShowQuestionName(DeletedQuestionCaption(question.Name));
        // The session's own boxes stay open; the question's are closed.
        for (ControlState* box :
             {&c.txtPerfMaxPoints, &c.txtQuestionName, &c.chkTruncPerf, &c.cmbCorrect})
            box->enabled = false;
        for (ControlState& box : c.txtPoints) box.enabled = false;
        return;
    }
    c.OptNo.checked = true;
    c.OptYes.checked = false;
    for (ControlState* box : {&c.txtPointsAwarded, &c.txtMinResponses, &c.txtQuestionName,
                              &c.chkTruncPerf, &c.cmbCorrect})
        box->enabled = true;
    c.txtPerfMaxPoints.enabled = c.chkTruncPerf.checked;
    ShowQuestionName(ShownQuestionName(question.Name));
    c.lblQuestionDelete.visible = false;
    bool anonymous = question.Anonymous != 0;
    if (anonymous) {
        c.lblQuestionDelete.text = std::string(kAnonymousQuestion);
        c.lblQuestionDelete.visible = true;
        c.cmbCorrect.index = 0;
    } else {
        c.cmbCorrect.index = CorrectRow(question);
        c.lblQuestionDelete.text = std::string(kQuestionDeleted);
    }
    c.cmbCorrect.enabled = !anonymous;
    for (ControlState& box : c.txtPoints) box.enabled = !anonymous;
}

void SetScoresScreen::LoadImages() {
    SetScoresControls& c = controls_;
    if (course_.CurrentLogFile.size() < 5) {
        c.Image1.visible = false;
        c.cmdViewScreenShot.text = std::string(kViewScreenShot);
    } else {
        std::string picture = ImagePath('Q');
        if (options_.imageLoads(picture)) {
            c.Image1.text = picture;
            c.cmdViewScreenShot.enabled = true;
        } else {
            c.Image1.text.clear();
            c.Image1.visible = false;
            c.cmdViewScreenShot.enabled = false;
            c.cmdViewScreenShot.text = std::string(kViewScreenShot);
        }
        c.cmdHistogram.enabled = FileExists(ImagePath('C'));
    }
    c.txtPointsAwarded.visible = !c.Image1.visible;
}

void SetScoresScreen::cmbCorrectClick(int index) {
    if (loading_ || !controls_.cmbCorrect.enabled) return;
    if (index < 0 || index >= static_cast<int>(kCorrectChoices.size())) return;
    controls_.cmbCorrect.index = index;
    QuestionRec& question = Current();
    const double any = PointSetting(course_, "PerformanceAnyChoice");
    if (index > 0) {
        const double correct = PointSetting(course_, "PerformanceCorrectChoice");
        question.CorrectAnswer = static_cast<int16_t>(index);
        for (int i = 1; i <= 5; ++i) question.ChoicePoints[i] = any;
        question.ChoicePoints[index] = any + correct;
    } else if (question.CorrectAnswer >= 1) {
        question.CorrectAnswer = 0;
        for (int i = 1; i <= 5; ++i) question.ChoicePoints[i] = any;
    }
    UpdateQuestion();
}

bool SetScoresScreen::txtPointsValidate(int box, std::string_view text) {
    if (box < 0 || box > 4) return true;
    ControlState& points = controls_.txtPoints[box];
    if (!points.enabled) return true;
    double value = 0;
    if (!ToDouble(text, value)) {
        host_.Message(kPointsNotNumeric);
        points.text = NumberText(Current().ChoicePoints[box + 1]);
        return false;
    }
    points.text = std::string(text);
    if (!refreshing_) {
        Current().ChoicePoints[box + 1] = value;
        if (options_.largeFonts) RecomputeSession(course_);
        UpdateQuestion();
    }
    return true;
}

bool SetScoresScreen::txtPerfMaxPointsValidate(std::string_view text) {
    ControlState& box = controls_.txtPerfMaxPoints;
    if (!box.enabled) return true;
    if (TrimView(text).empty()) {
        box.text.clear();
        chkTruncPerfClick(false);
        return true;
    }
    double value = 0;
    if (!ToDouble(text, value)) {
        host_.Message(kNotValidNumber, "Max Points");
        box.text = NumberText(course_.SessPerformance);
        box.SelectAll();
        return false;
    }
    box.text = std::string(text);
    course_.SessPerformance = value;
    UpdateQuestion();
    return true;
}

bool SetScoresScreen::chkTruncPerfClick(bool checked) {
    ControlState& tick = controls_.chkTruncPerf;
    ControlState& box = controls_.txtPerfMaxPoints;
    if (!tick.enabled) return false;
    tick.checked = checked;
    if (!checked) {
        box.enabled = false;
        box.text.clear();
        course_.SessPerformance = -1;
        return false;
    }
    box.enabled = true;
    return box.visible && box.enabled;
}

bool SetScoresScreen::txtPointsAwardedValidate(std::string_view text) {
    ControlState& box = controls_.txtPointsAwarded;
    if (!box.enabled) return true;
    double value = 0;
    if (!ToDouble(text, value)) {
        box.text = PointText(course_.SessParticipation);
        return false;
    }
    box.text = std::string(text);
    course_.SessParticipation = value;
    return true;
}

bool SetScoresScreen::txtMinResponsesValidate(std::string_view text) {
    ControlState& box = controls_.txtMinResponses;
    if (!box.enabled) return true;
    if (TrimView(text).empty()) return true;
    double value = 0;
    int16_t required = 0;
    if (!ToDouble(text, value) || !RoundToInt16(value, required)) {
        host_.Message(kNotValidNumber, "Min Responses");
        box.text = std::to_string(course_.SessMinReply);
        return false;
    }
    // Deleted questions count here too: the limit is every question of the log.
    if (Int(value) > course_.NumQuestions) {
        host_.Message(kTooManyResponses, kProgramTitle);
        box.text = std::to_string(course_.SessMinReply);
        return false;
    }
    box.text = std::string(text);
    course_.SessMinReply = required;
    return true;
}

void SetScoresScreen::txtQuestionNameChange(std::string_view text) {
    if (!controls_.txtQuestionName.enabled) return;
    if (text != controls_.txtQuestionName.text) nameTyped_ = true;
    ShowQuestionName(std::string(text));
}

void SetScoresScreen::lblNextClick() {
    if (!controls_.lblNext.enabled || curQuestion_ >= course_.NumQuestions) return;
    ++curQuestion_;
    UpdateQuestion();
}

void SetScoresScreen::lblPreviousClick() {
    if (!controls_.lblPrevious.enabled || curQuestion_ <= 1) return;
    --curQuestion_;
    UpdateQuestion();
}

void SetScoresScreen::ShowRequirementShift(bool deleting, int16_t to) {
    host_.Message(RequirementShiftText(deleting, course_.SessMinReply, to),
                  deleting ? "Deleting a Question" : "Restoring a Question");
}

void SetScoresScreen::OptYesClick() {
    if (refreshing_ || !controls_.OptYes.enabled) return;
    QuestionRec& question = Current();
    if (question.Deleted) return;
    controls_.OptYes.checked = true;
    controls_.OptNo.checked = false;
    if (CountLiveQuestions(course_) > 1) {
        question.Deleted = kTrue;
        ShowRequirementShift(true, RequiredResponses(course_));
    } else if (host_.Message(kLastQuestionText, kLastQuestionTitle, Icon::None, Buttons::YesNo,
                             kDestructive) == Answer::Yes) {
        question.Deleted = kTrue;
    } else {
        controls_.OptNo.checked = true;
        controls_.OptYes.checked = false;
        return;
    }
    SetRequiredResponses(course_);
    UpdateQuestion();
}

void SetScoresScreen::OptNoClick() {
    if (refreshing_ || !controls_.OptNo.enabled) return;
    QuestionRec& question = Current();
    if (!question.Deleted) return;
    controls_.OptNo.checked = true;
    controls_.OptYes.checked = false;
    question.Deleted = kFalse;
    ShowRequirementShift(false, RequiredResponses(course_));
    SetRequiredResponses(course_);
    UpdateQuestion();
}

void SetScoresScreen::cmdViewScreenShotClick() {
    SetScoresControls& c = controls_;
    if (!c.cmdViewScreenShot.enabled) return;
    c.Image1.visible = !c.Image1.visible;
    c.cmdViewScreenShot.text = std::string(c.Image1.visible ? kHideScreenShot : kViewScreenShot);
    c.txtPointsAwarded.visible = !c.Image1.visible;
}

std::string SetScoresScreen::cmdHistogramClick() const {
    if (!controls_.cmdHistogram.enabled) return {};
    std::string chart = ImagePath('C');
    return FileExists(chart) ? chart : std::string();
}

std::vector<ControlState*> SetScoresScreen::FormControls() {
    SetScoresControls& c = controls_;
    std::vector<ControlState*> all = {&c.lblClass,
                                      &c.lblSession,
                                      &c.lblTime,
                                      &c.lblStudents,
                                      &c.lblAverage,
                                      &c.lblTotQuestions,
                                      &c.lblCurQuestionNo,
                                      &c.lblNonDeleted,
                                      &c.lblDeleteNo,
                                      &c.lblTotalPerfPoints,
                                      &c.lblTotalPoints,
                                      &c.txtPointsAwarded,
                                      &c.txtMinResponses,
                                      &c.chkTruncPerf,
                                      &c.txtPerfMaxPoints,
                                      &c.txtQuestionName,
                                      &c.cmbCorrect,
                                      &c.OptYes,
                                      &c.OptNo,
                                      &c.lblQuestionDelete,
                                      &c.lblNext,
                                      &c.lblPrevious,
                                      &c.cmdSet,
                                      &c.cmdViewScreenShot,
                                      &c.Image1,
                                      &c.cmdHistogram};
    for (int i = 0; i < 5; ++i)
        for (ControlState* control : {&c.txtPoints[i], &c.lblNum[i], &c.lblPer[i]})
            all.push_back(control);
    return all;
}

std::span<const std::string_view> SetScoresScreen::HelpCaptions() {
    static constexpr std::string_view kCaptions[] = {
        "Set Scores walks through the session one question at a time: Previous and Next move "
        "between the questions.",
        "Choosing the Correct Answer fills in the default points of the course settings: every "
        "choice gets the points for any answer, and the correct one the points for a correct "
        "answer on top. Points typed for a choice replace them; a smaller number on another "
        "choice gives partial credit.",
        "Points Awarded are the session's participation points. A student earns them by answering "
        "at least the minimum number of questions and earning points on at least one.",
        "Not to Exceed caps the performance points a student can earn in the session. Untick it "
        "for no cap.",
        "Delete This Question? takes the question out of the session's scores. Its answers stay "
        "in the log, so restoring it brings its points straight back.",
        "Nothing is stored until Set and Close is pressed; Cancel leaves the session log as it "
        "was.",
    };
    return kCaptions;
}

void SetScoresScreen::cmdHelpClick() {
    ControlState& help = controls_.PicHelp;
    help.visible = !help.visible;
    // While the help is open only it, cmdHelp and cmdCancel answer.
    for (ControlState* control : FormControls()) control->enabled = !help.visible;
    if (!help.visible) UpdateQuestion();
}

void SetScoresScreen::cmdSetClick() {
    if (!controls_.cmdSet.enabled) return;
    written_ = SaveSession(course_, host_, course_.CurrentSession);
    loading_ = false;
    grid_.Screen().UpdateTable();
    setPressed_ = closed_ = true;
}

void SetScoresScreen::cmdCancelClick() {
    loading_ = false;
    closed_ = true;
}

}  // namespace tallory
