#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/ScreenParts.h"

namespace tallory {

// The controls of frmSetSessionScoring, "Tallory - Set Scores".
struct SetScoresControls {
    ControlState lblClass, lblSession, lblTime, lblStudents, lblAverage;
    ControlState lblTotQuestions, lblCurQuestionNo, lblNonDeleted, lblDeleteNo;
    ControlState lblTotalPerfPoints, lblTotalPoints;
    ControlState txtPointsAwarded, txtMinResponses, chkTruncPerf, txtPerfMaxPoints;
    ControlState txtQuestionName, cmbCorrect;
    std::array<ControlState, 5> txtPoints, lblNum, lblPer;  // choices A to E
    ControlState OptYes, OptNo, lblQuestionDelete;
    ControlState lblNext, lblPrevious;
    ControlState cmdSet, cmdCancel, cmdHelp, PicHelp;
    ControlState cmdViewScreenShot, Image1, cmdHistogram;
};

// The rows of cmbCorrect; the row number is the CorrectAnswer it stands for.
inline constexpr std::array<std::string_view, 6> kCorrectChoices = {"---", "A", "B", "C", "D", "E"};

inline constexpr std::string_view kSetScoresTitle = "Tallory - Set Scores";
inline constexpr std::string_view kViewScreenShot = "VIEW SCREENSHOT / IMAGE";
inline constexpr std::string_view kHideScreenShot = "HIDE SCREENSHOT";

struct SetScoresOptions {
    // frmSetScr_120DPI, the layout for a large-font main window.
    bool largeFonts = false;
    // Whether a question's picture can be shown; the desktop program really decodes it. When
    // empty, a picture that exists counts as loaded.
    std::function<bool(const std::string& path)> imageLoads;
};

// Reads session `session` of the loaded course and scores it: what a column's "Set Scores" button
// does before the screen opens. Sets CurrentSession and CurrentLogFile.
void ReadSessionForScoring(Course& course, int session);

// The Set Scores screen over the session in Questions and Votes. Edits work on those tables and
// the session values directly; cmdSet writes them to the log and posts the new totals to the grid.
class SetScoresScreen {
  public:
    // The session course.CurrentSession has been read and scored (ReadSessionForScoring).
    SetScoresScreen(Course& course, Host& host, SessionGrid& grid, SetScoresOptions options = {});

    // The load step, then the first drawing of question 1.
    void Load();
    // Redraws every control from the tables, scoring the session first.
    void UpdateQuestion();

    // Handlers. A control that is disabled takes no input, so its handler then does nothing.
    // The validations run when the box is left; false means the focus stays in the box.
    void cmbCorrectClick(int index);
    bool txtPointsValidate(int box, std::string_view text);
    bool txtPerfMaxPointsValidate(std::string_view text);
    // Returns true when txtPerfMaxPoints is to take the focus.
    bool chkTruncPerfClick(bool checked);
    // Returns false when the text was refused and the old value put back.
    bool txtPointsAwardedValidate(std::string_view text);
    bool txtMinResponsesValidate(std::string_view text);
    void txtQuestionNameChange(std::string_view text);
    void lblNextClick();
    void lblPreviousClick();
    void OptYesClick();
    void OptNoClick();
    void cmdViewScreenShotClick();
    // The results chart to show in frmViewHistogram; empty when the question has none.
    std::string cmdHistogramClick() const;
    void cmdHelpClick();
    // The help panel cmdHelp opens: its title and one paragraph per caption.
    static constexpr const char* kHelpTitle = "Setting scores";
    static std::span<const std::string_view> HelpCaptions();
    void cmdSetClick();
    void cmdCancelClick();

    const SetScoresControls& Controls() const { return controls_; }
    int CurQuestion() const { return curQuestion_; }
    // The screen has closed itself (cmdSet or cmdCancel).
    bool Closed() const { return closed_; }
    // cmdSet ran; WriteSucceeded tells whether the log on disk took the edits.
    bool SetPressed() const { return setPressed_; }
    bool WriteSucceeded() const { return written_; }
    // Something the instructor changed since the screen opened would be lost by closing without
    // cmdSet: a point, an answer, a cap, the participation, a deletion or a title typed.
    bool HasUnsavedEdits() const;
    // The log's name without ".csv", the caption of frmViewHistogram.
    std::string LogBaseName() const;

  private:
    QuestionRec& Current();
    void ShowQuestionName(std::string text);
    void LoadImages();
    void ShowCapControls();
    void ShowQuestionState();
    std::string ImagePath(char kind) const;
    std::vector<ControlState*> FormControls();
    void ShowRequirementShift(bool deleting, int16_t to);

    // What the instructor can change, as it stood when the screen opened.
    struct Scoring {
        std::vector<std::array<double, 8>> questions;  // CorrectAnswer, Deleted, points A to E
        double performance = 0;
        double participation = 0;
        bool operator==(const Scoring&) const = default;
    };
    Scoring CurrentScoring() const;

    Course& course_;
    Host& host_;
    SessionGrid& grid_;
    SetScoresOptions options_;
    SetScoresControls controls_;
    int curQuestion_ = 1;
    bool refreshing_ = false;
    bool loading_ = true;
    bool closed_ = false;
    bool setPressed_ = false;
    bool written_ = false;
    Scoring opened_;
    bool nameTyped_ = false;
};

// Shows a point value: 0 and values of 1 or more as plain number text; a value between 0 and 1,
// and any negative value, as "." and the digits behind its decimal point (0.5 shows ".5").
std::string PointText(double value);

}  // namespace tallory
