#pragma once

#include <QWidget>

// What the source list shows without rows: how to add a source when the system
// offers none, that the sources cannot be read now, or that the search matched nothing.
class SourceEmptyState : public QWidget
{
public:
    explicit SourceEmptyState(bool isCatalogEmpty, bool unreachable = false, QWidget *parent = nullptr);

    bool isCatalogEmpty() const { return m_catalogEmpty; }

private:
    bool m_catalogEmpty;
};
