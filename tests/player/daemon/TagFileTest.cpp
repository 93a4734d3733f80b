// Reading a music file's own tags and pictures: the file is opened for reading only, so looking
// at a track never needs (or takes) write access to the user's music.
#include "player/daemon/TagFile.h"

#include "PlayerDaemonFixture.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace Pelorin {
namespace {

// Counts how the file was closed: after writing access or after reading only.
class CloseWatch {
public:
    explicit CloseWatch(const QString& path) : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (m_fd >= 0)
            inotify_add_watch(m_fd, QFile::encodeName(path).constData(),
                              IN_CLOSE_WRITE | IN_CLOSE_NOWRITE);
    }
    ~CloseWatch() {
        if (m_fd >= 0)
            close(m_fd);
    }
    CloseWatch(const CloseWatch&) = delete;
    CloseWatch& operator=(const CloseWatch&) = delete;

    bool Valid() const { return m_fd >= 0; }

    void Collect() {
        alignas(inotify_event) char buffer[4096];
        for (;;) {
            const ssize_t length = read(m_fd, buffer, sizeof buffer);
            if (length <= 0)
                return;
            for (ssize_t at = 0; at < length;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                if (event->mask & IN_CLOSE_WRITE)
                    ++closedAfterWriting;
                if (event->mask & IN_CLOSE_NOWRITE)
                    ++closedAfterReading;
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

    int closedAfterWriting = 0;
    int closedAfterReading = 0;

private:
    int m_fd;
};

const TrackSpec* TrackWithCoverAndTempo(const LibraryCatalog& catalog) {
    for (const TrackSpec& track : catalog.tracks) {
        if (track.embeddedCover >= 0 && track.bpm > 0)
            return &track;
    }
    return nullptr;
}

TEST(TagFile, ReadingFactsAndPicturesOpensTheMusicFileForReadingOnly) {
    const LibraryCatalog catalog = PlayerDaemonFixture::Catalog();
    const TrackSpec* track = TrackWithCoverAndTempo(catalog);
    ASSERT_NE(track, nullptr) << "the test library has a track with a cover and a tempo";
    const QString path = PlayerDaemonFixture::TestLibraryPath() + u'/' + track->uri;
    CloseWatch watch(path);
    ASSERT_TRUE(watch.Valid());

    // Collected after each read: the kernel folds two identical unread events into one.
    const TagFile::Facts facts = TagFile::ReadFacts(path);
    watch.Collect();
    const QList<QByteArray> pictures = TagFile::Pictures(path);
    watch.Collect();

    EXPECT_EQ(facts.bpm, track->bpm);
    EXPECT_FALSE(pictures.isEmpty());
    EXPECT_EQ(watch.closedAfterWriting, 0);
    EXPECT_GE(watch.closedAfterReading, 2);
}

TEST(TagFile, AMissingFileReadsAsNoFactsAndNoPictures) {
    const QString path = PlayerDaemonFixture::TestLibraryPath() + QStringLiteral("/no-such.ogg");
    EXPECT_EQ(TagFile::ReadFacts(path).bpm, 0);
    EXPECT_TRUE(TagFile::Pictures(path).isEmpty());
}

} // namespace
} // namespace Pelorin
