#pragma once

#include <QColor>
#include <QWidget>

#include <optional>

// One setting: its icon, a title with an optional caption, and its control.
class SettingRow : public QWidget
{
public:
    SettingRow(const QString &symbol, const QColor &color, const QString &title, const std::optional<QString> &caption,
               QWidget *trailing, QWidget *parent = nullptr);

    static constexpr int padding = 10;
    static constexpr int spacing = 10;
    static constexpr int trailingMinimumHeight = 22;
};
