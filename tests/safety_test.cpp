// What the user set up on the course files stands: permissions, links and owners survive a
// rewrite, files of the wrong kind never stall a read, and killed writes leave nothing for good.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

#include "LogBuilder.h"
#include "SupportForFiles.h"
#include "TestSupport.h"
#include "common/AtomicFile.h"
#include "common/ChangeJournal.h"
#include "common/CourseLock.h"
#include "common/Paths.h"
#include "common/ReadGuard.h"
#include "common/RecordingHost.h"
#include "export/Export.h"
#include "grid/CourseLoad.h"
#include "housekeeping/UnregisteredStudents.h"
#include "logs/SessionLog.h"
#include "logs/SessionLogWriter.h"
#include "registration/RemoteTable.h"
#include "registration/Roster.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"
#include "start/Settings.h"

namespace tallory {
namespace {

using test::TempCourse;

struct stat StatOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info;
}

// ---- Replacing a file --------------------------------------------------------------------------

TEST(Safety, ReadOnlyFileIsNotReplacedAndTheWriterSaysSo) {
    TempCourse course;
    course.Write("SessionData/L0909111030.csv", "old");
    const std::string path = course.File("SessionData/L0909111030.csv");
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    std::string error;
    EXPECT_FALSE(ReplaceFile(path, "new", &error));
    EXPECT_TRUE(test::Holds(error, "read-only"));
    EXPECT_EQ(course.Read("SessionData/L0909111030.csv"), "old");
    EXPECT_EQ(StatOf(path).st_mode & 07777, 0444u);
}

TEST(Safety, SymbolicLinksAreFollowedToTheFileTheyName) {
    // What the link says (empty: the full path of the file it names), and that file.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"relative", "../Shared/config.csv", "Shared/config.csv"},
        {"absolute", "", "Elsewhere/config.csv"},  // filled in with the full path below
        {"dangling", "New/config.csv", "SessionData/New/config.csv"},
    };
    for (const auto& [name, says, named] : cases) {
        SCOPED_TRACE(name);
        TempCourse course;
        const std::string target = course.File(named);
        course.Write(named, "old");
        if (std::string(name) == "dangling") ::unlink(target.c_str());
        const std::string said = *says ? std::string(says) : target;
        const std::string link = course.File("SessionData/Config.csv");
        course.Write("SessionData/keep", "");
        ASSERT_EQ(::symlink(said.c_str(), link.c_str()), 0);
        ASSERT_TRUE(ReplaceFile(link, "new"));
        EXPECT_TRUE(S_ISLNK(StatOf(link).st_mode));
        EXPECT_EQ(test::ReadBytes(target), "new");
        EXPECT_EQ(test::ReadBytes(link), "new");
    }
}

TEST(Safety, OwnerGroupAndModeAreKept) {
    TempCourse course;
    course.Write("SessionData/RemoteID.csv", "#1A,\"S1\"\r\n");
    const std::string path = course.File("SessionData/RemoteID.csv");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::chown(path.c_str(), 4321, 8765), 0);
    }
    const struct stat before = StatOf(path);
    ASSERT_TRUE(ReplaceFile(path, "#2B,\"S2\"\r\n"));
    const struct stat after = StatOf(path);
    EXPECT_NE(after.st_ino, before.st_ino);  // a new file, renamed into place
    EXPECT_EQ(after.st_mode & 07777, 0640u);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    if (!root) GTEST_SKIP() << "another owner can be kept only with root's rights";
}

// ---- Files of the wrong kind -------------------------------------------------------------------

// Runs `read` in a child process; a read still going after a few seconds is killed and fails the
// test, so a hang can never stall the run.
void EndsInTime(const std::function<void()>& read) {
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            read();
        } catch (...) {
            ::_exit(3);
        }
        ::_exit(0);
    }
    int status = 0;
    for (int waited = 0; waited < 500; ++waited) {
        if (::waitpid(child, &status, WNOHANG) == child) {
            ASSERT_TRUE(WIFEXITED(status));
            EXPECT_EQ(WEXITSTATUS(status), 0) << "the read threw";
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    FAIL() << "the read did not end";
}

// Puts something that is not a plain file where a course file is expected.
enum class Kind { Fifo, Device, Folder };

void PutInPlace(const TempCourse& course, const std::string& relative, Kind kind) {
    const std::string path = course.File(relative);
    course.Write(relative, "");
    ::unlink(path.c_str());
    switch (kind) {
        case Kind::Fifo:
            ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0);
            break;
        case Kind::Device:
            ASSERT_EQ(::symlink("/dev/zero", path.c_str()), 0);
            break;
        case Kind::Folder:
            ASSERT_EQ(::mkdir(path.c_str(), 0755), 0);
            break;
    }
}

