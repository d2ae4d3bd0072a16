#include "ui/FitText.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFontMetrics>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QVariant>
#include <algorithm>
#include <cmath>

namespace tallory {

namespace {

// The property that holds a cut-short text's whole text, and the cut text itself.
constexpr const char* kWholeText = "fitWholeText";
constexpr const char* kCutText = "fitCutText";

void SetPoints(QWidget* widget, double points) {
    QFont font = widget->font();
    if (std::abs(font.pointSizeF() - points) < 0.01) return;
    font.setPointSizeF(points);
    widget->setFont(font);
}

QString TextOf(const QWidget* widget) {
    if (auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        QString text = button->text();
        // The mnemonic's marker is not drawn.
        return text.replace("&&", "\x01").remove('&').replace('\x01', '&');
    }
    return {};
}

void SetTextOf(QWidget* widget, const QString& text) {
    if (auto* label = qobject_cast<QLabel*>(widget)) label->setText(text);
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) button->setText(text);
}

// Puts back the whole text of a cell that was cut short, unless its owner has shown another
// text since.
void Uncut(QWidget* widget) {
    const QVariant cut = widget->property(kCutText);
    if (!cut.isValid()) return;
    const QString whole = widget->property(kWholeText).toString();
    if (TextOf(widget) == cut.toString()) SetTextOf(widget, whole);
    if (widget->toolTip() == whole) widget->setToolTip(QString());
    widget->setProperty(kCutText, QVariant());
    widget->setProperty(kWholeText, QVariant());
}

void Cut(QWidget* widget) {
    const QString whole = TextOf(widget);
    const QFontMetrics metrics(widget->font());
    const QString cut = metrics.elidedText(whole, Qt::ElideRight, TextRoom(widget).width());
    if (cut == whole) return;
    SetTextOf(widget, cut);
    widget->setProperty(kWholeText, whole);
    widget->setProperty(kCutText, cut);
    widget->setToolTip(whole);
}

QSize NeedAt(const QWidget* widget, const QFont& font) {
    const QFontMetrics metrics(font);
    const QStringList lines = TextOf(widget).split('\n');
    int width = 0;
    for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
    return {width, metrics.height() * static_cast<int>(lines.size())};
}

// What the style puts around an empty caption: the part of a button its caption cannot use.
QSize ButtonChrome(const QAbstractButton* button) {
    QStyleOptionButton option;
    option.initFrom(button);
    option.icon = button->icon();
    option.iconSize = option.icon.isNull() ? QSize() : button->iconSize();
    QStyle::ContentsType type = QStyle::CT_PushButton;
    if (qobject_cast<const QCheckBox*>(button)) type = QStyle::CT_CheckBox;
    if (qobject_cast<const QRadioButton*>(button)) type = QStyle::CT_RadioButton;
    return button->style()->sizeFromContents(type, &option, QSize(0, 0), button);
}

// A push button asks for at least a width of its own that styles give every caption, however
// short; with small type it is content with the room its caption needs.
void AskForCaptionOnly(QPushButton* button) {
    if (button->text().isEmpty()) return;
    button->setMinimumWidth(0);
    button->setMinimumWidth(std::min(button->sizeHint().width(),
                                     TextNeed(button).width() + ButtonChrome(button).width()));
}

bool Fits(const QWidget* widget) {
    const QSize need = TextNeed(widget);
    const QSize room = TextRoom(widget);
    return need.width() <= room.width() && need.height() <= room.height();
}

// Forgets the sizes every layout of the tree has worked out, which a change of type makes stale:
// a widget's own layout learns of it, the layouts nested in it not until they are next laid out.
void Forget(QLayoutItem* item) {
    item->invalidate();
    QLayout* layout = item->layout();
    if (!layout && item->widget()) layout = item->widget()->layout();
    if (layout)
        for (int i = 0; i < layout->count(); ++i) Forget(layout->itemAt(i));
}

}  // namespace

