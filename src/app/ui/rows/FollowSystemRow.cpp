#include "app/ui/rows/FollowSystemRow.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "app/ui/rows/SourceRow.h"
#include "core/l10n/L10n.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

FollowSystemRow::FollowSystemRow(bool selected, bool increasedContrast, QWidget *parent)
    : RowButton(SourceRow::radius, parent)
    , m_selected(selected)
    , m_increasedContrast(increasedContrast)
{
    const QString title = L10n::text("ui.follow-system");
    const QString caption = L10n::text("ui.follow-system-caption");
    setObjectName(QLatin1String(Identifier::followSystem));
    setText(title);
    setToolTip(title);
    setAccessibleName(title);
    AccessibleComponent::setValue(this, caption);
    AccessibleComponent::setSelected(this, selected);
    setMinimumHeight(SourceRow::minimumHeight);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(SourceRow::horizontalPadding, 4, SourceRow::horizontalPadding, 4);
    row->setSpacing(8);
    auto *symbol = new SymbolView(QStringLiteral("arrow.triangle.branch"), Symbols::boxFor(16) - 4,
                                  ThemedLabel::secondary, Symbols::Weight::medium, this);
    symbol->setBox(QSize(24, 24));
    row->addWidget(symbol);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    auto *titleLabel =
        new ThemedLabel(title, 13, selected ? QFont::DemiBold : QFont::Normal, ThemedLabel::primary, this);
    auto *captionLabel = new ThemedLabel(caption, 10, QFont::Normal, ThemedLabel::secondary, this);
    for (QWidget *label : {static_cast<QWidget *>(titleLabel), static_cast<QWidget *>(captionLabel)}) {
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        texts->addWidget(label);
    }
    row->addLayout(texts, 1);
    addSelectionMark(row, this, selected);
}

QColor FollowSystemRow::restingFill() const
{
    if (!m_selected)
        return Qt::transparent;
    return Theme::withOpacity(Theme::of(this).accent,
                              m_increasedContrast ? Opacity::selectedRowContrast : Opacity::selectedRow);
}
