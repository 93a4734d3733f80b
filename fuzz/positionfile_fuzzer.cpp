// position.ini as a skin may ship it: any bytes. Reading applies what it can and fails cleanly;
// nothing it holds may crash the reader or give a position that is not a number.
#include "base/PositionFile.h"
#include "base/VbError.h"

#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Pelorin;
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("position.ini"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            std::abort();
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    }
    const auto check = [](double twips) {
        if (std::isnan(twips))
            std::abort();
    };
    try {
        ReadPositionFile(path, check, check);
    } catch (const VbError&) {
    }
    return 0;
}
