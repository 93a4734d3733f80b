#include "platform/PictureLoader.h"

#include "base/VbError.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

using Pelorin::LoadPicture;
using Pelorin::VbError;

namespace {

class PictureLoading : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString Path(const char* name) const { return dir.filePath(QString::fromUtf8(name)); }

    void WriteBytes(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    // Left half opaque red, right half fully transparent.
    static QImage HalfTransparent() {
        QImage image(20, 10, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        for (int y = 0; y < 10; ++y)
            for (int x = 0; x < 10; ++x)
                image.setPixel(x, y, qRgba(255, 0, 0, 255));
        return image;
    }

    static void ExpectCannotLoadFile(const QString& path) {
        try {
            LoadPicture(path);
            ADD_FAILURE() << "expected the picture " << path.toStdString() << " to be refused";
        } catch (const VbError& e) {
            EXPECT_EQ(e.number(), 5);
            EXPECT_EQ(e.description(), QStringLiteral("Cannot load file"));
        }
    }
};

// A PNG chunk: length, type, data, CRC of type and data.
QByteArray Chunk(const char* type, const QByteArray& data) {
    QByteArray body = QByteArray(type, 4) + data;
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : body) {
        crc ^= static_cast<quint8>(byte);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    crc ^= 0xFFFFFFFFu;
    QByteArray out(4, '\0');
    qToBigEndian(static_cast<quint32>(data.size()), out.data());
    out += body;
    QByteArray tail(4, '\0');
    qToBigEndian(crc, tail.data());
    return out + tail;
}

// A real, decodable black-and-white PNG of the given size; all-zero rows compress to almost
// nothing, so the file stays small however large the picture.
QByteArray LargeMonochromePng(quint32 width, quint32 height) {
    QByteArray header(13, '\0');
    qToBigEndian(width, header.data());
    qToBigEndian(height, header.data() + 4);
    header[8] = 1; // bit depth
    header[9] = 0; // greyscale
    const qsizetype rowBytes = 1 + (width + 7) / 8;
    const QByteArray raw(rowBytes * height, '\0');
    const QByteArray zlib = qCompress(raw, 9).mid(4); // drop Qt's length prefix
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + Chunk("IHDR", header) + Chunk("IDAT", zlib) +
           Chunk("IEND", QByteArray());
}

} // namespace

TEST_F(PictureLoading, MissingPictureIsErrorFiveCannotLoadFile) {
    ExpectCannotLoadFile(Path("no-such-picture.png"));
}

TEST_F(PictureLoading, PngKeepsItsTransparency) {
    ASSERT_TRUE(HalfTransparent().save(Path("half.png")));
    const QImage image = LoadPicture(Path("half.png"));
    EXPECT_EQ(image.size(), QSize(20, 10));
    EXPECT_TRUE(image.hasAlphaChannel());
    EXPECT_EQ(image.pixel(2, 2), qRgba(255, 0, 0, 255));
    // Transparent pixels are black with alpha 0.
    EXPECT_EQ(image.pixel(15, 5), qRgba(0, 0, 0, 0));
}

TEST_F(PictureLoading, PictureWhoseNameDoesNotTellItsFormatStillLoads) {
    ASSERT_TRUE(HalfTransparent().save(Path("really-a-png.bmp"), "PNG"));
    EXPECT_EQ(LoadPicture(Path("really-a-png.bmp")).size(), QSize(20, 10));
    QImage photo(12, 6, QImage::Format_RGB32);
    photo.fill(Qt::blue);
    ASSERT_TRUE(photo.save(Path("really-a-jpeg.png"), "JPEG"));
    EXPECT_EQ(LoadPicture(Path("really-a-jpeg.png")).size(), QSize(12, 6));
}

TEST_F(PictureLoading, HugePictureWithAPlainNameIsRefusedOnce) {
    QFile f(Path("huge-named.png"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(LargeMonochromePng(20000, 20000));
    f.close();
    ExpectCannotLoadFile(Path("huge-named.png"));
}

TEST_F(PictureLoading, JpegLoadsOpaque) {
    QImage source(16, 8, QImage::Format_RGB32);
    source.fill(QColor(0, 0, 255));
    ASSERT_TRUE(source.save(Path("blue.jpg"), "JPEG", 95));
    const QImage image = LoadPicture(Path("blue.jpg"));
    EXPECT_EQ(image.size(), QSize(16, 8));
    EXPECT_FALSE(image.hasAlphaChannel());
    EXPECT_GT(qBlue(image.pixel(4, 4)), 240);
    EXPECT_LT(qRed(image.pixel(4, 4)), 15);
}

TEST_F(PictureLoading, SvgLoadsWithTransparentBackground) {
    WriteBytes(Path("mark.svg"),
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40\" height=\"20\">"
               "<rect x=\"0\" y=\"0\" width=\"20\" height=\"20\" fill=\"#00ff00\"/></svg>");
    const QImage image = LoadPicture(Path("mark.svg"));
    EXPECT_EQ(image.size(), QSize(40, 20));
    EXPECT_EQ(image.pixel(5, 10), qRgba(0, 255, 0, 255));
    EXPECT_EQ(qAlpha(image.pixel(35, 10)), 0);
}

TEST_F(PictureLoading, GifAndBmpLoad) {
    ASSERT_TRUE(HalfTransparent().save(Path("half.bmp")));
    EXPECT_EQ(LoadPicture(Path("half.bmp")).size(), QSize(20, 10));
    if (QImageReader::supportedImageFormats().contains("gif")) {
        // Qt reads GIF but does not write it: a 1x1 GIF by hand.
        WriteBytes(Path("dot.gif"),
                   QByteArray::fromBase64("R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs="));
        EXPECT_EQ(LoadPicture(Path("dot.gif")).size(), QSize(1, 1));
    }
}

TEST_F(PictureLoading, WebPOfTheImagePluginsLoads) {
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const char* format : {"webp"}) {
        if (!formats.contains(format))
            continue;
        const QString path = Path("half.") + QString::fromLatin1(format);
        ASSERT_TRUE(HalfTransparent().save(path, format));
        const QImage image = LoadPicture(path);
        EXPECT_EQ(image.size(), QSize(20, 10)) << format;
        EXPECT_EQ(qAlpha(image.pixel(15, 5)), 0) << format;
    }
}

TEST_F(PictureLoading, FormatsBeyondTheCommonOnesAreNotDecodedWhateverTheName) {
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const char* format : {"tiff", "ico", "ppm", "xpm"}) {
        if (!formats.contains(format))
            continue;
        const QString path = Path("half.") + QString::fromLatin1(format);
        ASSERT_TRUE(HalfTransparent().save(path, format)) << format;
        ExpectCannotLoadFile(path);
        // Named as a PNG, the content still decides.
        const QString disguised =
            Path("disguised-") + QString::fromLatin1(format) + QStringLiteral(".png");
        ASSERT_TRUE(QFile::copy(path, disguised));
        ExpectCannotLoadFile(disguised);
    }
}

TEST_F(PictureLoading, ACoverMayNotBeADrawing) {
    WriteBytes(Path("cover.svg"),
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"4\" height=\"4\"/>");
    EXPECT_NO_THROW(LoadPicture(Path("cover.svg"), Pelorin::PictureUse::Skin));
    try {
        LoadPicture(Path("cover.svg"), Pelorin::PictureUse::Artwork);
        ADD_FAILURE() << "a drawing was read as a cover";
    } catch (const VbError& error) {
        EXPECT_EQ(error.number(), VbError::CannotLoadFileNumber);
    }
}

TEST_F(PictureLoading, CorruptPictureIsRefused) {
    WriteBytes(Path("garbage.png"), QByteArray("\x89PNG\r\n\x1a\n this is not a picture", 31));
    ExpectCannotLoadFile(Path("garbage.png"));
    WriteBytes(Path("text.jpg"), "plain text");
    ExpectCannotLoadFile(Path("text.jpg"));
}

TEST_F(PictureLoading, TruncatedPictureIsRefused) {
    ASSERT_TRUE(HalfTransparent().save(Path("whole.png")));
    QFile whole(Path("whole.png"));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    WriteBytes(Path("cut.png"), whole.readAll().left(40));
    ExpectCannotLoadFile(Path("cut.png"));
}

TEST_F(PictureLoading, EmptyFileAndFolderAreRefused) {
    WriteBytes(Path("empty.png"), QByteArray());
    ExpectCannotLoadFile(Path("empty.png"));
    ExpectCannotLoadFile(dir.path());
}

TEST_F(PictureLoading, HugePictureIsRefusedWithoutAllocatingIt) {
    WriteBytes(Path("huge.png"), LargeMonochromePng(20000, 20000));
    testing::internal::CaptureStderr();
    ExpectCannotLoadFile(Path("huge.png"));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("20000 x 20000"), std::string::npos) << err;
}

