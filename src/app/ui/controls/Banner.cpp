#include "app/ui/controls/Banner.h"

#include "app/ui/controls/HoverButton.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace {

// A borderless text button in the banner's tint.
class BannerButton : public HoverButton
{
public:
    BannerButton(const QString &title, QColor tint, QWidget *parent)
        : HoverButton(parent)
        , m_tint(tint)
    {
        setText(title);
        setFont(Theme::font(Banner::fontPoints, QFont::DemiBold));
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        setCursor(Qt::PointingHandCursor);
    }

    QSize sizeHint() const override { return {fontMetrics().horizontalAdvance(text()) + 2, fontMetrics().height()}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (!isEnabled())
            painter.setOpacity(0.4);
        QColor ink = m_tint;
        if (isDown())
            ink = ink.darker(130);
        painter.setPen(ink);
        QFont face = font();
        face.setUnderline(isHovered());
        painter.setFont(face);
        painter.drawText(rect(), Qt::AlignLeading | Qt::AlignVCenter, text());
    }

private:
    QColor m_tint;
};

} // namespace

Banner::Banner(const QString &text, const QString &symbol, const QColor &tint, Action action, QWidget *parent)
    : QWidget(parent)
    , m_tint(tint)
    , m_symbol(symbol)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(8);
    auto *icon = new SymbolView(
        symbol, Symbols::boxFor(12), [tint](const Theme &) { return tint; }, Symbols::Weight::semibold, this);
    icon->setBox(QSize(16, qCeil(Symbols::boxFor(12))));
    // One point lower than the text's first line.
    auto *iconColumn = new QVBoxLayout;
    iconColumn->setContentsMargins(0, 1, 0, 0);
    iconColumn->addWidget(icon);
    iconColumn->addStretch();
    row->addLayout(iconColumn);

    auto *column = new QVBoxLayout;
    column->setSpacing(6);
    m_text = new ThemedLabel(text, fontPoints, QFont::Normal, ThemedLabel::primary, this);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(m_text);
    if (action.title && action.run) {
        m_button = new BannerButton(*action.title, tint, this);
        m_button->setAccessibleName(*action.title);
        connect(m_button, &QAbstractButton::clicked, this, [run = action.run] { run(); });
        column->addWidget(m_button, 0, Qt::AlignLeading);
    }
    row->addLayout(column, 1);
    setAccessibleName(text);
}

void Banner::setText(const QString &text)
{
    m_text->setText(text);
    setAccessibleName(text);
}

void Banner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.fillPath(path, Theme::withOpacity(m_tint, Opacity::bannerFill));
    painter.setPen(QPen(Theme::withOpacity(m_tint, Opacity::bannerBorder), 1));
    painter.drawPath(path);
}
