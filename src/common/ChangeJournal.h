#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tallory {

// A change that replaces several course files (a purge, a clicker removal: RemoteID.csv and every
// log) either happens whole or not at all. While a journal is open, each course file is, before
// it is first replaced, kept as it was in the course's journal folder; when the change ends the
// journal goes. A change cut short (the program killed, the machine down) leaves its journal,
// and the next opening of the course puts every file back as it was before the change.
//
// A change that says what it is (Describe) becomes, once finished, an entry of the course's
// history: what the instructor sees and can undo. Writes nobody described (an export, a report
// page) are journaled alike but leave no entry.
class ChangeJournal {
  public:
    // `action` names the run, for the message of an undoing. A journal `onlyDescribed` keeps
    // nothing until a change is described: the desktop program's, open while the course is.
    ChangeJournal(std::string courseFolder, std::string action, bool onlyDescribed = false);
    ~ChangeJournal();  // finishes
    ChangeJournal(const ChangeJournal&) = delete;
    ChangeJournal& operator=(const ChangeJournal&) = delete;

    // The change is complete: it goes to the history (when described), then its journal goes.
    void Finish();
    // The change so far is complete; the journal stays open for the next one.
    void Commit();

    // The file writer calls this before it replaces `target` with bytes of ContentHash
    // `newHash`: the open journal (if any, and if the file is the course's) keeps the file's
    // present bytes. False when they could not be kept; the file must then not be replaced.
    static bool BeforeReplace(const std::string& target, uint64_t newHash);
    // The writer calls this once it renamed a file over `target` in `folder`. A file the open
    // journal keeps needs its rename made durable only before the journal goes, when the change
    // ends: until then a machine going down gets the file put back from the journal anyway. True
    // when the journal takes the folder's sync on; false: the writer syncs it now.
    static bool SyncFolderLater(const std::string& target, const std::string& folder);
    // Removes a course file, kept first like a replaced one; false when it could not be.
    static bool RemoveFile(const std::string& target);

    // A change of the instructor's begins: "Set Scores of 09/15/2026". What the open journal
    // kept of an earlier change is committed first. `undoes` is the history entry an undo takes
    // back. Without an open journal nothing happens.
    static void Describe(const std::string& action, int undoes = 0);
    // True while a journal is open in this process.
    static bool Open();

  private:
    bool Keep(const std::string& target, std::optional<uint64_t> newHash);
    void Record();

    struct KeptFile {
        std::string path;
        std::string entry;  // its bytes in the journal
        bool stood = false;
    };

    std::string folder_;   // the course folder
    std::string journal_;  // its journal folder, made at the first file kept
    std::string action_;
    // Per file kept: its journal entry.
    std::map<std::string, std::string> kept_;
    // The entries whose list of later contents exists: the files written twice or more.
    std::set<std::string> laterListed_;
    // Folders where a kept file was replaced since the last commit.
    std::set<std::string> unsynced_;
    std::string described_;  // the change as the history names it; empty: not described
    int undoes_ = 0;
    bool onlyDescribed_ = false;
    std::string token_;
    std::vector<KeptFile> files_;
    bool finished_ = false;
};

// The change of one action of the instructor's: joins the journal open in this process (the
// command's, the desktop's), or opens one of its own for the time it lives.
class ChangeScope {
  public:
    ChangeScope(const std::string& courseFolder, const std::string& action, int undoes = 0);
    ~ChangeScope();
    ChangeScope(const ChangeScope&) = delete;
    ChangeScope& operator=(const ChangeScope&) = delete;

  private:
    std::optional<ChangeJournal> own_;
};

// While one lives, nothing written is journaled or goes to the history, and the journal open
// before waits: a preview's change falls on a throwaway copy of the course.
class UnkeptChanges {
  public:
    UnkeptChanges();
    ~UnkeptChanges();
    UnkeptChanges(const UnkeptChanges&) = delete;
    UnkeptChanges& operator=(const UnkeptChanges&) = delete;

  private:
    ChangeJournal* waiting_;
    bool wasUnkept_;
};

// The journal folder of a course folder.
std::string JournalFolder(const std::string& courseFolder);

// Puts back the files of a change that was cut short; the message to show, empty when there
// was none. A file changed since by another program (the polling application appending to a
// log) is left as it stands. Call with the course's edit lock held.
std::string UndoInterruptedChange(const std::string& courseFolder);

}  // namespace tallory
