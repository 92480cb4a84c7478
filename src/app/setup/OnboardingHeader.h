#pragma once

#include <QWidget>

class AppModel;
class QuietButton;

// The panel's header while the setup flow runs: the name, and Skip on the
// first setup or Cancel when it was opened again.
class OnboardingHeader : public QWidget
{
public:
    OnboardingHeader(AppModel &model, bool inWindow, QWidget *parent = nullptr);

    void render();

    // The skip button sits this much closer to the edge than the padding.
    static constexpr int trailingOffset = 6;

private:
    AppModel &m_model;
    QuietButton *m_skip;
};
