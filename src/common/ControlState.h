#pragma once

#include <cstddef>
#include <string>

namespace tallory {

// What a widget shows and whether it takes input. Screen logic keeps one per control; the window
// paints from them through one binding and never keeps state of its own.
struct ControlState {
    std::string text;  // text of a box, caption of a label or button, path of a picture
    bool visible = true;
    bool enabled = true;
    bool checked = false;  // tick boxes and option buttons
    int index = -1;        // drop-down lists: the selected row, -1 for none
    // Text boxes: the selection a handler asks for (start and length, in bytes).
    size_t selectionStart = 0;
    size_t selectionLength = 0;

    void SelectAll() {
        selectionStart = 0;
        selectionLength = text.size();
    }
};

// A scroll bar as screen logic keeps it: its range, position and steps, and whether it shows and
// takes input.
struct ScrollBar {
    int minimum = 0;
    int maximum = 0;
    int value = 0;
    int smallChange = 1;
    int largeChange = 1;
    bool visible = true;
    bool enabled = true;
};

}  // namespace tallory
