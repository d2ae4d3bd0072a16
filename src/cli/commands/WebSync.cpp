// websync [--answer accept|ignore|cancel]: the main window's "Sync Web Registrations", answered
// from the command line at every clicker that waits for a person.
#include <memory>

#include "cli/commands/Commands.h"
#include "web/CurlFetcher.h"
#include "web/WebSyncScreen.h"

namespace tallory::cli {

namespace {

struct WebSyncOptions {
    std::string answer = "cancel";
};

VerifyAnswer AnswerOf(const std::string& word) {
    if (word == "accept") return VerifyAnswer::Accept;
    if (word == "ignore") return VerifyAnswer::Ignore;
    return VerifyAnswer::Cancel;
}

nlohmann::json Rows(const ListState& list) {
    nlohmann::json rows = nlohmann::json::array();
    for (const std::string& row : list.rows) rows.push_back(JsonText(row));
    return rows;
}

int RunWebSync(Context& context, const WebSyncOptions& options) {
    HeadlessScreen screen;
    CurlFetcher fetcher;
    nlohmann::json verify = nlohmann::json::array();
    std::optional<std::string> doneNote;
    int recordsUpdated = 0;
    bool cancelled = false;
    std::string text;
    SyncWebRegistrations(context.course, context.host, screen, fetcher, [&](WebSyncScreen& web) {
        web.onVerify = [&](bool automatic) {
            const std::string& id =
                std::as_const(context.course).Students[web.CurrentStudent()].StudentId;
            const std::string remote = id.empty() ? id : id.substr(1);
            verify.push_back({{"remote", JsonText(remote)},
                              {"note", JsonText(web.wNote().text)},
                              {"web", Rows(web.wWebList())},
                              {"roster", Rows(web.wList())},
                              {"auto", automatic}});
            text += remote + (automatic ? " (accepted by itself)" : "") + ": " + web.wNote().text +
                    "\n";
            for (const std::string& row : web.wWebList().rows) text += "  web:    " + row + "\n";
            for (const std::string& row : web.wList().rows) text += "  roster: " + row + "\n";
        };
        doneNote = AnswerWebSync(web, AnswerOf(options.answer));
        recordsUpdated = web.Registrations().RecordsUpdated;
        cancelled = web.Cancelled();
    });
    if (doneNote) text += *doneNote + "\n";
    if (cancelled) text += "Cancelled: nothing written\n";
    nlohmann::json document = {
        {"verify", verify},
        {"done_note", doneNote ? nlohmann::json(JsonText(*doneNote)) : nlohmann::json(nullptr)},
        {"records_updated", recordsUpdated},
        {"cancelled", cancelled}};
    Print(context, document, text, Extras{.files = true, .started = true});
    return 0;
}

}  // namespace

std::function<int()> DeclareWebSyncCommand(CLI::App& command, Context& context) {
    auto options = std::make_shared<WebSyncOptions>();
    command
        .add_option("--answer", options->answer,
                    "at each clicker that waits: accept the first roster row, ignore, or cancel "
                    "(default)")
        ->check(CLI::IsMember({"accept", "ignore", "cancel"}));
    AddPreviewOption(command, context);
    return [&context, options] { return RunWebSync(context, *options); };
}

}  // namespace tallory::cli
