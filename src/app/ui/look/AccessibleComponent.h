#pragma once

#include <QString>

class QWidget;

// How the components appear to assistive technology. Qt lists every child
// widget; these helpers leave decorative parts out, read a button as one
// element and give it a value, as a screen reader expects of a list row.
namespace AccessibleComponent {

// Decoration: left out of its parent's accessible children.
void hide(QWidget *widget);
bool isHidden(const QWidget *widget);

// Read as one element: its children are not listed.
void combine(QWidget *widget);

// The value read after the name ("Pinned source, Current").
void setValue(QWidget *widget, const QString &value);
QString value(const QWidget *widget);

// A selectable element (a list row) and whether it is selected.
void setSelected(QWidget *widget, bool selected);

// Marks a title as a heading.
void setHeading(QWidget *widget);

} // namespace AccessibleComponent
