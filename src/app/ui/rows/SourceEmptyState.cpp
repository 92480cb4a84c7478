#include "app/ui/rows/SourceEmptyState.h"

#include "app/ui/look/Identifiers.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"

#include <QVBoxLayout>

SourceEmptyState::SourceEmptyState(bool isCatalogEmpty, bool unreachable, QWidget *parent)
    : QWidget(parent)
    , m_catalogEmpty(isCatalogEmpty)
{
    setObjectName(QLatin1String(Identifier::sourceEmpty));
    const QString symbol =
        isCatalogEmpty ? QStringLiteral("keyboard.badge.ellipsis") : QStringLiteral("magnifyingglass");
    QString title = isCatalogEmpty ? L10n::text("panel.empty") : L10n::text("ui.no-results");
    QString caption = isCatalogEmpty ? L10n::text("ui.add-source") : L10n::text("ui.try-search");
    if (isCatalogEmpty && unreachable) {
        title = L10n::text("panel.unreachable");
        caption = L10n::text("panel.unreachable-caption");
    }

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 14, 12, 14);
    column->setSpacing(4);
    column->addStretch();
    column->addWidget(new SymbolView(symbol, 28, ThemedLabel::tertiary, Symbols::Weight::light, this), 0,
                      Qt::AlignHCenter);
    column->addSpacing(4);
    for (auto *label : {new ThemedLabel(title, 13, QFont::Medium, ThemedLabel::primary, this),
                        new ThemedLabel(caption, 11, QFont::Normal, ThemedLabel::secondary, this)}) {
        label->setAlignment(Qt::AlignHCenter);
        column->addWidget(label);
    }
    column->addStretch();
    setAccessibleName(title);
    setAccessibleDescription(caption);
}
