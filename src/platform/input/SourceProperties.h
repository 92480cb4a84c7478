#pragma once

#include <QString>
#include <QVariant>

// What the system says about one input source, property by property. An
// invalid QVariant is a property the system did not give; a value of another
// type than the one noted is kept as it came, so that readers can tell
// "missing" from "wrong type" from a value.
struct SourceProperties
{
    QVariant id;            // QString
    QVariant localizedName; // QString
    QVariant enabled;       // bool
    QVariant selectCapable; // bool
    QVariant category;      // QString; keyboard sources carry keyboardCategory
    QVariant languages;     // QStringList, the source's main language first
    QVariant iconURL;       // QUrl
    QVariant iconReference; // QString naming a themed icon, or a QImage the system drew
    QVariant symbol;        // QString: a short label ("EN", "한") for a source shown without an icon

    static inline const QString keyboardCategory = QStringLiteral("keyboard");

    // An enabled keyboard source that can be selected, as the desktops' own
    // lists give them: only what the user set up, each of them selectable.
    static SourceProperties keyboard(const QString &id, const QString &name)
    {
        SourceProperties source;
        source.id = id;
        source.localizedName = name;
        source.enabled = true;
        source.selectCapable = true;
        source.category = keyboardCategory;
        return source;
    }

    bool operator==(const SourceProperties &) const = default;
};
