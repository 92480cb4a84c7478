#pragma once

#include <QWidget>

// The background of the source list: a surface of the list's radius. With
// glass it lets the window's material show through like a surface; without,
// it sits on the quieter fill of a grouped box.
class SourceListSurface : public QWidget
{
public:
    explicit SourceListSurface(bool usesGlass, QWidget *parent = nullptr);

    void setUsesGlass(bool usesGlass);
    bool usesGlass() const { return m_usesGlass; }

    static constexpr qreal radius = 12;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_usesGlass;
};
