#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <memory>

#include "../TestSupport.h"
#include "QtEnvironment.h"
#include "ui/MainWindow.h"
#include "ui/QtHost.h"

namespace tallory {
namespace {

// A clicker nobody registered, with an answer to each of the five questions.
constexpr const char* kNewLine =
    "#1A9999, , 5 ,C , 1 , 8.4 , 1 ,C , 8.4 ,D , 1 , 16 , 1 ,D , 16 ,C , 1 , 39.9 , 1 ,C , "
    "39.9 ,C , 1 , 11.9 , 1 ,C , 11.9 ,E , 1 , 39.3 , 1 ,E , 39.3 ,\r\n";

class LiveCourse : public testing::Test {
  protected:
    void SetUp() override {
        demo_.CopyFrom(std::string(TALLORY_SOURCE_DIR) + "/examples/demo-course");
        course_.AppPath = demo_.Path();
        course_.ProgramFolder = demo_.Path();
        window_ = std::make_unique<MainWindow>(course_, host_, false);
        window_->show();
        // The demo course's start has messages to answer.
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->accept();
        });
        answer.start(20);
        window_->Load();
        answer.stop();
        QApplication::processEvents();
    }

    void AppendLine() {
        std::ofstream(demo_.File("SessionData/L2609101000.csv"), std::ios::app | std::ios::binary)
            << kNewLine;
    }

    QString Notice() { return window_->findChild<QLabel*>("lblNotice")->text(); }

    test::TempCourse demo_;
    Course course_;
    QtHost host_;
    std::unique_ptr<MainWindow> window_;
};

TEST_F(LiveCourse, AnAppendedLineReachesTheGridWithANotice) {
    const int students = course_.NumStudents;
    EXPECT_TRUE(Notice().isEmpty());
    AppendLine();
    EXPECT_TRUE(QTest::qWaitFor([&] { return course_.NumStudents == students + 1; }, 5000));
    EXPECT_TRUE(Notice().startsWith("Session ")) << Notice().toStdString();
    EXPECT_TRUE(Notice().endsWith(" updated")) << Notice().toStdString();
    EXPECT_FALSE(Notice().contains(".csv")) << "the session's label, not its file";
}

TEST_F(LiveCourse, WaitsWhileAScreenIsOpen) {
    const int students = course_.NumStudents;
    QMessageBox box(QMessageBox::Information, "Tallory", "open", QMessageBox::Ok, window_.get());
    int seenWhileOpen = -1;
    QTimer::singleShot(0, [&] {
        AppendLine();
        QTest::qWait(1500);
        seenWhileOpen = course_.NumStudents;
        box.accept();
    });
    box.exec();
    EXPECT_EQ(seenWhileOpen, students);
    EXPECT_TRUE(QTest::qWaitFor([&] { return course_.NumStudents == students + 1; }, 5000));
}

TEST_F(LiveCourse, ARemovedLogIsNoticed) {
    const int sessions = course_.NumSessions;
    std::remove(demo_.File("SessionData/L2609101000.csv").c_str());
    EXPECT_TRUE(QTest::qWaitFor([&] { return course_.NumSessions == sessions - 1; }, 5000));
    EXPECT_TRUE(Notice().endsWith(" removed")) << Notice().toStdString();
}

}  // namespace
}  // namespace tallory
