#include "cli/ScoringCommands.h"

#include <iostream>

#include "common/Numbers.h"
#include "common/Text.h"
#include "scoring/EditSessionScreen.h"
#include "scoring/SetScoresScreen.h"

namespace tallory::cli {

namespace {

constexpr const char* kSetScoresUsage =
    "usage: tallory-cli set-scores N [--participation P] [--cap X | --no-cap] [--min-responses R] "
    "[--question Q [--correct A..E|--] [--points a,b,c,d,e] [--delete|--restore] [--title T]]...";

// One edit on the Set Scores screen, as an option of the command line names it.
struct Edit {
    std::string option;
    std::string value;
};

bool TakesValue(const std::string& option) {
    for (const char* name : {"--participation", "--cap", "--min-responses", "--question",
                             "--correct", "--points", "--title"})
        if (option == name) return true;
    return false;
}

bool IsFlag(const std::string& option) {
    return option == "--no-cap" || option == "--delete" || option == "--restore";
}

std::vector<Edit> ParseEdits(const std::vector<std::string>& words) {
    std::vector<Edit> edits;
    for (size_t i = 1; i < words.size(); ++i) {
        const std::string& option = words[i];
        if (IsFlag(option)) {
            edits.push_back({option, ""});
        } else if (TakesValue(option)) {
            if (i + 1 >= words.size()) throw UsageError{option + " needs a value"};
            edits.push_back({option, words[++i]});
        } else {
            throw UsageError{std::string("unknown option '") + option + "'\n" + kSetScoresUsage};
        }
    }
    return edits;
}

// The screen refused an edit: its message has been shown, and nothing is saved.
struct Refused {
    std::string reason;
};

class ScreenScript {
  public:
    ScreenScript(SetScoresScreen& screen, const Course& course)
        : screen_(screen), course_(course) {}

    void Apply(const Edit& edit) {
        const SetScoresControls& c = screen_.Controls();
        const std::string& v = edit.value;
        if (edit.option == "--question") {
            GoTo(v);
        } else if (edit.option == "--participation") {
            Require(c.txtPointsAwarded, "the participation points");
            Check(screen_.txtPointsAwardedValidate(v), "participation points '" + v + "'");
        } else if (edit.option == "--cap") {
            Require(c.chkTruncPerf, "the cap on performance points");
            if (!c.chkTruncPerf.checked) screen_.chkTruncPerfClick(true);
            Check(screen_.txtPerfMaxPointsValidate(v), "cap '" + v + "'");
        } else if (edit.option == "--no-cap") {
            Require(c.chkTruncPerf, "the cap on performance points");
            screen_.chkTruncPerfClick(false);
        } else if (edit.option == "--min-responses") {
            Require(c.txtMinResponses, "the minimum number of responses");
            Check(screen_.txtMinResponsesValidate(v), "minimum responses '" + v + "'");
        } else if (edit.option == "--correct") {
            Require(c.cmbCorrect, "the correct answer");
            screen_.cmbCorrectClick(CorrectRow(v));
        } else if (edit.option == "--points") {
            SetPoints(v);
        } else if (edit.option == "--delete") {
            screen_.OptYesClick();
        } else if (edit.option == "--restore") {
            screen_.OptNoClick();
        } else if (edit.option == "--title") {
            Require(c.txtQuestionName, "the question title");
            screen_.txtQuestionNameChange(v);
        }
    }

  private:
    // lblNext and lblPrevious, as often as it takes.
    void GoTo(const std::string& word) {
        const int number = NumberArgument(word, course_.NumQuestions, "question number");
        while (screen_.CurQuestion() < number) screen_.lblNextClick();
        while (screen_.CurQuestion() > number) screen_.lblPreviousClick();
    }

    static int CorrectRow(const std::string& word) {
        std::string letter = ToUpper(Trim(word));
        if (letter == "--" || letter == "---") return 0;
        for (size_t row = 1; row < kCorrectChoices.size(); ++row)
            if (letter == kCorrectChoices[row]) return static_cast<int>(row);
        throw UsageError{"--correct takes A, B, C, D, E or --, not '" + word + "'"};
    }

    void SetPoints(const std::string& list) {
        std::vector<std::string> values;
        size_t start = 0;
        for (size_t comma; (comma = list.find(',', start)) != std::string::npos; start = comma + 1)
            values.push_back(list.substr(start, comma - start));
        values.push_back(list.substr(start));
        if (values.size() != 5)
            throw UsageError{"--points takes five values, for A to E: '" + list + "'"};
        for (int box = 0; box < 5; ++box) {
            Require(screen_.Controls().txtPoints[box], "the points");
            Check(screen_.txtPointsValidate(box, values[box]), std::string("points of ") +
                                                                   kCorrectChoices[box + 1].data() +
                                                                   " '" + values[box] + "'");
        }
    }

