#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "scoring/ScreenParts.h"
#include "scoring/SessionStore.h"

namespace tallory {

// frmEditStudent, opened by a click on a name in the grid: who the student is, the clickers
// registered to the student, adding and removing one, deleting a stray clicker's votes. A row
// that stands for a remote nobody registered gets the same screen with the remote in front.
class EditStudentScreen {
  public:
    // Sets the screen's fields from row `row` of Students, as the main window does before it
    // shows the screen. `screen` is the main window, for the pass over the logs.
    EditStudentScreen(Course& course, Host& host, MainScreen& screen, int row);

    // Called whenever the screen hides itself in the middle of a handler.
    std::function<void()> onChanged;

    // The screen becomes active: fills the controls for the student or the remote.
    void Activate();
    // A row of cmbClickList was chosen (-1: none).
    void cmbClickListClick(int index);
    void TxtNewClickerIdChange(std::string_view text);
    // The keys TxtNewClickerId takes: those of a remote ID.
    static bool TxtNewClickerIdKey(int key);
    void CmdAddClick();
    void cmdSaveClick();
    void cmdRemoveClick();
    void cmdCancelClick() { closed_ = true; }
    // A new clicker typed but not added: closing would drop it.
    bool HasUnsavedEdits() const;

    // The fields set by the main window.
    const ControlState& lbliStudent() const { return lbliStudent_; }
    const ControlState& txtStudentId() const { return txtStudentId_; }
    const ControlState& txtClickerId() const { return txtClickerId_; }
    const ControlState& lblClickerID() const { return lblClickerID_; }
    // The controls.
    const ControlState& lblStudentID() const { return lblStudentID_; }
    const ControlState& lblLastName() const { return lblLastName_; }
    const ControlState& Label4() const { return label4_; }
    const ControlState& cmbClickList() const { return cmbClickList_; }
    const std::vector<std::string>& ClickList() const { return clickList_; }
    const ControlState& TxtNewClickerId() const { return txtNewClickerId_; }
    const ControlState& CmdAdd() const { return cmdAdd_; }
    const ControlState& cmdSave() const { return cmdSave_; }
    const ControlState& cmdRemove() const { return cmdRemove_; }
    const ControlState& cmdCancel() const { return cmdCancel_; }
    const ControlState& Form() const { return form_; }
    // A refused new clicker: the focus belongs back in TxtNewClickerId.
    bool FocusNewClicker() const { return focusNewClicker_; }
    bool Closed() const { return closed_; }

    static constexpr std::string_view kCaption = "Edit Student";

  private:
    void Hide();
    std::string RemoteIdPath() const;

    Course& course_;
    Host& host_;
    MainScreen& screen_;
    ControlState lbliStudent_;
    ControlState txtStudentId_;
    ControlState txtClickerId_;
    ControlState lblClickerID_;
    ControlState lblStudentID_;
    ControlState lblLastName_;
    ControlState label4_{"Registered Clickers"};
    ControlState cmbClickList_;
    std::vector<std::string> clickList_;
    ControlState txtNewClickerId_;
    ControlState cmdAdd_{"Add New Clicker"};
    ControlState cmdSave_{"Remove Clicker"};
    ControlState cmdRemove_{"Delete Clicker Logs"};
    ControlState cmdCancel_{"Cancel"};
    ControlState form_{std::string(kCaption)};
    bool focusNewClicker_ = false;
    bool closed_ = false;
};

}  // namespace tallory
