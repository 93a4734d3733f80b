// make-demo-library: writes the demo library a new user hears, or the test library the player
// tests run against, into a folder. The same options give the same bytes on every run.
#include "LibraryCatalog.h"
#include "LibraryGenerator.h"
#include "TrackAudio.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("make-demo-library"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Generates a small music library with tags and covers for Pelorin's demo or tests."));
    parser.addHelpOption();
    const QCommandLineOption demo(QStringLiteral("demo"),
                                  QStringLiteral("The demo library: six tunes on three albums."));
    const QCommandLineOption test(
        QStringLiteral("test"),
        QStringLiteral("The test library: short tones in every format, tags and covers."));
    const QCommandLineOption playlists(
        QStringLiteral("playlists"),
        QStringLiteral("Also write the library's stored playlists (.m3u) into <folder>."),
        QStringLiteral("folder"));
    const QCommandLineOption sox(QStringLiteral("sox"),
                                 QStringLiteral("The sox program to encode with (default sox)."),
                                 QStringLiteral("program"), QStringLiteral("sox"));
    parser.addOptions({demo, test, playlists, sox});
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("Where the library goes (replaced if it exists)."));
    parser.process(app);

    QTextStream err(stderr);
    if (parser.isSet(demo) == parser.isSet(test) || parser.positionalArguments().size() != 1) {
        err << "make-demo-library: give exactly one of --demo and --test, and one folder\n";
        return 2;
    }
    const Pelorin::LibraryKind kind =
        parser.isSet(demo) ? Pelorin::LibraryKind::Demo : Pelorin::LibraryKind::Test;
    const Pelorin::LibraryGenerator generator(Pelorin::CatalogFor(kind),
                                              Pelorin::TrackAudio(parser.value(sox)));
    QString error = generator.Generate(parser.positionalArguments().constFirst(),
                                       kind == Pelorin::LibraryKind::Demo
                                           ? QStringLiteral("Pelorin demo library 1\n")
                                           : QStringLiteral("Pelorin test library 1\n"));
    if (error.isEmpty() && parser.isSet(playlists)) {
        error = generator.WritePlaylists(parser.value(playlists));
    }
    if (!error.isEmpty()) {
        err << "make-demo-library: " << error << '\n';
        return 1;
    }
    return 0;
}
