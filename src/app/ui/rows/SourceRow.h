#pragma once

#include "app/ui/controls/RowButton.h"
#include "core/sources/InputChoice.h"

#include <QImage>

// One input source in the list: its icon, its name, the current badge and, when
// it is the pinned one, a checkmark on the selection's background.
class SourceRow : public RowButton
{
public:
    SourceRow(const InputChoice &source, const QImage &icon, bool selected, bool current, bool increasedContrast,
              QWidget *parent = nullptr);

    bool isSelected() const { return m_selected; }

    static constexpr qreal radius = 9;
    static constexpr int minimumHeight = 36;
    static constexpr int horizontalPadding = 7;
    static constexpr int checkmarkWidth = 14;

    // What the row reads after its name: pinned and current, in that order.
    static QString accessibleValue(bool selected, bool current);

protected:
    QColor restingFill() const override;

private:
    bool m_selected;
    bool m_increasedContrast;
};

// Adds the checkmark of a selected row, or keeps its place when not selected.
void addSelectionMark(class QBoxLayout *row, QWidget *owner, bool selected);
