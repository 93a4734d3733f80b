#include "player/daemon/TagFile.h"

#include "base/VbError.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTemporaryFile>
#include <sys/stat.h>
#include <taglib/attachedpictureframe.h>
#include <taglib/fileref.h>
#include <taglib/flacfile.h>
#include <taglib/flacpicture.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/opusfile.h>
#include <taglib/tfilestream.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>
#include <unistd.h>

namespace Pelorin::TagFile {

namespace {

TagLib::String ToTag(const QString& text) {
    return TagLib::String(text.toUtf8().constData(), TagLib::String::UTF8);
}

QString FromTag(const TagLib::String& text) {
    return QString::fromUtf8(text.toCString(true));
}

QByteArray FromBytes(const TagLib::ByteVector& bytes) {
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

TagLib::ByteVector ToBytes(const QByteArray& bytes) {
    return TagLib::ByteVector(bytes.constData(), static_cast<unsigned>(bytes.size()));
}

QString MimeType(const QByteArray& picture) {
    return picture.startsWith("\x89PNG") ? QStringLiteral("image/png")
                                         : QStringLiteral("image/jpeg");
}

// A music file opened for reading only: looking at tags needs no write access, and must not hold
// the file open for writing (TagLib opens read-write whenever it may).
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(const QString& path)
        : m_stream(QFile::encodeName(path).constData(), true),
          m_file(m_stream.isOpen() ? TagLib::FileRef(&m_stream) : TagLib::FileRef()) {}
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;

    const TagLib::FileRef& Ref() const { return m_file; }

private:
    TagLib::FileStream m_stream;
    TagLib::FileRef m_file;
};

// Opens the copy at `path` for reading and writing tags; throws, naming the user's file `shown`,
// when that is not possible.
TagLib::FileRef Open(const QString& path, const QString& shown) {
    TagLib::FileRef file(QFile::encodeName(path).constData());
    if (file.isNull() || !file.file()->isValid()) {
        throw VbError::Player(QStringLiteral("Cannot read the tags of ") + shown);
    }
    return file;
}

void Save(TagLib::FileRef& file, const QString& path) {
    if (file.file()->readOnly() || !file.save()) {
        throw VbError::Player(QStringLiteral("Cannot write the tags of %1").arg(path));
    }
}

// The user's music is never edited in place: a crash or a full disk in the middle of a save
// would leave a damaged file. A copy beside it (same folder, so the same file system) is edited,
// flushed to the disk, given the original's mode and owner, and renamed over the original in one
// step; when anything fails the copy goes and the original is as it was.
class EditCopy {
public:
    explicit EditCopy(const QString& path) : m_target(QFileInfo(path).canonicalFilePath()) {
        if (m_target.isEmpty())
            throw VbError::Player(QStringLiteral("The track's file %1 does not exist").arg(path));
        const QFileInfo target(m_target);
        // The copy needs room for a whole second file, and the edit a little more.
        const QStorageInfo storage(target.absolutePath());
        if (storage.isValid() && storage.bytesAvailable() < target.size() + 1024 * 1024) {
            throw VbError::Player(
                QStringLiteral("Not enough free space to change the tags of %1").arg(path));
        }
        // The same extension: TagLib tells the format by it.
        m_copy.setFileTemplate(target.absolutePath() + QStringLiteral("/.") +
                               target.completeBaseName() + QStringLiteral(".pelorin-XXXXXX.") +
                               target.suffix());
        QFile original(m_target);
        if (!m_copy.open() || !original.open(QIODevice::ReadOnly))
            throw VbError::Player(QStringLiteral("Cannot write the tags of %1").arg(path));
        while (!original.atEnd()) {
            const QByteArray chunk = original.read(1024 * 1024);
            if (chunk.isEmpty() || m_copy.write(chunk) != chunk.size())
                throw VbError::Player(QStringLiteral("Cannot write the tags of %1").arg(path));
        }
        struct stat status {};
        if (::fstat(original.handle(), &status) == 0) {
            ::fchmod(m_copy.handle(), status.st_mode & 07777);
            // Only possible for the owner's own files or as root; otherwise the user owns it.
            [[maybe_unused]] const int owned =
                ::fchown(m_copy.handle(), status.st_uid, status.st_gid);
        }
        m_copy.close();
    }

