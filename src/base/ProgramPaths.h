#pragma once

#include <QString>

namespace Pelorin {

// Where the program folder may come from, in the order they are tried. FromEnvironment() fills it
// for the running program; tests fill it by hand.
struct ProgramFolderSources {
    // $PELORIN_HOME; empty when unset.
    QString PelorinHome;
    // The folder of the running executable.
    QString ExecutableFolder;
    // $XDG_DATA_HOME, or ~/.local/share.
    QString DataHome;
    // The installed data (<prefix>/share/pelorin) that seeds a new per-user program folder.
    QString InstalledData;

    static ProgramFolderSources FromEnvironment();
};

// The folders the program works in. Paths use "/" and every folder ends with "/".
class ProgramPaths {
public:
    // Uses `programFolder` as it is (a "/" is appended when missing).
    explicit ProgramPaths(const QString& programFolder);

    // $PELORIN_HOME if set; else the executable's folder when it has a Skins/ subfolder (a build
    // tree or a portable copy); else <data home>/pelorin, created when missing and seeded from the
    // installed data. Seeding copies only files that are missing and were never seeded before, so
    // nothing the user changed or deleted comes back. Messages about failures go to `error`.
    static ProgramPaths Resolve(const ProgramFolderSources& sources, QString* error = nullptr);

    const QString& ProgramFolder() const { return m_programFolder; }
    // <program folder>/Skins/
    QString SkinsFolder() const;
    // <program folder>/Skins/<name>/
    QString SkinFolder(const QString& skinName) const;
    // <program folder>/Deskband/Default/
    QString DeskbandFolder() const;
    // <program folder>/Lyrics/
    QString LyricsFolder() const;

    // The per-user temporary folder: $XDG_RUNTIME_DIR/pelorin/, else <system temp>/pelorin-<uid>/,
    // created with mode 0700. A folder that exists but belongs to another user, is a symbolic
    // link or is not a folder is refused: the result is empty and `error` says why.
    static QString TemporaryFolder(QString* error = nullptr);
    // Where the per-user instance lock lives: the temporary folder (inside $XDG_RUNTIME_DIR when
    // there is one).
    static QString RuntimeFolder(QString* error = nullptr);
    // The instance lock file in the runtime folder; empty when there is no usable folder.
    static QString InstanceLockFile(QString* error = nullptr);

    // Copies every file of `from` into `to` that is missing there and not listed in the seed
    // record of `to`, then records it. Returns false with `error` set when a copy fails.
    static bool Seed(const QString& from, const QString& to, QString* error = nullptr);

private:
    QString m_programFolder;
};

} // namespace Pelorin
