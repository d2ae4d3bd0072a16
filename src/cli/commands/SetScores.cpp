// set-scores N [--participation P] [--cap X | --no-cap] [--min-responses R]
//              [--question Q [--correct A..E|--] [--points a,b,c,d,e] [--delete|--restore]
//               [--title T]]...
// Works the Set Scores screen of session N: each option is the edit of one of its boxes, applied
// in the order given, then the session is saved as "Set" saves it. An edit the screen refuses
// stops the command before anything is written.
#include <map>
#include <memory>

#include "cli/commands/Commands.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "scoring/SetScoresScreen.h"

namespace tallory::cli {

namespace {

// One edit on the Set Scores screen, as an option of the command line names it.
struct Edit {
    std::string option;
    std::string value;
};

// The edit options in the order --help lists them: name, value name (none for a flag), help.
struct EditOption {
    const char* name;
    const char* valueName;
    const char* help;
};

constexpr EditOption kEditOptions[] = {
    {"--participation", "P", "participation points of the session"},
    {"--cap", "X", "cap the performance points at X"},
    {"--no-cap", nullptr, "no cap on the performance points"},
    {"--min-responses", "R", "the minimum number of responses for participation points"},
    {"--question", "Q", "go to question Q; the edits after it act on it"},
    {"--correct", "A..E|--", "the correct answer of the question (-- for none)"},
    {"--points", "a,b,c,d,e", "the points of the answers A to E"},
    {"--delete", nullptr, "delete the question"},
    {"--restore", nullptr, "restore the deleted question"},
    {"--title", "T", "the question's title (a title starting with - as --title=-x)"},
};

struct SetScoresOptions {
    std::string session;
    CLI::App* command = nullptr;
    std::map<const CLI::Option*, const EditOption*> edits;

    // The edits in command-line order. Each option keeps its own values; the order across options
    // is the order in which the parser met them.
    std::vector<Edit> OrderedEdits() const {
        std::vector<Edit> ordered;
        std::map<const CLI::Option*, size_t> used;
        for (const CLI::Option* option : command->parse_order()) {
            auto edit = edits.find(option);
            if (edit == edits.end()) continue;
            size_t index = used[option]++;
            std::string value;
            if (edit->second->valueName != nullptr) value = option->results().at(index);
            ordered.push_back({edit->second->name, value});
        }
        return ordered;
    }
};

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

int RunSetScores(Context& context, const SetScoresOptions& options) {
    std::vector<Edit> edits = options.OrderedEdits();
    Course& course = context.course;
    const int number = SessionNumber(context, options.session);
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
              SessionText(course, number, file),
          Extras{.files = true});
    return screen.WriteSucceeded() ? 0 : 1;
}

}  // namespace

std::function<int()> DeclareSetScoresCommand(CLI::App& command, Context& context) {
    auto options = std::make_shared<SetScoresOptions>();
    options->command = &command;
    AddSessionArgument(command, options->session);
    AddPreviewOption(command, context);
    for (const EditOption& edit : kEditOptions) {
        CLI::Option* option = edit.valueName != nullptr ? command.add_option(edit.name, edit.help)
                                                              ->type_name(edit.valueName)
                                                              ->type_size(1)
                                                              ->expected(1)
                                                        : command.add_flag(edit.name, edit.help);
        option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        options->edits[option] = &edit;
    }
    return [&context, options] { return RunSetScores(context, *options); };
}

}  // namespace tallory::cli