TEST(Safety, ANonPlainFileReadsAsAFileThatCannotBeOpened) {
    struct Case {
        const char* file;
        std::function<void(Course&, const std::string&)> check;
    } cases[] = {
        {"SessionData/Config.csv",
         [](Course& course, const std::string&) {
             RecordingHost host;
             ReadConfig(course, host);
             if (course.NumParams != 0) std::abort();
         }},
        {"SessionData/RemoteID.csv",
         [](Course& course, const std::string& path) {
             RecordingHost host;
             ReadRemoteIds(course, host, path);
             if (course.NumRemotes != 0) std::abort();
         }},
        {"Roster.txt",
         [](Course& course, const std::string& path) {
             ReadRoster(course, path);
             if (!course.Roster[1].StudentId.empty()) std::abort();
         }},
        {"SessionData/L0909111030.csv",
         [](Course& course, const std::string& path) {
             if (test::EndingOf([&] { ReadSessionLog(course, path); }).number != kFileNotFound)
                 std::abort();
         }},
    };
    for (Kind kind : {Kind::Fifo, Kind::Device, Kind::Folder}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.file) + " kind " + std::to_string(static_cast<int>(kind)));
            TempCourse folder;
            PutInPlace(folder, c.file, kind);
            EndsInTime([&] {
                Course course;
                course.AppPath = folder.Path();
                c.check(course, folder.File(c.file));
            });
        }
    }
}

TEST(Safety, ACourseWithPipesForEveryFileStillOpens) {
    TempCourse folder;
    folder.WriteLog("L0909121030.csv", {.voters = {{"#A1", "", {"A"}}}});
    for (const char* file : {"SessionData/Config.csv", "SessionData/RemoteID.csv", "Roster.txt",
                             "SessionData/L0909111030.csv"})
        PutInPlace(folder, file, Kind::Fifo);
    EndsInTime([&] {
        Course course;
        course.AppPath = folder.Path();
        RecordingHost host;
        HeadlessSessionGrid grid(course);
        LoadCourse(course, host, grid.Screen(), ReadOnlyLoad());
        if (course.NumSessions != 1 || course.SessionFile[1] != "L0909121030.csv") std::abort();
    });
}

// ---- The one writer's failures ------------------------------------------------------------------

struct UnsavedHost : RecordingHost {
    void FileNotWritten(const std::string& path, const std::string& reason) override {
        unsaved.push_back(path + " | " + reason);
    }
    std::vector<std::string> unsaved;
};

TEST(Safety, AFailureAtAnyStepLeavesTheOldFileAndSaysWhy) {
    const std::tuple<WriteStep, int, const char*> cases[] = {
        {WriteStep::Open, ENOSPC, "the disk is full"},
        {WriteStep::Open, EROFS, "the disk is read-only"},
        {WriteStep::Write, ENOSPC, "the disk is full"},
        {WriteStep::Write, EDQUOT, "the disk quota is used up"},
        {WriteStep::Sync, EIO, "Input/output error"},
        {WriteStep::Rename, EISDIR, "a folder is in the way"},
        {WriteStep::Rename, EACCES, "permission denied"},
    };
    for (const auto& [step, code, cause] : cases) {
        SCOPED_TRACE(std::string(cause) + " at step " + std::to_string(int(step)));
        TempCourse course;
        course.Write("SessionData/L0909111030.csv", "old");
        course.Write("SessionData/RemoteID.csv", "old");
        const std::string path = course.File("SessionData/L0909111030.csv");
        SetWriteFault(WriteFault{step, code, "L0909"});
        UnsavedHost host;
        std::string error;
        EXPECT_FALSE(ReplaceFile(path, std::string(200000, 'n'), &error, &host));
        // A file the failure does not name is written as ever.
        EXPECT_TRUE(ReplaceFile(course.File("SessionData/RemoteID.csv"), "new", nullptr, &host));
        SetWriteFault(std::nullopt);
        // The old file, the other file new, and no temporary left.
        EXPECT_EQ(test::FolderFiles(course.File("SessionData")),
                  (test::Files{{"L0909111030.csv", "old"}, {"RemoteID.csv", "new"}}));
        EXPECT_TRUE(test::Holds(error, path));
        EXPECT_TRUE(test::Holds(error, cause));
        EXPECT_EQ(host.unsaved, std::vector<std::string>{path + " | " + error});
        EXPECT_EQ(host.written, std::vector<std::string>{course.File("SessionData/RemoteID.csv")});
    }
}

