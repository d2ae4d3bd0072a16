#include "ui/SessionDialogs.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QString>
#include <QVBoxLayout>

#include "common/Course.h"

namespace tallory {

namespace {

void ShowSessionTitle(QWidget* parent, const Course& course, int session, const char* caption) {
    QDialog dialog(parent);
    dialog.setWindowTitle(QString::fromLatin1(caption));
    auto* layout = new QVBoxLayout(&dialog);
    const std::string& title = session >= 0 && session <= kSessionTableUpper
                                   ? course.SessionTitle[session]
                                   : std::string();
    layout->addWidget(new QLabel(QString::fromStdString(title), &dialog));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    dialog.exec();
}

}  // namespace

void OpenSetScores(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int session,
                   bool largeFonts) {
    (void)host;
    (void)grid;
    (void)largeFonts;
    ShowSessionTitle(parent, course, session, "Tallory - Set Scores");
}

void OpenEditSession(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, int session) {
    (void)host;
    (void)grid;
    ShowSessionTitle(parent, course, session, "Edit Session");
}

}  // namespace tallory
