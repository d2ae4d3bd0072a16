// Every text whole and every window on the screen, from 640 x 480 to 3840 x 2160, at 96, 120 and
// 192 pixels per inch. A screen is fixed when the application starts, so each screen runs in a
// process of its own: the test of a screen starts this program again on a virtual screen of that
// size, which opens the demo course and its windows and measures them.

#include <unistd.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTextDocument>
#include <cstdio>
#include <cstdlib>

#include "OpenWindow.h"
#include "Widgets.h"
#include "start/ProgramStart.h"
#include "ui/ScreenFit.h"

namespace tallory {
namespace {

using namespace test;

constexpr const char* kScreenVariable = "TALLORY_TEST_SCREEN";

// The application, on the virtual screen this process was started for, if any.
class ScreenEnvironment : public testing::Environment {
  public:
    void SetUp() override {
        if (const char* screen = std::getenv(kScreenVariable)) {
            int width = 0, height = 0, dpi = 0;
            if (std::sscanf(screen, "%dx%d@%d", &width, &height, &dpi) != 3) std::abort();
            // The virtual screen's pixels per inch scale the whole program, as a desktop's font
            // resolution does; its frames are those of a plain window system.
            const QString config = QString("%1/tallory-screen-%2.json")
                                       .arg(QDir::tempPath())
                                       .arg(QCoreApplication::applicationPid());
            QFile file(config);
            if (!file.open(QIODevice::WriteOnly)) std::abort();
            file.write(QString(R"({"screens": [{"name": "test", "x": 0, "y": 0, "width": %1,
                "height": %2, "logicalDpi": %3, "logicalBaseDpi": 96, "dpr": 1}],
                "windowFrameMargins": true})")
                           .arg(width)
                           .arg(height)
                           .arg(dpi)
                           .toUtf8());
            file.close();
            qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + config).toUtf8());
            app_ = std::make_unique<QApplication>(argc_, argv_);
            QFile::remove(config);
            InstallScreenFit();
        }
    }
    void TearDown() override { app_.reset(); }

  private:
    int argc_ = 1;
    char name_[13] = "tallory-test";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> app_;
};

[[maybe_unused]] testing::Environment* const kEnvironment =
    testing::AddGlobalTestEnvironment(new ScreenEnvironment);

// --- The measures -------------------------------------------------------------------------------

bool CutWithTip(const QWidget* widget, const QString& text) {
    return text.endsWith(QChar(0x2026)) && !widget->toolTip().isEmpty();
}

bool InsideScrollArea(const QWidget* widget) {
    for (const QWidget* up = widget->parentWidget(); up; up = up->parentWidget())
        if (qobject_cast<const QAbstractScrollArea*>(up)) return true;
    return false;
}

// What is wrong with how `widget` shows its text, or nothing.
std::string Clipped(const QWidget* widget) {
    const QWidget* window = widget->window();
    const QRect inWindow(widget->mapTo(window, QPoint(0, 0)), widget->size());
    if (!InsideScrollArea(widget) && !window->rect().contains(inWindow))
        return "lies partly outside its window";
    if (auto* label = qobject_cast<const QLabel*>(widget)) {
        QString text = label->text();
        if (text.trimmed().isEmpty() || CutWithTip(label, text)) return {};
        if (Qt::mightBeRichText(text)) {
            QTextDocument document;
            document.setHtml(text);
            text = document.toPlainText();
        }
        const QFontMetrics metrics(label->font());
        const QRect room = label->contentsRect().marginsRemoved(
            QMargins(label->margin(), label->margin(), label->margin(), label->margin()));
        if (label->wordWrap()) {
            for (const QString& word : text.split(QRegularExpression("\\s+"), Qt::SkipEmptyParts))
                if (metrics.horizontalAdvance(word) > room.width())
                    return "word '" + word.toStdString() + "' wider than the label";
            if (label->heightForWidth(label->width()) > label->height() + 2)
                return "wrapped text taller than the label";
            return {};
        }
        const QStringList lines = text.split('\n');
        for (const QString& line : lines)
            if (metrics.horizontalAdvance(line) > room.width())
                return "text " + std::to_string(metrics.horizontalAdvance(line)) + " wide in " +
                       std::to_string(room.width());
        if (metrics.height() * lines.size() > room.height() + 2)
            return "text " + std::to_string(metrics.height() * lines.size()) + " high in " +
                   std::to_string(room.height());
        return {};
    }
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        if (button->text().isEmpty() || CutWithTip(button, button->text())) return {};
        // The caption has the width the style leaves beside its frame, box or circle.
        QStyleOptionButton option;
        option.initFrom(button);
        QStyle::ContentsType type = QStyle::CT_PushButton;
        if (qobject_cast<const QCheckBox*>(button)) type = QStyle::CT_CheckBox;
        if (qobject_cast<const QRadioButton*>(button)) type = QStyle::CT_RadioButton;
        const int room =
            button->width() -
            button->style()->sizeFromContents(type, &option, QSize(0, 0), button).width();
        const int need = button->fontMetrics().horizontalAdvance(button->text().remove('&'));
        if (need > room)
            return "caption " + std::to_string(need) + " wide in " + std::to_string(room);
    }
    return {};
}

