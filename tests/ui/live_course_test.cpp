#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include "OpenWindow.h"
#include "QtEnvironment.h"
#include "Widgets.h"
#include "common/AtomicFile.h"
#include "common/Text.h"

namespace tallory {
namespace {

// A clicker nobody registered, with an answer to each of the five questions.
constexpr const char* kNewLine =
    "#1A9999, , 5 ,C , 1 , 8.4 , 1 ,C , 8.4 ,D , 1 , 16 , 1 ,D , 16 ,C , 1 , 39.9 , 1 ,C , "
    "39.9 ,C , 1 , 11.9 , 1 ,C , 11.9 ,E , 1 , 39.3 , 1 ,E , 39.3 ,\r\n";

class LiveCourse : public testing::Test {
  protected:
    // Every message box is answered, so that no test can wait on one for good; the demo course's
    // start has some, a reload must have none.
    void SetUp() override {
        QApplication::processEvents();
        messages_ = 0;
    }

    void AppendLine() {
        std::ofstream(opened_.folder.File("SessionData/L2609101000.csv"),
                      std::ios::app | std::ios::binary)
            << kNewLine;
    }

    // The heading the grid shows for a log; empty when the grid has no such session.
    std::string Title(const std::string& file) {
        for (int s = 1; s <= opened_.course.NumSessions; ++s)
            if (opened_.course.SessionFile[s] == file)
                return Trim(SessionHeading(opened_.course, s));
        return "";
    }

    QString Notice() { return opened_.window->findChild<QLabel*>("lblNotice")->text(); }

    int messages_ = 0;
    test::AcceptingBoxes answer_{[this](QMessageBox&) { ++messages_; }};
    test::CourseWindow opened_{[](const test::TempCourse& f) { f.CopyFrom(test::DemoCourse()); }};
};

TEST_F(LiveCourse, AnAppendedLineReachesTheGridWithANotice) {
    const int students = opened_.course.NumStudents;
    EXPECT_TRUE(Notice().isEmpty());
    AppendLine();
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened_.course.NumStudents == students + 1; }, 5000));
    EXPECT_EQ(Notice(), "Session " + QString::fromStdString(Title("L2609101000.csv")) + " updated");
    EXPECT_EQ(messages_, 0) << "the start's clicker warnings are not shown again";
    EXPECT_EQ(opened_.host.Progress(), nullptr) << "a reload is quiet";
}

TEST_F(LiveCourse, ANewSessionIsShownWhenTheNewestWere) {
    auto lastHeading = [&] {
        const GridView& view = opened_.window->Grid().View();
        return view.lblSession[(kGridColumns - 1) * 7].text;
    };
    const std::string before = lastHeading();
    std::filesystem::copy_file(opened_.folder.File("SessionData/L2610011000.csv"),
                               opened_.folder.File("SessionData/L2610061000.csv"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return lastHeading() != before; }, 5000));
    EXPECT_EQ(lastHeading(), Title("L2610061000.csv"));
    EXPECT_EQ(Notice(), "Session " + QString::fromStdString(Title("L2610061000.csv")) + " updated");

    // Scrolled back to older sessions, the view stays where it is.
    opened_.window->Grid().SessionScrollChanged(0);
    const std::string older = lastHeading();
    std::filesystem::copy_file(opened_.folder.File("SessionData/L2610011000.csv"),
                               opened_.folder.File("SessionData/L2610081000.csv"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Title("L2610081000.csv").empty(); }, 5000));
    EXPECT_EQ(lastHeading(), older);
}

TEST_F(LiveCourse, WaitsWhileAScreenIsOpen) {
    const int students = opened_.course.NumStudents;
    // A screen as the program opens one: modal over the main window.
    QDialog screen(opened_.window.get());
    screen.setWindowModality(Qt::ApplicationModal);
    screen.show();
    ASSERT_EQ(QApplication::activeModalWidget(), &screen);
    AppendLine();
    QTest::qWait(2 * CourseWatch::kQuietMs + 500);
    EXPECT_EQ(opened_.course.NumStudents, students) << "reloaded under an open screen";
    EXPECT_TRUE(Notice().isEmpty());
    screen.close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened_.course.NumStudents == students + 1; }, 5000));
    EXPECT_TRUE(Notice().endsWith(" updated")) << Notice().toStdString();
}

