#pragma once

#include <QColor>
#include <QWidget>

// The coloured square with a white symbol at the start of a setting.
class SettingIcon : public QWidget
{
public:
    SettingIcon(const QString &symbol, const QColor &color, QWidget *parent = nullptr);

    static constexpr int side = 22;
    static constexpr qreal radius = 6;
    static constexpr qreal symbolPoints = 11;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    QColor m_color;
};