    QString CopyPath() const { return m_copy.fileName(); }

    // Puts the edited copy in the original's place; throws when it cannot.
    void Commit(const QDateTime& notBefore) {
        {
            QFile written(CopyPath());
            if (!written.open(QIODevice::ReadWrite) || ::fsync(written.handle()) != 0)
                throw VbError::Player(QStringLiteral("Cannot write the tags of %1").arg(m_target));
            // The daemon rescans a file only when its modification time (whole seconds) moved.
            if (QFileInfo(CopyPath()).lastModified().toSecsSinceEpoch() <=
                notBefore.toSecsSinceEpoch())
                written.setFileTime(notBefore.addSecs(1), QFileDevice::FileModificationTime);
        }
        if (::rename(QFile::encodeName(CopyPath()).constData(),
                     QFile::encodeName(m_target).constData()) != 0)
            throw VbError::Player(QStringLiteral("Cannot write the tags of %1").arg(m_target));
        m_copy.setAutoRemove(false);
    }

private:
    QString m_target;
    QTemporaryFile m_copy;
};

// Copies the file, lets `edit` change the copy, saves and closes it, then puts it in place of the
// original (see EditCopy).
template <typename Edit> void EditFile(const QString& path, Edit edit) {
    if (path.isEmpty())
        throw VbError::Player(QStringLiteral("The track is not a file on this computer"));
    if (!QFileInfo::exists(path))
        throw VbError::Player(QStringLiteral("The track's file %1 does not exist").arg(path));
    const QDateTime before = QFileInfo(path).lastModified();
    EditCopy copy(path);
    {
        TagLib::FileRef file = Open(copy.CopyPath(), path);
        edit(file);
        Save(file, path);
    }
    copy.Commit(before);
}

std::unique_ptr<TagLib::FLAC::Picture> FlacPicture(const QByteArray& picture) {
    auto result = std::make_unique<TagLib::FLAC::Picture>();
    result->setType(TagLib::FLAC::Picture::FrontCover);
    result->setMimeType(ToTag(MimeType(picture)));
    result->setData(ToBytes(picture));
    return result;
}

// Front covers first, then the rest, in the file's order.
template <typename Picture, typename Type, typename Data>
QList<QByteArray> Ordered(const TagLib::List<Picture>& pictures, Type frontCover, Data data) {
    QList<QByteArray> front;
    QList<QByteArray> others;
    for (const Picture& picture : pictures) {
        (picture->type() == frontCover ? front : others).append(FromBytes(data(picture)));
    }
    return front + others;
}

void EmbedInXiph(TagLib::Ogg::XiphComment* comment, const QByteArray& picture) {
    if (!comment) {
        throw VbError::Player(QStringLiteral("The file has no tag block for pictures"));
    }
    for (TagLib::FLAC::Picture* existing : comment->pictureList()) {
        if (existing->type() == TagLib::FLAC::Picture::FrontCover) {
            comment->removePicture(existing, true);
        }
    }
    comment->addPicture(FlacPicture(picture).release());
}

} // namespace

Facts ReadFacts(const QString& path) {
    Facts facts;
    if (path.isEmpty() || !QFileInfo::exists(path)) {
        return facts;
    }
    const ReadOnlyFile opened(path);
    const TagLib::FileRef& file = opened.Ref();
    if (file.isNull()) {
        return facts;
    }
    if (const TagLib::AudioProperties* audio = file.audioProperties()) {
        facts.bitRate = audio->bitrate();
    }
    const TagLib::PropertyMap properties = file.file()->properties();
    const auto value = [&properties](const char* key) {
        const auto it = properties.find(key);
        return it == properties.end() || it->second.isEmpty() ? QString()
                                                              : FromTag(it->second.front());
    };
    facts.bpm = value("BPM").toInt();
    const QString compilation = value("COMPILATION");
    facts.compilation = !compilation.isEmpty() && compilation != QLatin1String("0");
    return facts;
}

QString PropertyKey(TrackProperty property) {
    switch (property) {
    case TrackProperty::Name:
        return QStringLiteral("TITLE");
    case TrackProperty::Artist:
        return QStringLiteral("ARTIST");
    case TrackProperty::Album:
        return QStringLiteral("ALBUM");
    case TrackProperty::AlbumArtist:
        return QStringLiteral("ALBUMARTIST");
    case TrackProperty::Composer:
        return QStringLiteral("COMPOSER");
    case TrackProperty::Genre:
        return QStringLiteral("GENRE");
    case TrackProperty::Comment:
        return QStringLiteral("COMMENT");
    case TrackProperty::Grouping:
        return QStringLiteral("GROUPING");
    case TrackProperty::TrackNumber:
        return QStringLiteral("TRACKNUMBER");
    case TrackProperty::DiscNumber:
        return QStringLiteral("DISCNUMBER");
    case TrackProperty::Year:
        return QStringLiteral("DATE");
    case TrackProperty::BPM:
        return QStringLiteral("BPM");
    case TrackProperty::Compilation:
        return QStringLiteral("COMPILATION");
    default:
        return QString();
    }
}

void WriteProperty(const QString& path, TrackProperty property, const QString& value) {
    if (value.size() > MaxTagValue) {
        throw VbError::Player(
            QStringLiteral("A tag value may be at most %1 characters").arg(MaxTagValue));
    }
    const QString key = PropertyKey(property);
    if (key.isEmpty()) {
        throw VbError::Player(
            QStringLiteral("%1 is not kept in the track's file").arg(TrackPropertyName(property)));
    }
    EditFile(path, [&](TagLib::FileRef& file) {
        TagLib::PropertyMap properties = file.file()->properties();
        QStringList keys{key};
        // The daemon reads an MP3's grouping from the content-group frame, which TagLib names
        // CONTENTGROUP (WORK in later TagLib versions).
        const bool mpeg = dynamic_cast<TagLib::MPEG::File*>(file.file()) != nullptr;
        if (property == TrackProperty::Grouping && mpeg) {
            keys << QStringLiteral("CONTENTGROUP");
        }
        for (const QString& name : keys) {
            if (value.isEmpty()) {
                properties.erase(ToTag(name));
            } else {
                properties.replace(ToTag(name), TagLib::StringList(ToTag(value)));
            }
        }
        const TagLib::PropertyMap refused = file.file()->setProperties(properties);
        if (refused.contains(ToTag(key))) {
            throw VbError::Player(QStringLiteral("The file %1 cannot hold the tag %2")
                                      .arg(path, TrackPropertyName(property)));
        }
    });
}

QList<QByteArray> Pictures(const QString& path) {
    if (path.isEmpty() || !QFileInfo::exists(path)) {
        return {};
    }
    const ReadOnlyFile opened(path);
    const TagLib::FileRef& file = opened.Ref();
    if (file.isNull()) {
        return {};
    }
    const auto flacData = [](TagLib::FLAC::Picture* picture) { return picture->data(); };
    if (auto* flac = dynamic_cast<TagLib::FLAC::File*>(file.file())) {
        return Ordered(flac->pictureList(), TagLib::FLAC::Picture::FrontCover, flacData);
    }
    if (auto* vorbis = dynamic_cast<TagLib::Ogg::Vorbis::File*>(file.file())) {
        if (vorbis->tag()) {
            return Ordered(vorbis->tag()->pictureList(), TagLib::FLAC::Picture::FrontCover,
                           flacData);
        }
        return {};
    }
    if (auto* opus = dynamic_cast<TagLib::Ogg::Opus::File*>(file.file())) {
        if (opus->tag()) {
            return Ordered(opus->tag()->pictureList(), TagLib::FLAC::Picture::FrontCover, flacData);
        }
        return {};
    }
    if (auto* mpeg = dynamic_cast<TagLib::MPEG::File*>(file.file())) {
        TagLib::List<TagLib::ID3v2::AttachedPictureFrame*> frames;
        if (mpeg->hasID3v2Tag()) {
            for (TagLib::ID3v2::Frame* frame : mpeg->ID3v2Tag()->frameList("APIC")) {
                if (auto* picture = dynamic_cast<TagLib::ID3v2::AttachedPictureFrame*>(frame)) {
                    frames.append(picture);
                }
            }
        }
        return Ordered(frames, TagLib::ID3v2::AttachedPictureFrame::FrontCover,
                       [](TagLib::ID3v2::AttachedPictureFrame* frame) { return frame->picture(); });
    }
    if (auto* mp4 = dynamic_cast<TagLib::MP4::File*>(file.file())) {
        QList<QByteArray> pictures;
        if (mp4->tag() && mp4->tag()->contains("covr")) {
            for (const TagLib::MP4::CoverArt& cover : mp4->tag()->item("covr").toCoverArtList()) {
                pictures.append(FromBytes(cover.data()));
            }
        }
        return pictures;
    }
    return {};
}

bool IsPngOrJpeg(const QByteArray& picture) {
    return picture.startsWith("\x89PNG\r\n\x1a\n") || picture.startsWith("\xff\xd8\xff");
}

void EmbedFrontCover(const QString& path, const QByteArray& picture) {
    EditFile(path, [&](TagLib::FileRef& file) {
        if (auto* flac = dynamic_cast<TagLib::FLAC::File*>(file.file())) {
            for (TagLib::FLAC::Picture* existing : flac->pictureList()) {
                if (existing->type() == TagLib::FLAC::Picture::FrontCover) {
                    flac->removePicture(existing, true);
                }
            }
            flac->addPicture(FlacPicture(picture).release());
        } else if (auto* vorbis = dynamic_cast<TagLib::Ogg::Vorbis::File*>(file.file())) {
            EmbedInXiph(vorbis->tag(), picture);
        } else if (auto* opus = dynamic_cast<TagLib::Ogg::Opus::File*>(file.file())) {
            EmbedInXiph(opus->tag(), picture);
        } else if (auto* mpeg = dynamic_cast<TagLib::MPEG::File*>(file.file())) {
            TagLib::ID3v2::Tag* tag = mpeg->ID3v2Tag(true);
            const TagLib::ID3v2::FrameList frames = tag->frameList("APIC");
            for (TagLib::ID3v2::Frame* frame : frames) {
                auto* existing = dynamic_cast<TagLib::ID3v2::AttachedPictureFrame*>(frame);
                if (existing &&
                    existing->type() == TagLib::ID3v2::AttachedPictureFrame::FrontCover) {
                    tag->removeFrame(existing, true);
                }
            }
            auto frame = std::make_unique<TagLib::ID3v2::AttachedPictureFrame>();
            frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
            frame->setMimeType(ToTag(MimeType(picture)));
            frame->setPicture(ToBytes(picture));
            tag->addFrame(frame.release());
        } else if (auto* mp4 = dynamic_cast<TagLib::MP4::File*>(file.file())) {
            const TagLib::MP4::CoverArt::Format format =
                MimeType(picture) == QLatin1String("image/png") ? TagLib::MP4::CoverArt::PNG
                                                                : TagLib::MP4::CoverArt::JPEG;
            TagLib::MP4::CoverArtList covers;
            covers.append(TagLib::MP4::CoverArt(format, ToBytes(picture)));
            mp4->tag()->setItem("covr", covers);
        } else {
            throw VbError::Player(QStringLiteral("The file %1 cannot hold pictures").arg(path));
        }
    });
}

} // namespace Pelorin::TagFile
