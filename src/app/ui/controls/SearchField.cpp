#include "app/ui/controls/SearchField.h"

#include "app/ui/controls/HoverButton.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

namespace {

// A plain symbol button: no fill, the symbol brightens under the pointer.
class ClearButton : public HoverButton
{
public:
    explicit ClearButton(QWidget *parent)
        : HoverButton(parent)
    {
        setFixedSize(16, 16);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        const Theme theme = Theme::of(this);
        QPainter painter(this);
        const QColor ink = isHovered() || isDown() ? theme.secondary : theme.tertiary;
        painter.drawPixmap(QPointF(0, 0),
                           Symbols::pixmap(QStringLiteral("xmark.circle.fill"), width(), ink, devicePixelRatioF()));
    }
};

} // namespace

SearchField::SearchField(const QString &identifier, QWidget *parent)
    : QWidget(parent)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(horizontalPadding, 0, horizontalPadding, 0);
    row->setSpacing(6);
    row->addWidget(new SymbolView(QStringLiteral("magnifyingglass"), Symbols::boxFor(11), ThemedLabel::secondary,
                                  Symbols::Weight::medium, this));

    m_edit = new QLineEdit(this);
    m_edit->setObjectName(identifier);
    m_edit->setFrame(false);
    m_edit->setFont(Theme::font(fontPoints));
    m_edit->setPlaceholderText(L10n::text("ui.search"));
    m_edit->setAccessibleName(L10n::text("ui.search"));
    m_edit->setClearButtonEnabled(false);
    QPalette palette = m_edit->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    m_edit->setPalette(palette);
    row->addWidget(m_edit, 1);

    m_clear = new ClearButton(this);
    m_clear->setObjectName(identifier + QStringLiteral("-clear"));
    m_clear->setAccessibleName(L10n::text("ui.clear"));
    m_clear->setToolTip(L10n::text("ui.clear"));
    m_clear->setVisible(false);
    row->addWidget(m_clear);

    connect(m_clear, &QAbstractButton::clicked, m_edit, [this] {
        m_edit->clear();
        m_edit->setFocus();
    });
    connect(m_edit, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_clear->setVisible(!text.isEmpty());
        if (m_handler)
            m_handler(text);
    });
    setFixedHeight(fieldHeight);
    setFocusProxy(m_edit);
}

QString SearchField::text() const
{
    return m_edit->text();
}

void SearchField::setText(const QString &text)
{
    m_edit->setText(text);
}

void SearchField::onTextChanged(std::function<void(const QString &)> handler)
{
    m_handler = std::move(handler);
}

void SearchField::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), radius, radius);
    painter.fillPath(path, Theme::of(this).primaryAt(Opacity::quietFill));
}
