// rename N TITLE: the session's title, as the session edit screen saves it.
#include <memory>

#include "cli/SessionEdit.h"

namespace tallory::cli {

namespace {

struct RenameOptions {
    std::string session;
    std::string title;
};

int RunRename(Context& context, const RenameOptions& options) {
    OpenedSessionEdit opened(context, options.session);
    EditSessionScreen& screen = opened.screen;
    screen.txtSessionNameChange(options.title);
    screen.cmdSaveClick();
    nlohmann::json document = {{"number", opened.number},
                               {"file", JsonText(screen.lblFileName().text)},
                               {"title", JsonText(screen.txtSessionName().text)},
                               {"written", screen.Saved() && screen.WriteSucceeded()}};
    if (!screen.Saved()) return Failed(context, document, "the title was refused");
    if (!screen.WriteSucceeded()) return Failed(context, document, "the log was not written");
    screen.AfterClose();
    Print(context, document,
          "Renamed " + screen.lblFileName().text + " to \"" + screen.txtSessionName().text + "\"\n",
          Extras{.files = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareRenameCommand(CLI::App& command, Context& context) {
    auto options = std::make_shared<RenameOptions>();
    AddSessionArgument(command, options->session);
    command.add_option("TITLE", options->title, "the new title")->required()->type_name("");
    return [&context, options] { return RunRename(context, *options); };
}

}  // namespace tallory::cli