    void Require(const ControlState& control, const std::string& what) const {
        if (control.enabled) return;
        const QuestionRec& question = course_.Questions[screen_.CurQuestion()];
        std::string why = question.Deleted     ? "it is deleted"
                          : question.Anonymous ? "it was polled anonymously"
                                               : "the screen does not allow it";
        throw Refused{what + " cannot be changed on question " +
                      std::to_string(screen_.CurQuestion()) + ": " + why};
    }

    static void Check(bool accepted, const std::string& what) {
        if (!accepted) throw Refused{what + " refused"};
    }

    SetScoresScreen& screen_;
    const Course& course_;
};

// Ends a command that did not do what was asked: the reason on stderr, and in JSON as well.
int Failed(const Context& context, nlohmann::json document, const std::string& reason) {
    std::cerr << "tallory-cli: " << reason << "\n";
    if (context.json) {
        document["error"] = reason;
        Print(context, document, "");
    }
    return 1;
}

}  // namespace

int SetScoresCommand(Context& context) {
    if (context.args.empty()) throw UsageError{kSetScoresUsage};
    std::vector<Edit> edits = ParseEdits(context.args);
    LoadCourseReadOnly(context);
    Course& course = context.course;
    const int number = SessionNumber(context, context.args[0]);
    ReadSessionForScoring(course, number);
    HeadlessSessionGrid grid(course);
    SetScoresScreen screen(course, context.host, grid);
    screen.Load();
    const std::string file = course.SessionFile[number];
    try {
        ScreenScript script(screen, course);
        for (const Edit& edit : edits) script.Apply(edit);
    } catch (const Refused& refused) {
        screen.cmdCancelClick();
        return Failed(context, {{"number", number}, {"file", JsonText(file)}, {"written", false}},
                      refused.reason + "; nothing was saved");
    }
    screen.cmdSetClick();
    nlohmann::json document = SessionJson(course, number, file);
    document["written"] = screen.WriteSucceeded();
    Print(context, document,
          (screen.WriteSucceeded() ? "Saved " : "Not saved: ") + file + "\n\n" +
              SessionText(course, number, file));
    return screen.WriteSucceeded() ? 0 : 1;
}

namespace {

int LoadAndChooseSession(Context& context) {
    LoadCourseReadOnly(context);
    return SessionNumber(context, context.args[0]);
}

// The course loaded read-only and frmEditSession open on the session named by the first word.
struct OpenedSessionEdit {
    explicit OpenedSessionEdit(Context& context)
        : number(LoadAndChooseSession(context)),
          grid(context.course),
          screen(context.course, context.host, grid, number) {}

    const int number;
    HeadlessSessionGrid grid;
    EditSessionScreen screen;
};

}  // namespace

int RenameCommand(Context& context) {
    ExpectArguments(context, 2, "rename N TITLE");
    OpenedSessionEdit opened(context);
    const int number = opened.number;
    EditSessionScreen& screen = opened.screen;
    screen.txtSessionNameChange(context.args[1]);
    screen.cmdSaveClick();
    nlohmann::json document = {{"number", number},
                               {"file", JsonText(screen.lblFileName().text)},
                               {"title", JsonText(screen.txtSessionName().text)},
                               {"written", screen.Saved() && screen.WriteSucceeded()}};
    if (!screen.Saved()) return Failed(context, document, "the title was refused");
    if (!screen.WriteSucceeded()) return Failed(context, document, "the log was not written");
    screen.AfterClose();
    Print(
        context, document,
        "Renamed " + screen.lblFileName().text + " to \"" + screen.txtSessionName().text + "\"\n");
    return 0;
}

int RemoveCommand(Context& context) {
    ExpectArguments(context, 1, "remove N [--yes]");
    OpenedSessionEdit opened(context);
    const int number = opened.number;
    EditSessionScreen& screen = opened.screen;
    screen.cmdRemoveClick();
    const std::string& file = screen.lblFileName().text;
    nlohmann::json document = {{"number", number},
                               {"file", JsonText(file)},
                               {"copy", JsonText("x" + file)},
                               {"removed", screen.Removed()},
                               {"sessions", context.course.NumSessions}};
    if (!screen.Removed())
        return Failed(context, document,
                      "session " + std::to_string(number) + " was not removed (--yes confirms)");
    Print(context, document,
          "Removed " + file + "; its copy is x" + file + ", " +
              std::to_string(context.course.NumSessions) + " sessions remain\n");
    return 0;
}

}  // namespace tallory::cli
