#pragma once

#include <QDialog>

#include "ui/ControlBinding.h"
#include "web/WebSyncScreen.h"

class QLabel;
class QLayout;
class QListWidget;
class QPushButton;

namespace tallory {

class Host;
class ScoreGrid;

// frmWebSync: paints WebSyncScreen and hands it every click. The walk runs inside a click; the
// screen asks for a repaint at each change, and the host lets the dialog's events run meanwhile.
class WebSyncDialog : public QDialog {
    Q_OBJECT
  public:
    WebSyncDialog(WebSyncScreen& screen, Host& host, QWidget* parent = nullptr);
    ~WebSyncDialog() override;

  public slots:
    // The close box and Escape act as wCancel.
    void reject() override;

  private:
    // The window, one part at a time: the web and roster lists side by side, the buttons; what they
    // do.
    QLayout* BuildLists();
    QLayout* BuildCommands();
    void ConnectCommands();
    void Run(void (WebSyncScreen::*handler)());
    void BindControls();

    WebSyncScreen& screen_;
    Host& host_;
    ControlBinding binding_;
    QLabel* wNote_ = nullptr;
    QLabel* wWhich_ = nullptr;
    QLabel* wWebListLabel_ = nullptr;
    QLabel* wListLabel_ = nullptr;
    QListWidget* wWebList_ = nullptr;
    QListWidget* wList_ = nullptr;
    QPushButton* wAccept_ = nullptr;
    QPushButton* wIgnore_ = nullptr;
    QPushButton* wSync_ = nullptr;
    QPushButton* wCancel_ = nullptr;
};

// lblSyncWebRegn: the sibling tool's question, the WebSync dialog, and on its close the rewrite of
// RemoteID.csv and the reload of the grid.
void OpenWebSync(QWidget* parent, Course& course, Host& host, ScoreGrid& grid, UrlFetcher& fetcher);

}  // namespace tallory