// Every kind of file goes through the same writer: a failure reaches the host once, the old file
// stands, the command says so in its own words (`said`, "{path}" for the file) or ends with a
// run-time error; once the disk is well again the same save writes the file.
TEST(Safety, EveryWriterLeavesTheOldFileAndSaysWhy) {
    struct Case {
        const char* file;
        std::function<void(const TempCourse&, Host&)> save;
        const char* said;
        int ending;
    } cases[] = {
        {"SessionData/Config.csv",
         [](const TempCourse& folder, Host& host) {
             Course course;
             course.AppPath = folder.Path();
             SetParam(course, "CMS", "Canvas");
             WriteConfig(course, host);
         },
         nullptr, 0},
        {"Classes/Options.csv",
         [](const TempCourse& folder, Host& host) {
             SaveSelectedClass(folder.Path(), "Physics", host);
         },
         nullptr, 0},
        {"SessionData/RemoteID.csv",
         [](const TempCourse& folder, Host& host) {
             Course course;
             AddRemote(course, "CD34", "S2");
             WriteRemoteIds(course, host, folder.File("SessionData/RemoteID.csv"));
         },
         "[Tallory] Unable to write remote id file {path} new registrations not stored.", 0},
        {"SessionData/L2609151030.csv",
         [](const TempCourse& folder, Host& host) {
             Course course;
             course.AppPath = folder.Path();
             ReadSessionLogText(course, "L2609151030.csv",
                                test::LogText({.voters = {{"#A1", "", {"A"}}}}));
             WriteSessionLog(course, host, folder.File("SessionData/L2609151030.csv"), "", "", 0);
         },
         "[Tallory] Unable to store changes to file {path} Changes not saved!", 0},
        {"Unregistered Student List.CSV",
         [](const TempCourse& folder, Host& host) {
             WriteUnregisteredFile(host, UnregisteredTable{},
                                   folder.File("Unregistered Student List.CSV"), ',');
         },
         nullptr, kPathFileAccessError},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        TempCourse folder;
        folder.Write(c.file, "old");
        SetWriteFault(WriteFault{WriteStep::Write, ENOSPC, c.file});
        UnsavedHost host;
        EXPECT_EQ(test::EndingOf([&] { c.save(folder, host); }).number, c.ending);
        SetWriteFault(std::nullopt);
        EXPECT_EQ(folder.Read(c.file), "old");
        ASSERT_EQ(host.unsaved.size(), 1u);
        EXPECT_EQ(host.unsaved[0].rfind(folder.File(c.file) + " | ", 0), 0u) << host.unsaved[0];
        EXPECT_TRUE(test::Holds(host.unsaved[0], "the disk is full"));
        test::Strings said;
        if (c.said) {
            std::string text = c.said;
            said.push_back(text.replace(text.find("{path}"), 6, folder.File(c.file)));
        }
        EXPECT_EQ(test::Messages(host), said);
        host.messages.clear();
        EXPECT_EQ(test::EndingOf([&] { c.save(folder, host); }).number, 0);
        EXPECT_NE(folder.Read(c.file), "old");
        EXPECT_EQ(host.written, std::vector<std::string>{folder.File(c.file)});
        EXPECT_TRUE(host.messages.empty());
    }
}