// Every text of `window` whole, and the window with its frame on the free part of the screen.
void ExpectReadable(QWidget& window) {
    const std::string name = window.objectName().toStdString();
    QRect free = window.screen()->availableGeometry();
    // At a scale such as 1.25 a window that fills the screen rounds to one pixel more.
    const double scale = window.devicePixelRatioF();
    if (scale != static_cast<int>(scale)) free.adjust(-1, -1, 1, 1);
    EXPECT_TRUE(free.contains(window.frameGeometry()))
        << name << " at " << window.frameGeometry().x() << "," << window.frameGeometry().y() << " "
        << window.frameGeometry().width() << "x" << window.frameGeometry().height()
        << " outside the free area " << free.width() << "x" << free.height();
    int measured = 0;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != &window) continue;
        if (!qobject_cast<QLabel*>(widget) && !qobject_cast<QAbstractButton*>(widget)) continue;
        ++measured;
        EXPECT_EQ(Clipped(widget), "") << name << ": " << widget->metaObject()->className() << " "
                                       << widget->objectName().toStdString() << " '"
                                       << widget->property("text").toString().toStdString() << "'";
    }
    EXPECT_GT(measured, 0) << name;
}

// A dialog shows its type as the main window does where the window's is larger than designed:
// never larger than the window's, larger than its own where the window's is, and for a `small`
// dialog, which fits any screen at that size, just as large.
void ExpectTypeLikeTheWindow(const QDialog& dialog, const MainWindow& window, bool small) {
    const double wanted = std::max(1.0, window.TypeRatio());
    const double shown = dialog.font().pointSizeF() / QApplication::font().pointSizeF();
    const std::string name = dialog.objectName().toStdString();
    EXPECT_LE(shown, wanted * 1.02) << name;
    if (wanted > 1.05) {
        EXPECT_GT(shown, 1.0) << name << " kept its type while the window's grew";
        EXPECT_TRUE(!small || std::abs(shown - wanted) <= wanted * 0.02)
            << name << " at " << shown << ", the window's at " << wanted;
    }
    std::printf("%s: type at %.2f, the window's at %.2f\n", name.c_str(), shown, wanted);
}

// Opens the dialog that `open` starts, measures it, and closes it.
void ExpectReadableDialog(const QString& name, const std::function<void()>& open,
                          const std::function<void(QDialog&)>& also = nullptr) {
    Opening opening(name, [&also](QDialog& dialog) {
        QApplication::processEvents();
        ExpectReadable(dialog);
        if (also) also(dialog);
        dialog.reject();
    });
    open();
}

// The main window's layout as the program picks it for this screen.
bool LargeFonts() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double ratio = screen->devicePixelRatio();
    const QSize pixels = screen->size() * ratio;
    return ChooseLayout(pixels.width(), pixels.height(), screen->logicalDotsPerInch() * ratio) ==
           MainLayout::Large120Dpi;
}

// --- On one screen (started by the tests below) --------------------------------------------------

class OnScreen : public testing::Test {
  protected:
    void SetUp() override {
        if (!std::getenv(kScreenVariable)) GTEST_SKIP() << "run for each screen by ScreenSizes";
        demo_.CopyFrom(DemoCourse());
        course_.AppPath = course_.ProgramFolder = demo_.Path();
        window_ = std::make_unique<MainWindow>(course_, host_, LargeFonts());
        window_->ShowOnScreen();
        // The demo course's start has messages to answer; they are measured too.
        {
            AcceptingBoxes answer([](QMessageBox& box) { ExpectReadable(box); });
            window_->Load();
        }
        QApplication::processEvents();
    }

    TempCourse demo_;
    Course course_;
    QtHost host_;
    std::unique_ptr<MainWindow> window_;
};

