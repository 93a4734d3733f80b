#pragma once

#include <QString>

namespace Pelorin {

// File names written inside skins, personal.ini and lyrics paths, which were often made on
// Windows: "\" separates folders there, and the file system did not care about letter case.
class FileNames {
public:
    // Every "\" read as "/".
    static QString WithSlashes(const QString& name);

    // `folder` followed by `relativeName` as it stands (no separator is added; a folder ends
    // with "/"), its backslashes read as "/". When that file does not exist with this exact
    // case, each component below `folder` is looked up case-insensitively in its own folder.
    // A name that matches nothing comes back unchanged apart from the slashes.
    static QString InFolder(const QString& folder, const QString& relativeName);

    // Names a skin gives (pictures, other skins) must not reach outside the skin's folder.
    // True when `relativeName` stays below whatever folder it is put behind (InFolder adds no
    // separator, so even a name that begins with "/" does): no ".." among its components ("\"
    // read as "/").
    static bool StaysBelow(const QString& relativeName);
    // True when `path`, followed through every link, is a file that exists inside `folder`.
    static bool ResolvesInside(const QString& folder, const QString& path);
    // True when `relativeName` stays below `folder` and `path`, InFolder's answer for it, is
    // missing or resolves inside `folder` (a link out of the skin is not).
    static bool Confined(const QString& folder, const QString& relativeName, const QString& path);
    // A skin's name as showskin and the menus take it: one folder name, no separators, not "."
    // or "..".
    static bool IsPlainName(const QString& name);

    // The same fallback for a whole path: components that do not exist with their exact case
    // are looked up case-insensitively, from the first one that is missing.
    static QString Resolve(const QString& path);
};

} // namespace Pelorin