TEST(Safety, AFailureIsNamedInTheEnvironmentAsStepErrorAndPath) {
    const std::tuple<const char*, bool, WriteStep, int, const char*> cases[] = {
        {"write:ENOSPC:SessionData/L", true, WriteStep::Write, ENOSPC, "SessionData/L"},
        {"rename:EISDIR:", true, WriteStep::Rename, EISDIR, ""},
        {"open:EROFS:a:b", true, WriteStep::Open, EROFS, "a:b"},
        {"close:ENOSPC:x", false, WriteStep::Write, 0, ""},
        {"write:ENOMEM:x", false, WriteStep::Write, 0, ""},
        {"write:ENOSPC", false, WriteStep::Write, 0, ""},
        {"", false, WriteStep::Write, 0, ""},
    };
    for (const auto& [text, valid, step, error, part] : cases) {
        SCOPED_TRACE(text);
        std::optional<WriteFault> fault = ParseWriteFault(text);
        ASSERT_EQ(fault.has_value(), valid);
        if (!fault) continue;
        EXPECT_EQ(fault->step, step);
        EXPECT_EQ(fault->error, error);
        EXPECT_EQ(fault->pathPart, part);
    }
}

// ACL entries (on this system an extended attribute of their own) and the user's extended
// attributes stay with the file through a replacement.
TEST(Safety, AclAndExtendedAttributesAreKept) {
    TempCourse course;
    course.Write("Roster.txt", "old");
    const std::string path = course.File("Roster.txt");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    // An ACL of the owner, one more user (read), the group, the mask and the others.
    struct Entry {
        uint16_t tag, permissions;
        uint32_t id;
    };
    const uint32_t version = 2;
    const Entry entries[] = {
        {0x01, 6, ~0u}, {0x02, 4, 4242}, {0x04, 4, ~0u}, {0x10, 4, ~0u}, {0x20, 0, ~0u}};
    std::string acl(reinterpret_cast<const char*>(&version), sizeof version);
    acl.append(reinterpret_cast<const char*>(entries), sizeof entries);
    const bool aclSet =
        ::setxattr(path.c_str(), "system.posix_acl_access", acl.data(), acl.size(), 0) == 0;
    const bool userSet = ::setxattr(path.c_str(), "user.tallory.note", "kept", 4, 0) == 0;
    if (!aclSet && !userSet) GTEST_SKIP() << "this file system keeps no extended attributes";

    ASSERT_TRUE(ReplaceFile(path, "new"));
    EXPECT_EQ(course.Read("Roster.txt"), "new");
    auto attribute = [&](const char* name) {
        char value[256];
        ssize_t length = ::getxattr(path.c_str(), name, value, sizeof value);
        return length < 0 ? std::string("(none)") : std::string(value, static_cast<size_t>(length));
    };
    if (aclSet) {
        EXPECT_EQ(attribute("system.posix_acl_access"), acl);
    }
    if (userSet) {
        EXPECT_EQ(attribute("user.tallory.note"), "kept");
    }
}

// ---- A log read is replaced only as it was read ------------------------------------------------

