// Takes a picture of the windows in each of their main states, in light and in dark:
//   gallery [--text FACTOR] [--mirrored] FOLDER [NAME]...    all of them, or those named; QT_SCALE_FACTOR gives the
//   scale
#include "Scene.h"

#include "Views/WindowBench.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QTextStream>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using ColorScheme = DesktopSettings::ColorScheme;

int main(int argc, char *argv[]) {
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(u"folder"_s, u"Where the pictures go."_s);
    parser.addPositionalArgument(u"names"_s, u"The states to show; all when there is none."_s);
    const QCommandLineOption text(u"text"_s, u"How much larger the text is than usual."_s, u"factor"_s, u"1"_s);
    const QCommandLineOption mirrored(u"mirrored"_s, u"The layout runs from right to left."_s);
    parser.addOptions({text, mirrored});
    parser.process(application);
    if (parser.isSet(mirrored))
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QStringList names = parser.positionalArguments();
    if (names.isEmpty())
        parser.showHelp(1);
    const QDir folder(names.takeFirst());
    if (!folder.mkpath(u"."_s))
        qFatal("The folder %s can't be made", qPrintable(folder.path()));

    const bool isEverything = names.isEmpty();
    QTextStream out(stdout);
    for (const auto &scenes : {mainScenes(), setupScenes(), settingsScenes()}) {
        for (const Scene &scene : scenes) {
            if (!isEverything && names.removeAll(scene.name) == 0)
                continue;
            for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
                const auto theme = scheme == ColorScheme::dark ? u"dark"_s : u"light"_s;
                const QString path = folder.filePath(scene.name + u'-' + theme + u".png"_s);
                const QImage picture = scene.picture({scheme, parser.value(text).toDouble()});
                if (picture.isNull() || !picture.save(path))
                    qFatal("%s can't be written", qPrintable(path));
                settleDown();
                out << path << Qt::endl;
            }
        }
    }
    if (!names.isEmpty())
        qFatal("There is no state named %s", qPrintable(names.join(u' ')));
    return 0;
}
