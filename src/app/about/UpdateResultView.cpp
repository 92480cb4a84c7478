#include "app/about/UpdateResultView.h"

#include "app/ui/look/Identifiers.h"
#include "app/ui/look/SymbolView.h"
#include "app/ui/look/Theme.h"
#include "app/ui/look/ThemedLabel.h"
#include "core/l10n/L10n.h"
#include "platform/OperatingSystem.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace {

QColor accent(const Theme &theme)
{
    return theme.accent;
}

// Text in the accent colour that opens something, read as a link.
class LinkButton : public QAbstractButton
{
public:
    LinkButton(const QString &text, QWidget *parent)
        : QAbstractButton(parent)
    {
        setText(text);
        setCursor(Qt::PointingHandCursor);
        setAttribute(Qt::WA_Hover);
        setFont(Theme::font(UpdateResultView::fontPoints, QFont::Medium));
        setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override { return fontMetrics().size(Qt::TextSingleLine, text()) + QSize(2, 4); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QFont face = font();
        face.setUnderline(underMouse() || hasFocus());
        painter.setFont(face);
        painter.setPen(Theme::of(this).accent);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
    }
};

} // namespace

UpdateResultView::UpdateResultView(OpenURL open, QWidget *parent)
    : QWidget(parent)
    , m_open(std::move(open))
    , m_symbol(
          new SymbolView(QString(), Symbols::boxFor(fontPoints), ThemedLabel::secondary, Symbols::Weight::medium, this))
    , m_status(new ThemedLabel(QString(), fontPoints, QFont::Normal, ThemedLabel::secondary, this))
    , m_requires(new ThemedLabel(QString(), fontPoints, QFont::Normal, ThemedLabel::secondary, this))
    , m_notes(new ThemedLabel(QString(), fontPoints, QFont::Normal, ThemedLabel::secondary, this))
    , m_releasePage(new LinkButton(L10n::text("about.release-page"), this))
{
    setObjectName(QLatin1String(Identifier::updateResult));
    m_releasePage->setObjectName(QLatin1String(Identifier::releasePage));
    connect(m_releasePage, &QAbstractButton::clicked, this, [this] { m_open(m_releaseAddress); });

    auto *lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(releaseSpacing);
    auto *status = new QHBoxLayout;
    status->setSpacing(5);
    status->addWidget(m_symbol, 0, Qt::AlignTop);
    status->addWidget(m_status, 1);
    lines->addLayout(status);
    lines->addWidget(m_requires);
    lines->addWidget(m_notes);
    lines->addWidget(m_releasePage);
}

// Only texts and visibility change here: the page may be hiding or closing
// while the state changes, so no widget is created or destroyed.
void UpdateResultView::setState(const UpdateViewModel::State &state)
{
    using Kind = UpdateCheckResult::Kind;
    m_requires->hide();
    m_notes->hide();
    m_releasePage->hide();
    if (state.kind == UpdateViewModel::State::Kind::Idle) {
        setStatus(L10n::text("about.update.idle"), false);
        return;
    }
    if (state.kind == UpdateViewModel::State::Kind::Checking || !state.result) {
        setStatus(L10n::text("about.update.checking"), false);
        return;
    }
    const UpdateCheckResult &result = *state.result;
    switch (result.kind) {
    case Kind::Unconfigured: setStatus(L10n::text("about.update.unconfigured"), false); break;
    case Kind::UpToDate: setStatus(L10n::text("about.update.current"), true, QStringLiteral("checkmark.circle")); break;
    case Kind::LocalNewer: setStatus(L10n::text("about.update.local-newer"), false); break;
    case Kind::Failure:
        setStatus(result.failure.value_or(UpdateCheckFailure{}).message(), false,
                  QStringLiteral("exclamationmark.circle"));
        break;
    case Kind::Available:
        if (result.manifest)
            setRelease(*result.manifest, result.requiresNewerSystem);
        break;
    }
}

void UpdateResultView::setStatus(const QString &text, bool accented, const QString &symbol)
{
    const ThemedLabel::Ink ink = accented ? ThemedLabel::Ink(accent) : ThemedLabel::Ink(ThemedLabel::secondary);
    m_status->setText(text);
    m_status->setInk(ink);
    m_symbol->setSymbol(symbol);
    m_symbol->setTint(ink);
    m_symbol->setVisible(!symbol.isEmpty());
}

void UpdateResultView::setRelease(const ReleaseManifest &manifest, bool requiresNewerSystem)
{
    setStatus(L10n::text("about.update.available").arg(manifest.version, QString::number(manifest.build)), true,
              QStringLiteral("arrow.down.circle"));
    m_requires->setText(
        L10n::text("about.update.requires").arg(OperatingSystem::name(), manifest.minimumSystemVersion));
    m_requires->setVisible(requiresNewerSystem);
    const QString notes = manifest.notes.value_or(QString()).trimmed();
    m_notes->setText(notes);
    m_notes->setVisible(!notes.isEmpty());
    m_releaseAddress = QUrl(manifest.releaseURL);
    m_releasePage->show();
}