TEST(Safety, ALogIsReplacedOnlyWhileItIsWhatTheLatestReadSaw) {
    const auto appendVote = [](const std::string& path) {
        std::ofstream(path, std::ios::app) << "#9C00001, ,\r\n";
    };
    const auto writeOurs = [](const std::string& path) {
        ASSERT_TRUE(ReplaceFile(path, "ours\r\n"));
    };
    struct Case {
        const char* name;
        std::function<void(const std::string&)> meanwhile;  // by this process or another
        bool readAgain;  // a read of the log after that: what it saw is what counts
        bool replaced;
        const char* says;
    } cases[] = {
        {"nothing", [](const std::string&) {}, false, true, ""},
        {"a vote appended", appendVote, false, false,
         "was changed by another program after Tallory read it; nothing was changed."},
        {"rewritten with as many bytes",
         [](const std::string& path) {
             std::string text = test::ReadBytes(path);
             text[text.size() - 3] = 'Z';
             std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
         },
         false, false, "was changed by another program"},
        {"removed", [](const std::string& path) { ::unlink(path.c_str()); }, false, true, ""},
        {"nothing, then read again", [](const std::string&) {}, true, true, ""},
        {"written by this process, then read again", writeOurs, true, true, ""},
        {"a vote appended, then read again", appendVote, true, true, ""},
        {"written by this process and a vote appended, then read again",
         [&](const std::string& path) {
             writeOurs(path);
             appendVote(path);
         },
         true, true, ""},
        // A change that left size and time alike is still caught before the replacement.
        {"rewritten with as many bytes and the old time put back, then read again",
         [](const std::string& path) {
             struct stat before {};
             ASSERT_EQ(::stat(path.c_str(), &before), 0);
             std::ofstream(path, std::ios::binary | std::ios::trunc) << "OLD LOG\r\n";
             const struct timespec times[2] = {before.st_atim, before.st_mtim};
             ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
         },
         true, false, "was changed by another program"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TempCourse course;
        course.Write("SessionData/L0909111030.csv", "old log\r\n");
        const std::string path = course.File("SessionData/L0909111030.csv");
        Course read;
        ReadSessionLog(read, path);
        c.meanwhile(path);
        if (c.readAgain) ReadSessionLog(read, path);
        const std::string before = FileExists(path) ? test::ReadBytes(path) : "";
        std::string error;
        EXPECT_EQ(ReplaceFile(path, "new log\r\n", &error), c.replaced) << error;
        EXPECT_EQ(test::ReadBytes(path), c.replaced ? "new log\r\n" : before);
        if (!c.replaced) {
            EXPECT_TRUE(test::Holds(error, path + " " + c.says));
        }
    }
}

// The hash that guards a log is the same however its bytes come: whole, or in pieces of any size
// as a writer hands them over.
TEST(Safety, TheContentHashIsTheSameForAnyPieces) {
    std::string text;
    for (int i = 0; i < 300; ++i) text += static_cast<char>('!' + (i * 37) % 90);
    for (size_t length :
         {size_t{0}, size_t{1}, size_t{7}, size_t{8}, size_t{9}, size_t{64}, size_t{300}}) {
        const std::string_view whole(text.data(), length);
        const uint64_t expected = ContentHash(whole);
        for (size_t piece = 1; piece <= 17; ++piece) {
            ContentHasher hasher;
            for (size_t at = 0; at < length; at += piece) hasher.Add(whole.substr(at, piece));
            EXPECT_EQ(hasher.Value(), expected) << "length " << length << " piece " << piece;
        }
    }
    // A changed byte, a byte more and bytes swapped each give another hash.
    const uint64_t base = ContentHash(text);
    std::string changed = text;
    changed[150] ^= 1;
    std::string swapped = text;
    std::swap(swapped[10], swapped[20]);
    for (const std::string& other : {changed, text + " ", swapped, text.substr(0, 299) + '\0'})
        EXPECT_NE(ContentHash(other), base);
}

// A replaced log stays guarded by the hash of the bytes that went into it, whether the writer
// gathered them first or handed a large piece straight to the file.
TEST(Safety, AWrittenLogIsGuardedByTheHashOfItsBytes) {
    const std::vector<std::vector<size_t>> pieceSizes = {
        {10}, {70000}, {10, 70000}, {65536}, {65535, 1, 65536, 3}, {200000, 5, 70000}};
    for (const std::vector<size_t>& sizes : pieceSizes) {
        TempCourse course;
        course.Write("SessionData/L0909111030.csv", "old log\r\n");
        const std::string path = course.File("SessionData/L0909111030.csv");
        Course read;
        ReadSessionLog(read, path);
        std::string written;
        AtomicFile file(path);
        ASSERT_TRUE(file.Open());
        for (size_t size : sizes) {
            std::string piece;
            for (size_t i = 0; i < size; ++i)
                piece += static_cast<char>('!' + (written.size() + i) * 37 % 90);
            file.Write(piece);
            written += piece;
        }
        ASSERT_TRUE(file.Commit()) << file.Error();
        EXPECT_EQ(test::ReadBytes(path), written);
        const std::optional<ReadSnapshot> kept = RememberedRead(path);
        ASSERT_TRUE(kept.has_value());
        EXPECT_EQ(kept->hash, ContentHash(written)) << "pieces: " << sizes.size();
        EXPECT_EQ(kept->size, static_cast<int64_t>(written.size()));
    }
}

// A writer holding the log open (the polling application during a class) keeps it from being
// replaced; so does one that opens it while the replacement runs (the lease makes it wait).
TEST(Safety, ALogHeldOpenForWritingIsNotReplaced) {
    TempCourse course;
    course.Write("SessionData/L0909111030.csv", "old log\r\n");
    const std::string path = course.File("SessionData/L0909111030.csv");
    RememberRead(path, test::ReadBytes(path));
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    pid_t writer = ::fork();
    if (writer == 0) {
        int fd = ::open(path.c_str(), O_WRONLY | O_APPEND);
        (void)!::write(ready[1], "x", 1);
        ::pause();
        ::_exit(fd >= 0 ? 0 : 1);
    }
    char byte;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    std::string error;
    EXPECT_FALSE(ReplaceFile(path, "new log\r\n", &error));
    EXPECT_TRUE(
        test::Holds(error, path + " is being written by another program; nothing was changed. Try "
                                  "again when polling has ended."));
    EXPECT_TRUE(OpenForWritingElsewhere(path));
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    EXPECT_FALSE(OpenForWritingElsewhere(path));
    EXPECT_TRUE(ReplaceFile(path, "new log\r\n", &error)) << error;
    EXPECT_EQ(test::ReadBytes(path), "new log\r\n");
}

// ---- One editor per course, one change at a time ---------------------------------------------

TEST(Safety, TheCourseLockIsOneHoldersAtATime) {
    TempCourse course;
    CourseLock first, second;
    ASSERT_TRUE(first.Take(course.Path()));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(second.Take(course.Path(), 0.2));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(200));
    EXPECT_TRUE(test::Holds(CourseLockedMessage(course.Path()),
                            "(process " + std::to_string(::getpid()) + ")"));
    first.Release();
    EXPECT_TRUE(second.Take(course.Path()));
    EXPECT_FALSE(first.Take("/nonexistent/course"));
}