TEST_F(OnScreen, MainWindowAsPlacedAndMaximised) {
    ExpectReadable(*window_);
    // The help panel over the grid.
    Find<QPushButton>(*window_, "cmdHelp")->click();
    EXPECT_TRUE(Find(*window_, "LblHelpCaption0")->isVisible());
    ExpectReadable(*window_);
    Find<QPushButton>(*window_, "cmdHelp")->click();
    window_->showMaximized();
    QApplication::processEvents();
    ExpectReadable(*window_);
    // Wider than high and higher than wide: the type follows the tighter of the two.
    window_->showNormal();
    const QSize free = RoomFor(window_.get());
    for (const QSize shape :
         {QSize(free.width(), free.height() * 3 / 4), QSize(free.width() * 3 / 4, free.height())}) {
        window_->setGeometry(
            QRect(AvailableArea(window_.get()).topLeft(), shape)
                .translated(FrameMargins(window_.get()).left(), FrameMargins(window_.get()).top()));
        QApplication::processEvents();
        ExpectReadable(*window_);
    }
}

TEST_F(OnScreen, Dialogs) {
    MainWindow& window = *window_;
    auto type = [&](QDialog& dialog) { ExpectTypeLikeTheWindow(dialog, window, false); };
    auto small = [&](QDialog& dialog) { ExpectTypeLikeTheWindow(dialog, window, true); };
    const QString setScores = LargeFonts() ? "frmSetScr_120DPI" : "frmSetSessionScoring";
    ExpectReadableDialog(
        setScores, [&] { Find<QPushButton>(window, "cmdEdit3")->click(); },
        [&](QDialog& dialog) {
            type(dialog);
            // Captions are the screen's own, not the figures beside them.
            QStringList captions;
            for (QLabel* label : dialog.findChildren<QLabel*>())
                if (label->isVisible()) captions << label->text();
            EXPECT_TRUE(captions.contains("Points Awarded :"));
            // The help panel over the form.
            Find<QPushButton>(dialog, "cmdHelp")->click();
            QApplication::processEvents();
            EXPECT_TRUE(Find(dialog, "LblHelpCaption0")->isVisible());
            ExpectReadable(dialog);
        });
    ExpectReadableDialog(
        "frmEditSession", [&] { Click(Find(window, "lblSession0")); }, small);
    ExpectReadableDialog(
        "frmEditStudent", [&] { Click(Find(window, "lblStudentName1")); }, small);
    ExpectReadableDialog(
        "frmGhostRemote", [&] { Find<QPushButton>(window, "CmdViewAll")->click(); }, type);
    ExpectReadableDialog(
        "frmWebUpdateSummary", [&] { Find<QPushButton>(window, "CmdWebUpdate")->click(); }, small);
    MessageBoxes box({[&](QMessageBox& shown) {
        ExpectReadable(shown);
        ExpectTypeLikeTheWindow(shown, window, false);
        shown.reject();
    }});
    std::string text;
    for (int line = 1; line <= 30; ++line)
        text += "Clicker " + std::to_string(line) + " answered for more than one student.\r\n";
    host_.Message(text, "Tallory", Icon::Exclamation);
    EXPECT_EQ(box.shown.size(), 1u);
}

// --- Each screen -------------------------------------------------------------------------------

// Each screen as its width x height @ pixels per inch.
class ScreenSizes : public testing::TestWithParam<const char*> {};

TEST_P(ScreenSizes, EveryTextWholeEveryWindowOnScreen) {
    if (std::getenv(kScreenVariable)) GTEST_SKIP() << "inside one screen's run";
    std::array<char, 4096> self{};
    ASSERT_GT(::readlink("/proc/self/exe", self.data(), self.size() - 1), 0);
    const std::string command = std::string(kScreenVariable) + "=" + GetParam() + " '" +
                                self.data() + "' --gtest_filter='OnScreen.*' 2>&1";
    FILE* run = ::popen(command.c_str(), "r");
    ASSERT_NE(run, nullptr);
    std::string output;
    std::array<char, 4096> chunk{};
    while (size_t read = std::fread(chunk.data(), 1, chunk.size(), run))
        output.append(chunk.data(), read);
    EXPECT_EQ(::pclose(run), 0) << output;
}

INSTANTIATE_TEST_SUITE_P(, ScreenSizes,
                         testing::Values("640x480@96", "770x720@96", "640x480@120", "1024x768@96",
                                         "1024x768@120", "1024x768@192", "1920x1080@96",
                                         "1920x1080@120", "1920x1080@192", "3840x2160@96",
                                         "3840x2160@192"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             return name.replace(name.find('@'), 1, "_") + "dpi";
                         });

}  // namespace
}  // namespace tallory
