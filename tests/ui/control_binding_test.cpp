#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QScrollBar>
#include <string>
#include <vector>

#include "QtEnvironment.h"
#include "ui/ControlBinding.h"

namespace tallory {
namespace {

// A list whose screen keeps its rows: what shows after each change of the rows and selection,
// and whether showing it ever looked like a choice by the user.
TEST(ControlBinding, ListsFollowTheRowsTheScreenKeeps) {
    QWidget window;
    auto* combo = new QComboBox(&window);
    auto* list = new QListWidget(&window);
    ControlState comboState, listState;
    std::vector<std::string> rows;
    ControlBinding binding;
    binding.Bind(combo, comboState, rows);
    binding.Bind(list, listState, rows);
    int emitted = 0;
    QObject::connect(combo, &QComboBox::currentIndexChanged, [&] { ++emitted; });
    QObject::connect(list, &QListWidget::currentRowChanged, [&] { ++emitted; });

    // The rows and the chosen one.
    const std::pair<std::vector<std::string>, int> steps[] = {
        {{"1A2D6E", "777"}, 0},
        {{"1A2D6E", "888"}, 1},  // same count, another row: shown all the same
        {{"1A2D6E"}, -1},
        {{}, -1},
        {{"Chen Wei (1003)", "Chen Lin (1004)", "Dubois Camille (1005)"}, 2},
    };
    for (const auto& [stepRows, index] : steps) {
        rows = stepRows;
        comboState.index = listState.index = index;
        binding.Paint();
        QStringList shownCombo, shownList, wanted;
        for (int i = 0; i < combo->count(); ++i) shownCombo << combo->itemText(i);
        for (int i = 0; i < list->count(); ++i) shownList << list->item(i)->text();
        for (const std::string& row : rows) wanted << QString::fromStdString(row);
        EXPECT_EQ(std::tuple(shownCombo, shownList, combo->currentIndex(), list->currentRow()),
                  std::tuple(wanted, wanted, index, index));
    }
    EXPECT_EQ(emitted, 0);

    // Rows that read the same are not put in again: the list keeps its items.
    QListWidgetItem* first = list->item(0);
    listState.index = 0;
    binding.Paint();
    EXPECT_EQ(list->item(0), first);
    EXPECT_EQ(list->currentRow(), 0);
}

TEST(ControlBinding, TicksAndScrollBarsPaintWithoutSignals) {
    QWidget window;
    auto* tick = new QCheckBox(&window);
    auto* bar = new QScrollBar(&window);
    ControlState tickState;
    ScrollBar scroll;
    ControlBinding binding;
    binding.Bind(tick, tickState);
    binding.Bind(bar, scroll);
    int emitted = 0;
    QObject::connect(tick, &QCheckBox::toggled, [&] { ++emitted; });
    QObject::connect(bar, &QScrollBar::valueChanged, [&] { ++emitted; });

    tickState.checked = true;
    tickState.enabled = false;
    scroll = {.minimum = 0, .maximum = 12, .value = 9, .largeChange = 9, .enabled = true};
    binding.Paint();
    EXPECT_EQ(std::tuple(tick->isChecked(), tick->isEnabled()), std::tuple(true, false));
    EXPECT_EQ(std::tuple(bar->maximum(), bar->value(), bar->pageStep(), bar->isEnabled()),
              std::tuple(12, 9, 9, true));

    // A list that fits: the bar is inactive, and a maximum under the minimum gives an empty range.
    scroll = {.minimum = 0, .maximum = -3, .value = 0, .largeChange = 9, .enabled = false};
    binding.Paint();
    EXPECT_EQ(std::tuple(bar->maximum(), bar->value(), bar->isEnabled()), std::tuple(0, 0, false));
    EXPECT_EQ(emitted, 0);
}

}  // namespace
}  // namespace tallory
