#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace tallory {

// A change that replaces several course files (a purge, a clicker removal: RemoteID.csv and every
// log) either happens whole or not at all. While a journal is open, each course file is, before
// it is first replaced, kept as it was in the course's journal folder; when the change ends the
// journal goes. A change cut short (the program killed, the machine down) leaves its journal,
// and the next opening of the course puts every file back as it was before the change.
class ChangeJournal {
  public:
    // `action` says what the change is, for the message of an undoing.
    ChangeJournal(std::string courseFolder, std::string action);
    ~ChangeJournal();  // finishes
    ChangeJournal(const ChangeJournal&) = delete;
    ChangeJournal& operator=(const ChangeJournal&) = delete;

    // The change is complete: its journal goes.
    void Finish();

    // The file writer calls this before it replaces `target` with bytes of ContentHash
    // `newHash`: the open journal (if any, and if the file is the course's) keeps the file's
    // present bytes. False when they could not be kept; the file must then not be replaced.
    static bool BeforeReplace(const std::string& target, uint64_t newHash);

  private:
    bool Keep(const std::string& target, uint64_t newHash);

    std::string folder_;   // the course folder
    std::string journal_;  // its journal folder, made at the first file kept
    std::string action_;
    // Per file kept: its journal entry and the entry's record (every content the change gave
    // it, whether it stood, its path).
    std::map<std::string, std::pair<std::string, std::string>> kept_;
    bool finished_ = false;
};

// The journal folder of a course folder.
std::string JournalFolder(const std::string& courseFolder);

// Puts back the files of a change that was cut short; the message to show, empty when there
// was none. A file changed since by another program (the polling application appending to a
// log) is left as it stands. Call with the course's edit lock held.
std::string UndoInterruptedChange(const std::string& courseFolder);

}  // namespace tallory
