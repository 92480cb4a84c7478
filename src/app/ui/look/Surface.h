#pragma once

#include <QColor>
#include <QWidget>

#include <optional>

// A grouped box: a quiet rounded background with a hairline border, optionally
// washed with a tint from its top-leading corner. Lay the content out inside it.
class Surface : public QWidget
{
public:
    explicit Surface(qreal radius, std::optional<QColor> tint = std::nullopt, QWidget *parent = nullptr);

    void setTint(std::optional<QColor> tint);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal m_radius;
    std::optional<QColor> m_tint;
};
