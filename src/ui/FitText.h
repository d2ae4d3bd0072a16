#pragma once

#include <QSize>
#include <vector>

class QWidget;

namespace tallory {

// Type that follows the room it is given. A window keeps its designed point sizes here and shows
// them all at one ratio; a text that would still run past its cell shrinks on its own, and past a
// floor it is cut short with "..." and its whole text goes into the tip.

// Sets a widget's own size of type (bold when asked), which a window's scale then grows or shrinks
// with the rest; a size set in a style sheet would hold against every scale.
void SetTypeSize(QWidget* widget, double points, bool bold = false);

// The widgets of a window whose type grows and shrinks together.
class FontScale {
  public:
    // Takes the widget's font at `points` (bold when asked) as its size at ratio 1.
    void Add(QWidget* widget, double points, bool bold = false);
    // Every widget of `root`, `root` too, at the size its font has now.
    void AddTree(QWidget* root);
    // Every widget at its designed size times `ratio`.
    void Apply(double ratio);
    double Ratio() const { return ratio_; }
    bool Empty() const { return entries_.empty(); }

  private:
    struct Entry {
        QWidget* widget;
        double points;
    };
    std::vector<Entry> entries_;
    double ratio_ = 1;
};

// The largest ratio from `wanted` down to `floor` at which the layout of `window` needs no more
// than `room`; that ratio is applied and returned. A few rounds suffice: the room a layout asks
// for grows nearly in step with its type.
double FitLayout(QWidget* window, FontScale& fonts, QSize room, double wanted, double floor);

// The width and height a label's or a button's text needs, and the room its widget gives it.
QSize TextNeed(const QWidget* widget);
QSize TextRoom(const QWidget* widget);

// Labels that show one kind of figure (a row of headings, a column of averages): all at `points`,
// or, where one of them would not fit its cell, all at the size that lets every one fit, down to
// `floor` times `points`. A text too long even then is cut short with its whole text in its tip.
void FitCells(const std::vector<QWidget*>& cells, double points, double floor = 0.55);

}  // namespace tallory
