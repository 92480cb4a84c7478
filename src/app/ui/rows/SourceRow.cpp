#include "app/ui/rows/SourceRow.h"

#include "app/ui/controls/CurrentTag.h"
#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/SourceArtwork.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"

#include <QHBoxLayout>

SourceRow::SourceRow(const InputChoice &source, const QImage &icon, bool selected, bool current, bool increasedContrast,
                     QWidget *parent)
    : RowButton(radius, parent)
    , m_selected(selected)
    , m_increasedContrast(increasedContrast)
{
    setObjectName(QStringLiteral("source-") + source.id);
    setText(source.name);
    setToolTip(source.name);
    setAccessibleName(source.name);
    AccessibleComponent::setValue(this, accessibleValue(selected, current));
    AccessibleComponent::setSelected(this, selected);
    setMinimumHeight(minimumHeight);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(horizontalPadding, 4, horizontalPadding, 4);
    row->setSpacing(8);
    row->addWidget(new SourceArtwork(icon, SourceArtwork::defaultSize, this));
    auto *name =
        new ThemedLabel(source.name, 13, selected ? QFont::DemiBold : QFont::Normal, ThemedLabel::primary, this);
    name->setElided(true);
    name->setAttribute(Qt::WA_TransparentForMouseEvents);
    row->addWidget(name, 1);
    if (current) {
        auto *tag = new CurrentTag(this);
        tag->setAttribute(Qt::WA_TransparentForMouseEvents);
        row->addWidget(tag);
    }
    addSelectionMark(row, this, selected);
}

QString SourceRow::accessibleValue(bool selected, bool current)
{
    QStringList parts;
    if (selected)
        parts << L10n::text("ui.target");
    if (current)
        parts << L10n::text("ui.current-badge");
    return parts.join(QStringLiteral(", "));
}

QColor SourceRow::restingFill() const
{
    if (!m_selected)
        return Qt::transparent;
    const Theme theme = Theme::of(this);
    return Theme::withOpacity(theme.accent, m_increasedContrast ? Opacity::selectedRowContrast : Opacity::selectedRow);
}

void addSelectionMark(QBoxLayout *row, QWidget *owner, bool selected)
{
    if (!selected) {
        row->addSpacing(SourceRow::checkmarkWidth);
        return;
    }
    auto *mark = new SymbolView(
        QStringLiteral("checkmark"), Symbols::boxFor(11), [](const Theme &theme) { return theme.accent; },
        Symbols::Weight::bold, owner);
    mark->setBox(QSize(SourceRow::checkmarkWidth, qCeil(Symbols::boxFor(11))));
    mark->setObjectName(QStringLiteral("selection-mark"));
    mark->setAttribute(Qt::WA_TransparentForMouseEvents);
    row->addWidget(mark);
}
