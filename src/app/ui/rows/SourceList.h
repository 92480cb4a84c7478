#pragma once

#include "core/sources/InputChoice.h"

#include <QImage>
#include <QList>
#include <QWidget>

#include <functional>
#include <optional>

class QScrollArea;
class QVBoxLayout;
class SourceListSurface;

// The optional first row of a source list, that lets the system choose.
struct FollowSystemChoice
{
    bool selected = false;
    std::function<void()> action;
};

// Everything a source list shows; the list rebuilds from it.
struct SourceListContent
{
    QList<InputChoice> sources; // after filtering
    int totalCount = 0;         // the catalog's size, before filtering
    // The catalog cannot be read now: an empty list then gives no advice of its own,
    // since the warning above it says why.
    bool unreachable = false;
    std::optional<QString> selectedID;
    QString currentID;
    std::optional<FollowSystemChoice> followSystem;
    std::function<std::optional<QImage>(const QString &)> sourceIcon;
    std::function<void(const QString &)> onSelect;
};

// The list of input sources on its surface. From seven sources on, the rows
// scroll in a fixed height, so that filtering does not make the panel jump.
class SourceList : public QWidget
{
public:
    explicit SourceList(QWidget *parent = nullptr);

    void setContent(SourceListContent content);

    static constexpr int scrollHeight = 246;
    static constexpr int scrollFrom = 7;
    static constexpr int padding = 4;
    static constexpr int spacing = 2;

protected:
    void changeEvent(QEvent *event) override;

private:
    void rebuild();

    SourceListContent m_content;
    SourceListSurface *m_surface;
    QVBoxLayout *m_column;
    int m_scrollPosition = 0;
    QScrollArea *m_scroll = nullptr;
    bool m_builtWithContrast = false;
};
