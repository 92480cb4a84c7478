#include "app/setup/OnboardingHeader.h"

#include "app/model/AppModel.h"
#include "app/ui/controls/PanelHeader.h"
#include "app/ui/controls/QuietButton.h"
#include "app/ui/look/Identifiers.h"
#include "core/l10n/L10n.h"

#include <QVBoxLayout>

OnboardingHeader::OnboardingHeader(AppModel &model, bool inWindow, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    m_skip = new QuietButton(L10n::text("setup.skip"));
    m_skip->setObjectName(QLatin1String(Identifier::setupSkip));
    connect(m_skip, &QAbstractButton::clicked, this, [this] { m_model.skipSetup(); });
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(new PanelHeader(inWindow, L10n::text("app.name"), nullptr, m_skip, this));
    render();
}

void OnboardingHeader::render()
{
    m_skip->setText(L10n::text(m_model.needsOnboarding() ? "setup.skip" : "setup.cancel"));
    m_skip->setAccessibleName(m_skip->text());
    m_skip->setEnabled(!m_model.loginBusy());
    m_skip->updateGeometry();
}
