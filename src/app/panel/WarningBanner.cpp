#include "app/panel/WarningBanner.h"

#include "app/model/AppModel.h"
#include "app/ui/controls/Banner.h"
#include "app/ui/look/Identifiers.h"
#include "app/ui/look/Theme.h"
#include "core/l10n/L10n.h"

#include <QVBoxLayout>

WarningBanner::WarningBanner(AppModel &model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    setVisible(false);
}

void WarningBanner::render()
{
    const std::optional<QString> warning = m_model.warning();
    setVisible(warning.has_value());
    if (!warning) {
        delete m_banner;
        m_banner = nullptr;
        m_look = {};
        return;
    }
    const RuntimeState state = m_model.runtimeState();
    const Look look{*warning, state == RuntimeState::SecureInput || state == RuntimeState::KeymapHeld,
                    m_model.canRetrySwitch()};
    if (m_banner && look == m_look)
        return;
    m_look = look;
    delete m_banner;
    const Theme theme = Theme::of(this);
    Banner::Action retry;
    if (look.retry) {
        retry.title = L10n::text("ui.retry");
        // The state may have moved on between drawing and the click.
        retry.run = [&model = m_model] {
            if (model.canRetrySwitch() && model.pinnedName() && !model.configError())
                model.apply();
        };
    }
    m_banner = new Banner(
        look.text, look.waits ? QStringLiteral("lock.shield.fill") : QStringLiteral("exclamationmark.triangle.fill"),
        look.waits ? theme.indigo : theme.orange, retry, this);
    m_banner->setObjectName(QLatin1String(Identifier::warning));
    layout()->addWidget(m_banner);
}
