#include "app/about/AboutPage.h"

#include "app/about/UpdateViewModel.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/SettingIcon.h"
#include "app/ui/look/Surface.h"
#include "app/ui/look/Symbols.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"
#include "platform/OperatingSystem.h"

#include <QApplication>
#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The application's icon; until it ships one, the keyboard symbol on an accent tile.
QPixmap applicationIcon(const QWidget *page)
{
    const qreal ratio = page->devicePixelRatioF();
    const QIcon icon = QApplication::windowIcon();
    if (!icon.isNull())
        return icon.pixmap(QSize(AboutPage::iconSide, AboutPage::iconSide), ratio);
    const Theme theme = Theme::of(page);
    QPixmap tile(QSize(AboutPage::iconSide, AboutPage::iconSide) * ratio);
    tile.setDevicePixelRatio(ratio);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient fill(0, 0, 0, AboutPage::iconSide);
    fill.setColorAt(0, theme.accent.lighter(125));
    fill.setColorAt(1, theme.accent);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(4, 4, AboutPage::iconSide - 8, AboutPage::iconSide - 8), 13, 13);
    painter.fillPath(shape, fill);
    const qreal glyph = 32;
    const qreal offset = (AboutPage::iconSide - glyph) / 2;
    painter.drawPixmap(QPointF(offset, offset),
                       Symbols::pixmap(QStringLiteral("keyboard"), glyph, Qt::white, ratio, Symbols::Weight::medium));
    return tile;
}

QString versionText(const AppBuildInfo &info)
{
    if (!info.version || !info.build)
        return L10n::text("about.local-build");
    return L10n::text("about.version").arg(*info.version, QString::number(*info.build));
}

} // namespace

AboutPage::AboutPage(UpdateViewModel *model, UpdateResultView::OpenURL open, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    m_model->setParent(this);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(blockSpacing);
    column->addWidget(identityBlock());
    column->addWidget(updateBox(std::move(open)));

    const AppBuildInfo &info = m_model->info();
    auto *requirements =
        new ThemedLabel(L10n::text("about.requirements")
                            .arg(OperatingSystem::name(), info.minimumSystemVersion, OperatingSystem::hardware()),
                        10.5, QFont::Normal, ThemedLabel::tertiary, this);
    requirements->setAlignment(Qt::AlignHCenter);
    column->addWidget(requirements);
    column->addStretch();

    connect(m_model, &UpdateViewModel::stateChanged, this, &AboutPage::render);
    render();
}

QWidget *AboutPage::identityBlock()
{
    auto *block = new QWidget(this);
    auto *column = new QVBoxLayout(block);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(identitySpacing);

    auto *icon = new QLabel(block);
    icon->setPixmap(applicationIcon(this));
    icon->setFixedSize(iconSide, iconSide);
    auto *shadow = new QGraphicsDropShadowEffect(icon);
    shadow->setColor(QColor(0, 0, 0, 38));
    shadow->setBlurRadius(6);
    shadow->setOffset(0, 1);
    icon->setGraphicsEffect(shadow);
    icon->setAccessibleName(QString());
    column->addWidget(icon, 0, Qt::AlignHCenter);

    auto *name = new ThemedLabel(L10n::text("app.name"), 17, QFont::Bold, ThemedLabel::primary, block);
    name->setAlignment(Qt::AlignHCenter);
    column->addWidget(name);

    auto *version = new ThemedLabel(versionText(m_model->info()), 11, QFont::Normal, ThemedLabel::secondary, block);
    version->setObjectName(QLatin1String(Identifier::aboutVersion));
    version->setAlignment(Qt::AlignHCenter);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(version);

    auto *description =
        new ThemedLabel(L10n::text("about.description"), 12, QFont::Normal, ThemedLabel::secondary, block);
    description->setAlignment(Qt::AlignHCenter);
    description->setContentsMargins(0, 2, 0, 0);
    column->addWidget(description);
    return block;
}

QWidget *AboutPage::updateBox(UpdateResultView::OpenURL open)
{
    auto *box = new Surface(boxRadius, std::nullopt, this);
    auto *column = new QVBoxLayout(box);
    column->setContentsMargins(boxPadding, boxPadding, boxPadding, boxPadding);
    column->setSpacing(6);

    auto *row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(new SettingIcon(QStringLiteral("arrow.down.circle"), Theme::of(this).accent, box));
    row->addWidget(new ThemedLabel(L10n::text("about.updates"), 12.5, QFont::Medium, ThemedLabel::primary, box), 1);
    m_progress = new QProgressBar(box);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedSize(36, 6);
    m_progress->setAccessibleName(L10n::text("about.checking"));
    row->addWidget(m_progress);
    m_checkButton = new QPushButton(box);
    m_checkButton->setObjectName(QLatin1String(Identifier::checkUpdates));
    m_checkButton->setFont(Theme::font(11.5, QFont::Medium));
    connect(m_checkButton, &QAbstractButton::clicked, m_model, &UpdateViewModel::check);
    row->addWidget(m_checkButton);
    column->addLayout(row);

    m_result = new UpdateResultView(std::move(open), box);
    m_result->setContentsMargins(resultIndent, 0, 0, 0);
    column->addWidget(m_result);

    const std::optional<QString> &address = m_model->info().updateURL;
    if (address && !address->isEmpty()) {
        auto *hint = new ThemedLabel(L10n::text("about.manual-check"), 10, QFont::Normal, ThemedLabel::tertiary, box);
        hint->setContentsMargins(resultIndent, 0, 0, 0);
        column->addWidget(hint);
    }
    return box;
}

void AboutPage::render()
{
    const bool checking = m_model->state().kind == UpdateViewModel::State::Kind::Checking;
    m_progress->setVisible(checking);
    m_checkButton->setText(L10n::text(checking ? "about.checking" : "about.check"));
    m_checkButton->setEnabled(m_model->canCheck());
    m_result->setState(m_model->state());
}

void AboutPage::hideEvent(QHideEvent *event)
{
    m_model->cancel();
    QWidget::hideEvent(event);
}
