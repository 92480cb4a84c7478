#include "app/ui/controls/PanelHeader.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/ThemedLabel.h"

#include <QHBoxLayout>

PanelHeader::PanelHeader(bool inWindow, const QString &title, QWidget *leading, QWidget *trailing, QWidget *parent)
    : QWidget(parent)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, bottomPadding);
    row->setSpacing(spacing);
    if (inWindow)
        row->addSpacing(windowButtonsClearance);
    if (leading) {
        leading->setParent(this);
        row->addWidget(leading, 0, Qt::AlignVCenter);
    }
    m_title = new ThemedLabel(title, 13, QFont::DemiBold, ThemedLabel::primary, this);
    // One line: a long title is cut short rather than pushing the controls away.
    m_title->setElided(true);
    m_title->setAccessibleName(title);
    AccessibleComponent::setHeading(m_title);
    row->addWidget(m_title, 1);
    row->addSpacing(8);
    if (trailing) {
        trailing->setParent(this);
        row->addWidget(trailing, 0, Qt::AlignVCenter);
    }
    setFixedHeight((inWindow ? windowHeight : dropDownHeight) + bottomPadding);
}

void PanelHeader::setTitle(const QString &title)
{
    m_title->setText(title);
    m_title->setAccessibleName(title);
}
