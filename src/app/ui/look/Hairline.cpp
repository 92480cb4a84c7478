#include "app/ui/look/Hairline.h"

#include "app/ui/look/Theme.h"

#include <QFrame>
#include <QVBoxLayout>

namespace Hairline {

QWidget *create(QWidget *parent, QMargins margins)
{
    auto *holder = new QWidget(parent);
    auto *box = new QVBoxLayout(holder);
    box->setContentsMargins(margins);
    auto *line = new QFrame(holder);
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, Theme::of(parent).primaryAt(Opacity::divider));
    line->setPalette(palette);
    box->addWidget(line);
    return holder;
}

} // namespace Hairline