// A log the program saved itself (a Set Scores save) is shown by the screen that saved it: no
// second reload, no notice; a vote the polling application appends afterwards is told again.
TEST_F(LiveCourse, OwnSavesAreNoNews) {
    const std::string log = opened_.folder.File("SessionData/L2609101000.csv");
    ASSERT_TRUE(ReplaceFile(log, test::ReadBytes(log) + kNewLine, nullptr, &opened_.host));
    QTest::qWait(2 * CourseWatch::kQuietMs + 500);
    EXPECT_TRUE(Notice().isEmpty()) << Notice().toStdString();
    AppendLine();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Notice().isEmpty(); }, 5000));
}

// ---- Files the desktop could not save -------------------------------------------------------

// Runs `work` with every message box answered; gives the texts shown, in order.
std::vector<std::string> MessagesOf(const std::function<void()>& work) {
    std::vector<std::string> texts;
    test::AcceptingBoxes answer(
        [&](QMessageBox& box) { texts.push_back(box.text().toStdString()); });
    work();
    return texts;
}

TEST(UnsavedFiles, ACommandTellsItsUnsavedFilesInOneMessageWhenItEnds) {
    test::TempCourse course;
    const char* const files[] = {"SessionData/L2609011000.csv", "SessionData/L2609021000.csv",
                                 "SessionData/RemoteID.csv"};
    for (const char* file : files) course.Write(file, "old");
    QtHost host;
    SetWriteFault(WriteFault{WriteStep::Write, ENOSPC, "SessionData/L2609"});
    int shownDuring = -1;
    const std::vector<std::string> texts = MessagesOf([&] {
        RunGuarded(host, [&] {
            for (const char* file : files) ReplaceFile(course.File(file), "new", nullptr, &host);
            AtomicFile guarded(course.File("SessionData/RemoteID.csv"), &host);
            guarded.Open();
            guarded.Refuse(course.File("SessionData/RemoteID.csv") +
                           " is being written by another program; nothing was changed.");
            QTest::qWait(100);
            shownDuring = static_cast<int>(texts.size());
        });
    });
    SetWriteFault(std::nullopt);
    EXPECT_EQ(shownDuring, 0) << "told only once the command has ended";
    ASSERT_EQ(texts.size(), 1u);
    const std::string& text = texts[0];
    EXPECT_TRUE(test::BeginsWith(text, "3 files were not saved; each stands as it was before."));
    for (const char* log : {"SessionData/L2609011000.csv", "SessionData/L2609021000.csv"})
        EXPECT_TRUE(test::Holds(text, "cannot write " + course.File(log) + ": the disk is full"));
    EXPECT_TRUE(test::Holds(text, "is being written by another program"));
    EXPECT_EQ(course.Read("SessionData/L2609011000.csv"), "old");
    EXPECT_EQ(course.Read("SessionData/RemoteID.csv"), "new");
}

// The start stamps the program's version into Config.csv; on a read-only disk the window says
// that it could not.
TEST(UnsavedFiles, TheStartSaysWhenTheSettingsCannotBeSaved) {
    test::TempCourse demo;
    demo.CopyFrom(test::DemoCourse());
    const std::string config =
        "\"CourseName\" ,\"Physics\" ,\"\"\r\n"
        "\"tallory.exe.major\" ,\"0\" ,\"\"\r\n";
    demo.Write("SessionData/Config.csv", config);
    SetWriteFault(WriteFault{WriteStep::Open, EROFS, "Config.csv"});
    const std::vector<std::string> texts =
        MessagesOf([&] { test::OpenWindow opened(demo.Path()); });
    SetWriteFault(std::nullopt);
    const std::string expected =
        "A file was not saved; it stands as it was before.\n\ncannot create a file beside " +
        demo.File("SessionData/Config.csv") + ": the disk is read-only";
    EXPECT_EQ(std::count(texts.begin(), texts.end(), expected), 1);
    EXPECT_EQ(demo.Read("SessionData/Config.csv"), config);
}

}  // namespace
}  // namespace tallory
