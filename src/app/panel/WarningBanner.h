#pragma once

#include <QWidget>

class AppModel;
class Banner;

// The model's warning as a banner, with a retry button while a retry can help.
// Hidden while there is no warning.
class WarningBanner : public QWidget
{
public:
    WarningBanner(AppModel &model, QWidget *parent = nullptr);

    // Follows the model; rebuilds the banner only when what it shows changed.
    void render();
    Banner *banner() const { return m_banner; }

private:
    struct Look
    {
        QString text;
        // Switching waits for the system: secure input, or a keymap held elsewhere.
        bool waits = false;
        bool retry = false;
        bool operator==(const Look &) const = default;
    };

    AppModel &m_model;
    Banner *m_banner = nullptr;
    Look m_look;
};
