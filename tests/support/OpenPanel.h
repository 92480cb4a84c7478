#pragma once

#include "app/model/AppModel.h"
#include "app/panel/Panel.h"

#include <memory>

// The window as a start shows it: a fresh, started model over `services`, in
// setup when the user has not finished it. The old panel goes before the model it watches.
inline void openPanel(const AppServices &services, std::unique_ptr<AppModel> &model, std::unique_ptr<Panel> &panel)
{
    panel.reset();
    model = std::make_unique<AppModel>(services);
    model->start();
    panel = std::make_unique<Panel>(*model, false, 900);
    panel->show();
}
