// student ID [--add REMOTE | --remove-clicker [REMOTE] | --delete-logs]: the student editing
// screen of a name in the grid, and its buttons.
#include <algorithm>
#include <memory>
#include <optional>

#include "cli/commands/Commands.h"
#include "common/Text.h"
#include "grid/EditStudent.h"

namespace tallory::cli {

namespace {

struct StudentRequest {
    std::string id;
    std::optional<std::string> add;
    std::optional<std::string> removeClicker;  // "" for the first row
    bool removeGiven = false;
    bool deleteLogs = false;
};

bool Usable(const ControlState& button) {
    return button.visible && button.enabled;
}

// What typing gives in TxtNewClickerId: the keys it refuses are dropped.
std::string Typed(const std::string& text) {
    std::string typed;
    for (unsigned char c : text)
        if (EditStudentScreen::TxtNewClickerIdKey(c)) typed += static_cast<char>(c);
    return typed;
}

nlohmann::json ScreenJson(const EditStudentScreen& screen, int row) {
    nlohmann::json clickers = nlohmann::json::array();
    for (const std::string& remote : screen.ClickList()) clickers.push_back(JsonText(remote));
    return {{"row", row},
            {"student_id", JsonText(screen.txtStudentId().text)},
            {"shown_id", JsonText(screen.lblStudentID().text)},
            {"name", JsonText(screen.lblLastName().text)},
            {"heading", JsonText(screen.Label4().text)},
            {"clickers", clickers},
            {"clicker", JsonText(screen.lblClickerID().text)},
            {"save_caption", screen.cmdSave().text},
            {"save_visible", screen.cmdSave().visible},
            {"remove_visible", screen.cmdRemove().visible},
            {"add_enabled", screen.CmdAdd().enabled}};
}

std::string ScreenText(const EditStudentScreen& screen) {
    std::string text = screen.Label4().text + "\nStudent ID: " + screen.lblStudentID().text +
                       "\nName: " + screen.lblLastName().text + "\nClickers:";
    for (const std::string& remote : screen.ClickList()) text += " " + remote;
    text += "\nClicker acted on: " + screen.lblClickerID().text + "\n";
    return DisplayText(text);
}

int RunStudent(Context& context, const StudentRequest& request) {
    HeadlessScreen& grid = context.grid;
    const Course& course = context.course;
    int row = 0;
    for (int s = 1; s <= course.NumStudents && row == 0; ++s)
        if (course.Students[s].StudentId == request.id) row = s;
    if (row == 0) throw UsageError{"no student '" + request.id + "' in the grid"};

    EditStudentScreen screen(context.course, context.host, grid, row);
    screen.Activate();
    nlohmann::json document = ScreenJson(screen, row);
    const std::string text = ScreenText(screen);

    if (request.add) {
        screen.TxtNewClickerIdChange(Typed(*request.add));
        if (Usable(screen.CmdAdd())) screen.CmdAddClick();
    } else if (request.removeGiven) {
        if (request.removeClicker && !request.removeClicker->empty()) {
            const auto& list = screen.ClickList();
            const auto found = std::find(list.begin(), list.end(), *request.removeClicker);
            if (found == list.end())
                throw UsageError{"no clicker '" + *request.removeClicker + "' in the list"};
            screen.cmbClickListClick(static_cast<int>(found - list.begin()));
        }
        if (Usable(screen.cmdSave())) screen.cmdSaveClick();
    } else if (request.deleteLogs) {
        if (Usable(screen.cmdRemove())) screen.cmdRemoveClick();
    }
    Print(context, document, text, Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareStudentCommand(CLI::App& command, Context& context) {
    auto request = std::make_shared<StudentRequest>();
    command.add_option("ID", request->id, "the student ID as the grid holds it")
        ->required()
        ->type_name("");
    CLI::Option* add =
        command
            .add_option_function<std::string>(
                "--add", [request](const std::string& remote) { request->add = remote; },
                "type REMOTE as a new clicker and press Add New Clicker")
            ->type_name("REMOTE");
    CLI::Option* remove =
        command
            .add_option_function<std::vector<std::string>>(
                "--remove-clicker",
                [request](const std::vector<std::string>& remotes) {
                    request->removeGiven = true;
                    request->removeClicker = remotes.empty() ? "" : remotes.front();
                },
                "choose REMOTE (default: the first) and press Remove Clicker (asks first)")
            ->expected(0, 1)
            ->type_name("[REMOTE]");
    CLI::Option* deleteLogs = command.add_flag(
        "--delete-logs", request->deleteLogs,
        "press Delete Clicker Logs: the clicker's votes leave every log (asks first)");
    add->excludes(remove)->excludes(deleteLogs);
    remove->excludes(deleteLogs);
    AddByNameOption(command, context);
    AddPreviewOption(command, context);
    return [&context, request] { return RunStudent(context, *request); };
}

}  // namespace tallory::cli
