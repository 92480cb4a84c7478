#include "Scene.h"

#include <QFont>
#include <QLabel>
#include <QPalette>
#include <QVBoxLayout>
#include <QWidget>

QList<Scene> &Scene::all()
{
    static QList<Scene> scenes;
    return scenes;
}

Scene::Registration::Registration(const char *name, Builder build)
{
    all().append({QString::fromUtf8(name), std::move(build)});
}

SceneSheet::SceneSheet(int width)
    : m_root(new QWidget)
{
    m_root->setFixedWidth(width);
    m_root->setAutoFillBackground(true);
    auto *column = new QVBoxLayout(m_root);
    column->setContentsMargins(14, 10, 14, 14);
    column->setSpacing(8);
}

void SceneSheet::caption(const QString &text)
{
    auto *label = new QLabel(text.toUpper(), m_root);
    QFont font = label->font();
    font.setPixelSize(9);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, QColor(0x88, 0x88, 0x88));
    label->setPalette(palette);
    m_root->layout()->addWidget(label);
}

void SceneSheet::add(QWidget *part)
{
    part->setParent(m_root);
    m_root->layout()->addWidget(part);
}
