#pragma once

#include "platform/input/SourceProperties.h"

#include <QString>
#include <QStringList>

#include <optional>

class QImage;

// One input source as the system described it when the catalog looked it up.
class Source
{
public:
    explicit Source(SourceProperties properties);

    // Empty when the system gives no identifier, or one that is not text.
    QString id() const;
    // Empty when the system gives no name, or one that is not text.
    QString name() const;
    // From the icon file, else from the icon reference, else the symbol drawn as
    // a label; none when none of them gives an image. Drawn beside SourceIcon,
    // in a target of its own: the command line never draws.
    std::optional<QImage> icon() const;
    // Chinese, Japanese, Korean or Vietnamese by the source's first language:
    // such sources are switched through the focus helper.
    bool isCJKV() const;

private:
    QStringList languages() const;

    SourceProperties m_properties;
};