// A change cut short is undone file by file: what it replaced comes back, what it made goes, and
// what someone else changed since stays as it stands.
TEST(Safety, AChangeCutShortIsUndoneFileByFile) {
    TempCourse course;
    course.Write("SessionData/RemoteID.csv", "remotes before");
    course.Write("SessionData/L1.csv", "log before");
    course.Write("SessionData/L2.csv", "log before");
    course.Write("SessionData/L3.csv", "untouched");
    {
        // The journal of a run killed after its renames: it is never finished.
        auto* change = new ChangeJournal(course.Path(), "tallory-cli purge");
        ASSERT_TRUE(ReplaceFile(course.File("SessionData/RemoteID.csv"), "remotes after"));
        ASSERT_TRUE(ReplaceFile(course.File("SessionData/L1.csv"), "log after"));
        ASSERT_TRUE(ReplaceFile(course.File("SessionData/L2.csv"), "log after"));
        ASSERT_TRUE(ReplaceFile(course.File("SessionData/New.csv"), "made by the change"));
        // What a killed run leaves: the journal stands, nothing of the process does.
        const std::string journal = JournalFolder(course.Path());
        const std::string kept = course.Path() + "/kept-journal";
        std::filesystem::copy(journal, kept);
        delete change;
        std::filesystem::rename(kept, journal);
    }
    // The polling application appended to one log since.
    course.Write("SessionData/L2.csv", "log after, and a vote");

    const std::string message = UndoInterruptedChange(course.Path());
    EXPECT_EQ(message,
              "A change of the course that was cut short (tallory-cli purge) was undone: 3 files "
              "were put back as before. 1 file was changed since by another program and is left as "
              "it stands.");
    EXPECT_EQ(course.Read("SessionData/RemoteID.csv"), "remotes before");
    EXPECT_EQ(course.Read("SessionData/L1.csv"), "log before");
    EXPECT_EQ(course.Read("SessionData/L2.csv"), "log after, and a vote");
    EXPECT_EQ(course.Read("SessionData/L3.csv"), "untouched");
    EXPECT_FALSE(course.Exists("SessionData/New.csv"));
    EXPECT_FALSE(std::filesystem::exists(JournalFolder(course.Path())));
    EXPECT_EQ(UndoInterruptedChange(course.Path()), "");
}

// ---- Temporary files of killed writes ----------------------------------------------------------

void SetAge(const std::string& path, long seconds) {
    struct timeval times[2];
    ::gettimeofday(&times[0], nullptr);
    times[0].tv_sec -= seconds;
    times[1] = times[0];
    ASSERT_EQ(::utimes(path.c_str(), times), 0);
}

