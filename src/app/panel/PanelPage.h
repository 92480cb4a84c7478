#pragma once

// The panel's pages, in the order one leads to the next.
enum class PanelPage { main, settings, about };
