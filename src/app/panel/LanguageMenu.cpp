#include "app/panel/LanguageMenu.h"

#include "app/model/AppModel.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/Symbols.h"
#include "app/ui/look/Theme.h"
#include "core/l10n/L10n.h"

#include <QActionGroup>
#include <QMenu>
#include <QPainter>

namespace {

constexpr int chevronGap = 4;
constexpr qreal fontPoints = 12;

} // namespace

LanguageMenu::LanguageMenu(AppModel &model, QWidget *parent)
    : QToolButton(parent)
    , m_model(model)
{
    setObjectName(QLatin1String(Identifier::language));
    setPopupMode(QToolButton::InstantPopup);
    setAutoRaise(true);
    setFont(Theme::font(fontPoints));
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(L10n::text("panel.language"));

    auto *menu = new QMenu(this);
    auto *group = new QActionGroup(menu);
    const auto add = [&](const QString &text, const std::optional<QString> &code) {
        QAction *action = menu->addAction(text);
        action->setCheckable(true);
        action->setData(code.value_or(QString()));
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, code] { m_model.setLanguage(code); });
    };
    add(L10n::text("lang.system"), std::nullopt);
    menu->addSeparator();
    for (const L10n::Language &language : L10n::supported())
        add(language.displayName, language.code);
    setMenu(menu);
    render();
}

QString LanguageMenu::title(const std::optional<QString> &code)
{
    for (const L10n::Language &language : L10n::supported()) {
        if (code == language.code)
            return language.displayName;
    }
    return L10n::text("lang.system.short");
}

void LanguageMenu::render()
{
    const QString chosen = L10n::normalized(m_model.language()).value_or(QString());
    for (QAction *action : menu()->actions()) {
        if (action->isCheckable())
            action->setChecked(action->data().toString() == chosen);
    }
    setText(title(m_model.language()));
    setAccessibleDescription(text());
    updateGeometry();
}

QSize LanguageMenu::sizeHint() const
{
    // A little slack: advances are rounded, and a label one pixel short is cut.
    return {16 + fontMetrics().horizontalAdvance(text()) + chevronGap + qCeil(Symbols::boxFor(9)),
            qMax(24, fontMetrics().height() + 6)};
}

void LanguageMenu::paintEvent(QPaintEvent *)
{
    // A label and a small chevron, as a borderless pull-down reads.
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.primaryAt(isDown() ? 0.12 : 0.06));
        painter.drawRoundedRect(QRectF(rect()), 6, 6);
    }
    const qreal chevron = Symbols::boxFor(9);
    const QRect textBox = rect().adjusted(6, 0, -6 - qRound(chevron) - chevronGap, 0);
    painter.setPen(theme.secondary);
    painter.setFont(font());
    painter.drawText(textBox, Qt::AlignVCenter | Qt::AlignRight,
                     fontMetrics().elidedText(text(), Qt::ElideRight, textBox.width()));
    const QPixmap glyph = Symbols::pixmap(QStringLiteral("chevron.right"), chevron, theme.secondary,
                                          devicePixelRatioF(), Symbols::Weight::semibold);
    painter.save();
    painter.translate(width() - 6 - chevron / 2, height() / 2.0);
    painter.rotate(90);
    painter.drawPixmap(QPointF(-chevron / 2, -chevron / 2), glyph);
    painter.restore();
}