TEST(Safety, StaleTemporariesGoWhenTheCourseIsLoaded) {
    struct Case {
        const char* name;
        long age;  // seconds
        bool folder;
        bool removed;
    } cases[] = {
        {"SessionData/L0909111030.csv.tmp-Ab12Cd", 3600, false, true},
        {"SessionData/Config.csv.tmp-zzzzzz", 3600, false, true},
        {"General.csv.tmp-000000", 3600, false, true},             // an export in the course folder
        {"Reports/Summary.html.tmp-a1B2c3", 3600, false, true},    // a page
        {"SessionData/RemoteID.csv.tmp-Ab12Cd", 0, false, false},  // a write of this run
        {"SessionData/L0909111030.csv.tmp-Ab12", 3600, false, false},
        {"SessionData/L0909111030.csv.tmp-Ab_2Cd", 3600, false, false},
        {"SessionData/notes.tmp", 3600, false, false},
        {"SessionData/Dir.csv.tmp-ABCDEF", 3600, true, false},
        {"Images/L0909111030.csv.tmp-ABCDEF", 3600, false, false},  // not a folder of ours
        {"exam.tmp-draft1", 3600, false, false},  // no file "exam" beside it: the user's own
    };
    for (bool readOnly : {false, true}) {
        SCOPED_TRACE(readOnly ? "read-only load" : "desktop load");
        TempCourse folder;
        for (const Case& c : cases) {
            folder.Write(std::string(c.name) + (c.folder ? "/inside" : ""), "half a file");
            // The file a temporary of ours is named after stands beside it.
            std::string base(c.name);
            base.erase(base.rfind(".tmp"));
            if (base != "exam" && !folder.Exists(base)) folder.Write(base, "whole");
            SetAge(folder.File(c.name), c.age);
        }
        Course course;
        course.AppPath = folder.Path();
        RecordingHost host;
        HeadlessSessionGrid grid(course);
        LoadCourse(course, host, grid.Screen(), readOnly ? ReadOnlyLoad() : CourseLoadOptions());
        for (const Case& c : cases)
            EXPECT_EQ(folder.Exists(c.name), readOnly || !c.removed) << c.name;
    }
}

// ---- Findings of the fuzzers -------------------------------------------------------------------

// Grade books that split into no line at all once quotes or the byte-order mark are gone: the
// reader treats them as it treats any grade book too short to use.
TEST(Safety, GradeBooksOfNothingButMarksReadAsMissing) {
    const std::tuple<const char*, const char*> cases[] = {
        {"BLACKBOARD", "\""},
        {"BLACKBOARD", "\"\"\""},
        {"D2L", "\xEF\xBB\xBF"},
    };
    for (const auto& [cms, text] : cases) {
        SCOPED_TRACE(text);
        TempCourse folder;
        Course course;
        course.AppPath = folder.Path();
        RecordingHost host;
        EXPECT_TRUE(ReadGradeBookText(course, host, cms, text));
        EXPECT_EQ(course.NumRosterIDs, 0);
        EXPECT_EQ(host.messages.size(), 1u);
    }
}

// ---- A full disk -------------------------------------------------------------------------------

// A removal on a full disk cannot write the "x" copy: the writer's message stands, the log keeps
// every vote and nothing claims a copy.
TEST(Safety, ARemovalOnAFullDiskLeavesTheLogAndClaimsNoCopy) {
    TempCourse dataHome, course;
    for (int day = 1; day <= 3; ++day) {
        const std::string n = std::to_string(day);
        course.WriteLog(
            test::SeptemberLog(day),
            {.title = "Day " + n, .voters = {{"#A" + n, "", {"A"}}, {"#B" + n, "", {"B"}}}});
    }
    const std::string before = course.Log(test::SeptemberLog(2));
    const test::CliResult result =
        test::CliProcess({"--course", course.Path(), "remove", "2", "--yes", "--json"},
                         {{"TALLORY_WRITE_FAULT", "write:ENOSPC:SessionData/"},
                          {"XDG_DATA_HOME", dataHome.Path()}})
            .Wait();
    EXPECT_EQ(result.status, 3) << result.out << result.err;
    EXPECT_TRUE(test::Holds(result.err, "the disk is full"));
    for (const char* part : {"Unable to store changes to file ", "Changes not saved!",
                             "\"copy\": null", "\"removed\": false"})
        EXPECT_TRUE(test::Holds(result.out, part));
    EXPECT_EQ(course.Log(test::SeptemberLog(2)), before);
    EXPECT_FALSE(course.Exists("SessionData/x" + test::SeptemberLog(2)));
    for (const auto& entry : std::filesystem::directory_iterator(course.File("SessionData")))
        EXPECT_FALSE(IsTemporaryName(entry.path().filename().string())) << entry.path();
}

}  // namespace
}  // namespace tallory
