#include "app/ui/controls/RowButton.h"

#include "app/ui/look/AccessibleComponent.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>

RowButton::RowButton(qreal radius, QWidget *parent)
    : HoverButton(parent)
    , m_radius(radius)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    AccessibleComponent::combine(this);
}

QSize RowButton::sizeHint() const
{
    return layout() ? layout()->sizeHint() : HoverButton::sizeHint();
}

QSize RowButton::minimumSizeHint() const
{
    return layout() ? layout()->minimumSize() : HoverButton::minimumSizeHint();
}

void RowButton::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), m_radius, m_radius);
    painter.fillPath(path, restingFill());
    const qreal fill = fillOpacity(0.10, 0.05);
    if (fill > 0)
        painter.fillPath(path, theme.primaryAt(fill));
}

void RowButton::changeEvent(QEvent *event)
{
    // The whole row dims, its content included.
    if (event->type() == QEvent::EnabledChange) {
        if (isEnabled()) {
            setGraphicsEffect(nullptr);
            m_dimming = nullptr;
        } else if (!m_dimming) {
            m_dimming = new QGraphicsOpacityEffect(this);
            m_dimming->setOpacity(disabledOpacity);
            setGraphicsEffect(m_dimming);
        }
    }
    HoverButton::changeEvent(event);
}

NavigationRow::NavigationRow(const QString &title, const QString &accessory, QWidget *parent)
    : RowButton(8, parent)
{
    setText(title);
    setToolTip(title);
    setAccessibleName(title);
    auto *label = new QLabel(title, this);
    label->setFont(Theme::font(12.5));
    label->setWordWrap(true);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto *symbol = new SymbolView(
        accessory, Symbols::boxFor(11), [](const Theme &theme) { return theme.tertiary; }, Symbols::Weight::semibold,
        this);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 6, 8, 6);
    row->setSpacing(8);
    row->addWidget(label, 1);
    row->addWidget(symbol);
    setMinimumHeight(30);
}
