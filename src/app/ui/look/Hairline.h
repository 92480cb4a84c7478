#pragma once

#include <QMargins>

class QWidget;

// A one-point line in the divider tint, held clear of its neighbours by `margins`.
namespace Hairline {

QWidget *create(QWidget *parent, QMargins margins);

} // namespace Hairline
