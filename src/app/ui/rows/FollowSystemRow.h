#pragma once

#include "app/ui/controls/RowButton.h"

// The row that lets the system choose the source: built like a source row,
// with a branch symbol and a caption.
class FollowSystemRow : public RowButton
{
public:
    FollowSystemRow(bool selected, bool increasedContrast, QWidget *parent = nullptr);

    bool isSelected() const { return m_selected; }

protected:
    QColor restingFill() const override;

private:
    bool m_selected;
    bool m_increasedContrast;
};
