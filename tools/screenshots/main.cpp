// Renders every registered scene in every language, light and dark, into PNG
// files named <scene>.<language>.<light|dark>.png. Arguments: the output
// folder, then optionally the names of the scenes to render.
#include "Scene.h"

#include "app/ui/look/Theme.h"
#include "core/l10n/L10n.h"

#include <QApplication>
#include <QDir>
#include <QTextStream>
#include <QWidget>

#include <memory>

namespace {

// The CJK face a desktop in that language would pick for Han characters.
QString cjkFamily(const QString &language)
{
    if (language == QLatin1String("ja"))
        return QStringLiteral("Noto Sans CJK JP");
    if (language == QLatin1String("ko"))
        return QStringLiteral("Noto Sans CJK KR");
    if (language == QLatin1String("zh-Hant"))
        return QStringLiteral("Noto Sans CJK TC");
    return QStringLiteral("Noto Sans CJK SC");
}

void settle()
{
    for (int turn = 0; turn < 4; ++turn) {
        QCoreApplication::sendPostedEvents();
        QApplication::processEvents();
    }
}

void fitToContent(QWidget *widget)
{
    // Wrapped text needs its height for the sheet's own width, not for the widest line.
    const int width = widget->minimumWidth() == widget->maximumWidth() ? widget->width() : widget->sizeHint().width();
    widget->resize(width, widget->hasHeightForWidth() ? widget->heightForWidth(width) : widget->sizeHint().height());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments().mid(1);
    const QDir output(arguments.value(0, QStringLiteral("screenshots")));
    const QStringList only = arguments.mid(1);
    QDir().mkpath(output.path());
    const QFont systemFont = QApplication::font();
    QTextStream out(stdout);

    int written = 0;
    for (const L10n::Language &language : L10n::supported()) {
        L10n::setLanguageCode(language.code);
        QFont font = systemFont;
        // Desktops in Chinese, Japanese or Korean put their CJK face first.
        const QString cjk = cjkFamily(language.code);
        font.setFamilies(language.code == QLatin1String("en") ? QStringList{QStringLiteral("DejaVu Sans"), cjk}
                                                              : QStringList{cjk, QStringLiteral("DejaVu Sans")});
        QApplication::setFont(font);
        for (const bool dark : {false, true}) {
            QApplication::setPalette(Theme::standardPalette(dark));
            for (const Scene &scene : std::as_const(Scene::all())) {
                if (!only.isEmpty() && !only.contains(scene.name))
                    continue;
                const std::unique_ptr<QWidget> widget(scene.build({language.code, dark}));
                widget->setAttribute(Qt::WA_DontShowOnScreen);
                widget->show();
                // Views finish some of their work on the next turns of the event
                // loop (rows built, sizes fitted); the picture waits for them.
                for (int round = 0; round < 3; ++round) {
                    settle();
                    fitToContent(widget.get());
                }
                const QString file = output.filePath(
                    QStringLiteral("%1.%2.%3.png")
                        .arg(scene.name, language.code, dark ? QStringLiteral("dark") : QStringLiteral("light")));
                if (!widget->grab().save(file)) {
                    out << "could not write " << file << Qt::endl;
                    return 1;
                }
                ++written;
            }
        }
    }
    out << written << " screenshots in " << output.absolutePath() << Qt::endl;
    return written > 0 ? 0 : 1;
}
