#pragma once

#include <QList>
#include <QString>

#include <functional>

class QWidget;

// One picture the screenshot tool takes: a widget built for a language and an
// appearance. Register one with a static Scene::Registration in any file of the
// tool; the tool renders every scene in every language, light and dark.
struct Scene
{
    struct Context
    {
        QString language; // "en", "zh-Hans", ...
        bool dark = false;
    };
    using Builder = std::function<QWidget *(const Context &)>;

    QString name;
    Builder build;

    static QList<Scene> &all();

    struct Registration
    {
        Registration(const char *name, Builder build);
    };
};

// A titled, panel-wide column to arrange a scene's parts in.
class SceneSheet
{
public:
    explicit SceneSheet(int width = 320);

    // A small caption above the next parts, in plain English for the reader.
    void caption(const QString &text);
    void add(QWidget *part);
    QWidget *widget() const { return m_root; }

private:
    QWidget *m_root;
};
