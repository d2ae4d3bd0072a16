#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <map>
#include <string>

#include "scoring/SetScoresScreen.h"
#include "ui/ControlBinding.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tallory {

class CommandLabel;

// frmSetSessionScoring, "Tallory - Set Scores", or with `largeFonts` its twin frmSetScr_120DPI.
// Builds the controls, hands every event to SetScoresScreen and repaints from its state.
class SetScoresDialog : public QDialog {
    Q_OBJECT
  public:
    // The session course.CurrentSession has been read and scored.
    SetScoresDialog(Course& course, Host& host, SessionGrid& grid, bool largeFonts,
                    QWidget* parent = nullptr);

    const SetScoresScreen& Screen() const { return screen_; }

  public slots:
    // The window's close box and Escape act as cmdCancel, once the instructor has agreed to drop
    // edits that are not saved.
    void reject() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    Host& host_;
    // What leaving a box does: the screen's validation; false when the text was refused.
    struct Validation {
        std::function<bool(const std::string&)> validate;
        bool keepFocus;  // a refused text keeps the focus in the box
        bool selectAll;  // and is selected
    };

    QWidget* BuildHeader();
    // The question panel, one row of it at a time.
    QWidget* BuildQuestion();
    QLayout* BuildNavigation(QWidget* panel);
    QLayout* BuildQuestionForm(QWidget* panel);
    QLayout* BuildChoices(QWidget* panel);
    QLayout* BuildDeletion(QWidget* panel);
    QLayout* BuildPictures(QWidget* panel);
    QWidget* BuildSession();
    QWidget* BuildButtons();
    void BuildHelp();
    QLineEdit* MakeBox(QWidget* parent, const QString& name, Validation validation);
    QLabel* MakeValue(const char* name);
    void PlaceHelp();

    void Leave(QLineEdit* box);
    // Runs a command of the screen once the box being edited has taken its text.
    void Command(const std::function<void()>& handler);
    void BindControls();
    void Repaint();
    void ShowPicture(const std::string& path);
    void ShowHistogram();
    void CloseWhenDone();
    // cmdCancel: closes and drops the edits.
    void Cancel();
    // Page Up, Page Down, Alt+Left and Alt+Right walk the questions as lblPrevious and lblNext.
    void AddQuestionKeys();
    // A box holds text that it has not handed to the screen yet.
    bool BoxPending() const;

    SetScoresScreen screen_;
    ControlBinding binding_;
    const bool largeFonts_;
    std::map<QLineEdit*, Validation> validations_;
    bool validating_ = false;
    bool refused_ = false;
    bool asking_ = false;  // the question about unsaved edits is up
    std::string picturePath_;

    QLabel* lblClass_ = nullptr;
    QLabel* lblSession_ = nullptr;
    QLabel* lblTime_ = nullptr;
    QLabel* lblStudents_ = nullptr;
    QLabel* lblAverage_ = nullptr;
    QLabel* lblTotQuestions_ = nullptr;
    QLabel* lblCurQuestionNo_ = nullptr;
    QLabel* lblNonDeleted_ = nullptr;
    QLabel* lblDeleteNo_ = nullptr;
    QLabel* lblTotalPerfPoints_ = nullptr;
    QLabel* lblTotalPoints_ = nullptr;
    QLabel* pointsAwardedCaption_ = nullptr;
    QLineEdit* txtPointsAwarded_ = nullptr;
    QLineEdit* txtMinResponses_ = nullptr;
    QCheckBox* chkTruncPerf_ = nullptr;
    QLineEdit* txtPerfMaxPoints_ = nullptr;
    QLineEdit* txtQuestionName_ = nullptr;
    QComboBox* cmbCorrect_ = nullptr;
    std::array<QLineEdit*, 5> txtPoints_{};
    std::array<QLabel*, 5> lblNum_{};
    std::array<QLabel*, 5> lblPer_{};
    QRadioButton* OptYes_ = nullptr;
    QRadioButton* OptNo_ = nullptr;
    QLabel* lblQuestionDelete_ = nullptr;
    CommandLabel* lblNext_ = nullptr;
    CommandLabel* lblPrevious_ = nullptr;
    QPushButton* cmdSet_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdHelp_ = nullptr;
    QPushButton* cmdViewScreenShot_ = nullptr;
    QPushButton* cmdHistogram_ = nullptr;
    QLabel* Image1_ = nullptr;
    QFrame* PicHelp_ = nullptr;
};

}  // namespace tallory