TEST_F(PictureLoading, TheRefusalLineIsADiagnosticThatLoggingRulesSilence) {
    WriteBytes(Path("huge.png"), LargeMonochromePng(20000, 20000));
    QLoggingCategory::setFilterRules(QStringLiteral("pelorin.picture.warning=false"));
    testing::internal::CaptureStderr();
    ExpectCannotLoadFile(Path("huge.png"));
    const std::string silenced = testing::internal::GetCapturedStderr();
    QLoggingCategory::setFilterRules(QString());
    EXPECT_EQ(silenced.find("20000 x 20000"), std::string::npos) << silenced;
    // Without a rule the line prints bare, as the program's own lines always have.
    testing::internal::CaptureStderr();
    ExpectCannotLoadFile(Path("huge.png"));
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_EQ(shown.rfind("Pelorin: ", 0), 0u) << shown;
}

TEST_F(PictureLoading, HugeSvgIsRefused) {
    WriteBytes(Path("huge.svg"),
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20000\" height=\"20000\">"
               "<rect width=\"10\" height=\"10\"/></svg>");
    testing::internal::CaptureStderr();
    ExpectCannotLoadFile(Path("huge.svg"));
    testing::internal::GetCapturedStderr();
}

TEST_F(PictureLoading, PictureJustInsideTheLimitLoads) {
    WriteBytes(Path("big.png"), LargeMonochromePng(4000, 3000));
    EXPECT_EQ(LoadPicture(Path("big.png")).size(), QSize(4000, 3000));
}
