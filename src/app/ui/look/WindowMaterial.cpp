#include "app/ui/look/WindowMaterial.h"

#include "app/ui/look/Theme.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>

WindowMaterial::WindowMaterial(QWidget *parent)
    : QWidget(parent)
{}

void WindowMaterial::prepare(QWidget *window)
{
    if (platformComposites() && !Theme::of(window).preferences.reduceTransparency)
        window->setAttribute(Qt::WA_TranslucentBackground);
}

bool WindowMaterial::platformComposites()
{
    // Wayland compositors always blend; whether an X11 session has a compositing
    // manager is not something Qt tells, so X11 gets the solid colour.
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool WindowMaterial::isTranslucent() const
{
    const QWidget *top = window();
    return top->testAttribute(Qt::WA_TranslucentBackground) && top->isActiveWindow()
           && !Theme::of(this).preferences.reduceTransparency;
}

void WindowMaterial::paintEvent(QPaintEvent *)
{
    const Theme theme = Theme::of(this);
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), isTranslucent() ? Theme::withOpacity(theme.window, translucentOpacity) : theme.window);
}

bool WindowMaterial::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        update();
    return QWidget::event(event);
}
