#include "TagWriter.h"

#include "CoverPainter.h"

#include <QFile>
#include <QFileInfo>
#include <taglib/attachedpictureframe.h>
#include <taglib/flacfile.h>
#include <taglib/flacpicture.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

namespace Pelorin {

namespace {

TagLib::String ToTag(const QString& text) {
    return TagLib::String(text.toUtf8().constData(), TagLib::String::UTF8);
}

TagLib::PropertyMap Properties(const TrackSpec& track) {
    TagLib::PropertyMap map;
    auto put = [&map](const char* key, const QString& value) {
        if (!value.isEmpty()) {
            map.replace(key, TagLib::StringList(ToTag(value)));
        }
    };
    if (!track.tagged) {
        return map;
    }
    put("TITLE", track.title);
    put("ARTIST", track.artist);
    put("ALBUM", track.album);
    put("ALBUMARTIST", track.albumArtist);
    put("COMMENT", track.comment);
    put("GENRE", track.genre);
    put("COMPOSER", track.composer);
    put("TRACKNUMBER", track.trackNumber);
    if (track.year > 0) {
        put("DATE", QString::number(track.year));
    }
    if (track.bpm > 0) {
        put("BPM", QString::number(track.bpm));
    }
    if (track.compilation) {
        put("COMPILATION", QStringLiteral("1"));
    }
    return map;
}

TagLib::FLAC::Picture* FlacPicture(const TrackSpec& track, const QByteArray& cover) {
    auto* picture = new TagLib::FLAC::Picture;
    picture->setType(TagLib::FLAC::Picture::FrontCover);
    picture->setMimeType(ToTag(CoverPainter::MimeType(track.coverFormat)));
    picture->setDescription(ToTag(QStringLiteral("Front cover")));
    picture->setWidth(CoverPainter::Size);
    picture->setHeight(CoverPainter::Size);
    picture->setColorDepth(24);
    picture->setData(TagLib::ByteVector(cover.constData(), static_cast<unsigned>(cover.size())));
    return picture;
}

QString Failed(const QString& path) {
    return QStringLiteral("TagLib could not write the tags of %1").arg(path);
}

QString WriteVorbis(const QString& path, const TrackSpec& track, const QByteArray& cover) {
    TagLib::Ogg::Vorbis::File file(QFile::encodeName(path).constData());
    if (!file.isValid() || file.tag() == nullptr) {
        return Failed(path);
    }
    file.tag()->removeAllFields();
    file.tag()->removeAllPictures();
    file.tag()->setProperties(Properties(track));
    if (!cover.isEmpty()) {
        file.tag()->addPicture(FlacPicture(track, cover));
    }
    return file.save() ? QString() : Failed(path);
}

QString WriteFlac(const QString& path, const TrackSpec& track, const QByteArray& cover) {
    TagLib::FLAC::File file(QFile::encodeName(path).constData());
    if (!file.isValid()) {
        return Failed(path);
    }
    file.removePictures();
    file.strip(TagLib::FLAC::File::ID3v1 | TagLib::FLAC::File::ID3v2);
    TagLib::Ogg::XiphComment* comment = file.xiphComment(true);
    comment->removeAllFields();
    comment->setProperties(Properties(track));
    if (!cover.isEmpty()) {
        file.addPicture(FlacPicture(track, cover));
    }
    return file.save() ? QString() : Failed(path);
}

QString WriteMp3(const QString& path, const TrackSpec& track, const QByteArray& cover) {
    TagLib::MPEG::File file(QFile::encodeName(path).constData());
    if (!file.isValid()) {
        return Failed(path);
    }
    if (!track.tagged) {
        // Strip returns false when there was nothing to strip; either way the file has no tags.
        file.strip(TagLib::MPEG::File::AllTags);
        return QString();
    }
    TagLib::ID3v2::Tag* tag = file.ID3v2Tag(true);
    tag->setProperties(Properties(track));
    tag->removeFrames("APIC");
    if (!cover.isEmpty()) {
        auto* frame = new TagLib::ID3v2::AttachedPictureFrame;
        frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
        frame->setMimeType(ToTag(CoverPainter::MimeType(track.coverFormat)));
        frame->setDescription(ToTag(QStringLiteral("Front cover")));
        frame->setPicture(
            TagLib::ByteVector(cover.constData(), static_cast<unsigned>(cover.size())));
        tag->addFrame(frame);
    }
    const bool saved = file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers,
                                 TagLib::ID3v2::v4, TagLib::File::DoNotDuplicate);
    return saved ? QString() : Failed(path);
}

} // namespace

QString TagWriter::Write(const QString& path, const TrackSpec& track, const QByteArray& cover) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"ogg") {
        return WriteVorbis(path, track, cover);
    }
    if (suffix == u"flac") {
        return WriteFlac(path, track, cover);
    }
    if (suffix == u"mp3") {
        return WriteMp3(path, track, cover);
    }
    return QStringLiteral("no tag writer for %1").arg(path);
}

} // namespace Pelorin