void SetTypeSize(QWidget* widget, double points, bool bold) {
    QFont font = widget->font();
    font.setBold(bold);
    font.setPointSizeF(points);
    widget->setFont(font);
}

void FontScale::Add(QWidget* widget, double points, bool bold) {
    QFont font = widget->font();
    font.setBold(bold);
    font.setPointSizeF(points * ratio_);
    widget->setFont(font);
    entries_.push_back({widget, points});
}

void FontScale::AddTree(QWidget* root) {
    entries_.push_back({root, root->font().pointSizeF() / ratio_});
    for (QWidget* child : root->findChildren<QWidget*>())
        entries_.push_back({child, child->font().pointSizeF() / ratio_});
}

void FontScale::Apply(double ratio) {
    ratio_ = ratio;
    for (const Entry& entry : entries_) {
        SetPoints(entry.widget, entry.points * ratio);
        if (auto* button = qobject_cast<QPushButton*>(entry.widget)) AskForCaptionOnly(button);
    }
}

double FitLayout(QWidget* window, FontScale& fonts, QSize room, double wanted, double floor) {
    double ratio = std::max(wanted, floor);
    fonts.Apply(ratio);
    QLayout* layout = window->layout();
    if (!layout) return ratio;
    for (int round = 0; round < 6; ++round) {
        Forget(layout);
        QSize need = layout->totalMinimumSize();
        if (layout->hasHeightForWidth())
            need.setHeight(std::max(need.height(),
                                    layout->totalHeightForWidth(std::min(
                                        room.width(), std::max(need.width(), window->width())))));
        if (need.width() <= room.width() && need.height() <= room.height()) break;
        // Margins and spacing do not shrink with the type, so each round undershoots a little.
        const double shrink = std::min(1.0 * room.width() / std::max(need.width(), 1),
                                       1.0 * room.height() / std::max(need.height(), 1));
        const double next = std::max(floor, ratio * std::min(shrink, 0.97));
        if (next >= ratio) break;
        ratio = next;
        fonts.Apply(ratio);
    }
    return ratio;
}

QSize TextNeed(const QWidget* widget) {
    return NeedAt(widget, widget->font());
}

QSize TextRoom(const QWidget* widget) {
    if (auto* label = qobject_cast<const QLabel*>(widget)) {
        int indent = std::max(label->indent(), 0);
        const QRect inside = label->contentsRect();
        return {inside.width() - 2 * label->margin() - indent,
                inside.height() - 2 * label->margin()};
    }
    if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        return {button->width() - ButtonChrome(button).width(), button->height()};
    return widget->size();
}

void FitCells(const std::vector<QWidget*>& cells, double points, double floor) {
    double size = points;
    for (QWidget* cell : cells) {
        Uncut(cell);
        if (cell->isHidden() || TextOf(cell).isEmpty()) continue;
        QFont font = cell->font();
        font.setPointSizeF(points);
        const QSize need = NeedAt(cell, font);
        const QSize room = TextRoom(cell);
        if (need.width() > room.width())
            size = std::min(size, points * room.width() / std::max(need.width(), 1));
        if (need.height() > room.height())
            size = std::min(size, points * room.height() / std::max(need.height(), 1));
    }
    size = std::max(size, points * floor);
    for (QWidget* cell : cells) SetPoints(cell, size);
    // Type does not grow quite in step with its size: a step or two more where one is still wide.
    for (int step = 0; step < 6 && size > points * floor; ++step) {
        const bool all = std::all_of(cells.begin(), cells.end(), [](QWidget* cell) {
            return cell->isHidden() || TextOf(cell).isEmpty() || Fits(cell);
        });
        if (all) return;
        size = std::max(points * floor, size - std::max(0.25, size * 0.04));
        for (QWidget* cell : cells) SetPoints(cell, size);
    }
    for (QWidget* cell : cells)
        if (!cell->isHidden() && !TextOf(cell).isEmpty() &&
            TextNeed(cell).width() > TextRoom(cell).width())
            Cut(cell);
}

}  // namespace tallory
