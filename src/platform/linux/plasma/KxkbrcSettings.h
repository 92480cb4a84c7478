#pragma once

#include <QString>
#include <QStringList>

// The user's keyboard layouts as Plasma's settings keep them in kxkbrc: the
// layouts and variants in the order Plasma uses them, and the XKB options.
struct KxkbrcSettings
{
    QStringList layouts;
    QStringList variants;
    QStringList options = {};

    static KxkbrcSettings read(const QString &file);
    // The user's own file.
    static QString path();

    // A layout's identifier, "de" or "de(neo)". The variant at `index` counts
    // only while the settings agree with what Plasma runs; otherwise the short
    // name alone.
    QString id(qsizetype index, const QString &shortName) const;
};
