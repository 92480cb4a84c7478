#include "app/ui/rows/SourceList.h"

#include "app/ui/look/Hairline.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/Theme.h"
#include "app/ui/rows/FollowSystemRow.h"
#include "app/ui/rows/SourceEmptyState.h"
#include "app/ui/rows/SourceListSurface.h"
#include "app/ui/rows/SourceRow.h"

#include <QEvent>
#include <QFrame>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {} // namespace

SourceList::SourceList(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QLatin1String(Identifier::sourceList));
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    m_surface = new SourceListSurface(false, this);
    outer->addWidget(m_surface);
    m_column = new QVBoxLayout(m_surface);
    m_column->setContentsMargins(padding, padding, padding, padding);
    m_column->setSpacing(spacing);
}

void SourceList::setContent(SourceListContent content)
{
    m_content = std::move(content);
    rebuild();
}

void SourceList::changeEvent(QEvent *event)
{
    // The rows read the contrast setting when built; new surroundings rebuild them.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        QTimer::singleShot(0, this, [this] {
            if (Theme::of(this).preferences.increasedContrast != m_builtWithContrast)
                rebuild();
        });
    QWidget::changeEvent(event);
}

void SourceList::rebuild()
{
    // Keep the reader's place when the rows are rebuilt for a new selection.
    if (m_scroll)
        m_scrollPosition = m_scroll->verticalScrollBar()->value();
    while (QLayoutItem *item = m_column->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    m_scroll = nullptr;

    const bool contrast = Theme::of(this).preferences.increasedContrast;
    m_builtWithContrast = contrast;
    const bool scrolls = m_content.totalCount >= scrollFrom;
    m_surface->setUsesGlass(m_content.followSystem.has_value());

    if (m_content.followSystem) {
        auto *row = new FollowSystemRow(m_content.followSystem->selected, contrast, m_surface);
        connect(row, &QAbstractButton::clicked, this, [action = m_content.followSystem->action] {
            if (action)
                action();
        });
        m_column->addWidget(row);
        QWidget *line = Hairline::create(m_surface, QMargins(7, 2, 7, 2));
        m_column->addWidget(line);
        // Shown now rather than on the next turn of the event loop, so that a
        // picture taken right away has them.
        row->show();
        line->show();
    }

    if (m_content.sources.isEmpty()) {
        auto *empty = new SourceEmptyState(m_content.totalCount == 0, m_content.unreachable, m_surface);
        if (scrolls)
            empty->setFixedHeight(scrollHeight);
        m_column->addWidget(empty);
        empty->show();
        return;
    }

    auto *rows = new QWidget;
    auto *rowColumn = new QVBoxLayout(rows);
    rowColumn->setContentsMargins(0, 0, 0, 0);
    rowColumn->setSpacing(spacing);
    for (const InputChoice &source : std::as_const(m_content.sources)) {
        const std::optional<QImage> icon = m_content.sourceIcon ? m_content.sourceIcon(source.id) : std::nullopt;
        auto *row = new SourceRow(source, icon.value_or(QImage()), m_content.selectedID == source.id,
                                  source.id == m_content.currentID, contrast, rows);
        connect(row, &QAbstractButton::clicked, this, [select = m_content.onSelect, id = source.id] {
            if (select)
                select(id);
        });
        rowColumn->addWidget(row);
    }
    if (!scrolls) {
        rows->setParent(m_surface);
        m_column->addWidget(rows);
        rows->show();
        return;
    }
    rowColumn->addStretch();
    m_scroll = new QScrollArea(m_surface);
    m_scroll->setObjectName(QLatin1String(Identifier::sourceListScroll));
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFixedHeight(scrollHeight);
    m_scroll->setWidget(rows);
    // The surface shows through the scrolled rows.
    m_scroll->viewport()->setAutoFillBackground(false);
    rows->setAutoFillBackground(false);
    m_column->addWidget(m_scroll);
    m_scroll->show();
    // The range is known once the rows are laid out.
    QTimer::singleShot(0, m_scroll,
                       [bar = m_scroll->verticalScrollBar(), position = m_scrollPosition] { bar->setValue(position); });
}
