#include "support/player/memory/MemoryPlayer.h"

#include "support/player/memory/MemoryCollection.h"

namespace Pelorin {

MemoryPlayer::MemoryPlayer(QObject* parent)
    : IiTunes(parent), m_state(std::make_shared<MemoryPlayerState>(this)) {}

MemoryPlayer::~MemoryPlayer() {
    m_state->detach();
}

MemoryPlayerState& MemoryPlayer::use(const char* operation) const {
    m_state->check(QStringLiteral("IiTunes.") + QLatin1String(operation));
    return *m_state;
}

void MemoryPlayer::PlayPause() {
    use("PlayPause").PlayPause();
}

void MemoryPlayer::Play() {
    use("Play").Play();
}

void MemoryPlayer::Pause() {
    use("Pause").Pause();
}

void MemoryPlayer::Stop() {
    use("Stop").Stop();
}

void MemoryPlayer::PreviousTrack() {
    use("PreviousTrack").PreviousTrack();
}

void MemoryPlayer::NextTrack() {
    use("NextTrack").NextTrack();
}

void MemoryPlayer::Quit() {
    use("Quit").Quit();
}

void MemoryPlayer::UpdateIPod() {
    use("UpdateIPod").update();
}

int MemoryPlayer::SoundVolume() const {
    return use("SoundVolume").volume();
}

void MemoryPlayer::SetSoundVolume(int volume) {
    use("SetSoundVolume").setVolume(volume);
}

int MemoryPlayer::PlayerPosition() const {
    return use("PlayerPosition").position();
}

void MemoryPlayer::SetPlayerPosition(int seconds) {
    use("SetPlayerPosition").seek(seconds);
}

std::shared_ptr<IITTrack> MemoryPlayer::CurrentTrack() const {
    return use("CurrentTrack").currentTrackObject();
}

std::shared_ptr<IITPlaylist> MemoryPlayer::CurrentPlaylist() const {
    MemoryPlayerState& state = use("CurrentPlaylist");
    if (state.currentPlaylistAbsent())
        return nullptr;
    return state.playlistObject(state.queuePlaylistData());
}

std::shared_ptr<IITPlaylist> MemoryPlayer::LibraryPlaylist() const {
    MemoryPlayerState& state = use("LibraryPlaylist");
    return state.playlistObject(state.libraryPlaylistData());
}

std::shared_ptr<IITSourceCollection> MemoryPlayer::Sources() const {
    MemoryPlayerState& state = use("Sources");
    QList<std::shared_ptr<IITSource>> items;
    for (int i = 1; i <= state.sources().size(); ++i)
        items.append(state.sourceObject(i));
    return std::make_shared<MemoryCollection<IITSource>>(m_state, QStringLiteral("IITSource"),
                                                         std::move(items));
}

int MemoryPlayer::addLibraryTrack(const MemoryTrackData& data) {
    return m_state->addLibraryTrack(data);
}

void MemoryPlayer::enqueue(int trackId) {
    m_state->enqueue(trackId);
}

int MemoryPlayer::addSource(const QString& name) {
    return m_state->addSource(name);
}

void MemoryPlayer::addUserPlaylist(const QString& name, const QList<int>& trackIds, int source) {
    m_state->addUserPlaylist(name, trackIds, source);
}

MemoryPlayState MemoryPlayer::playState() const {
    return m_state->playState();
}

MemoryTrackData MemoryPlayer::trackData(int trackId) const {
    return m_state->data(trackId);
}

QList<int> MemoryPlayer::queueTrackIds() const {
    return m_state->playlistTrackIds(*m_state->queuePlaylistData());
}

QList<int> MemoryPlayer::userPlaylistTrackIds(const QString& name, int source) const {
    if (source < 1 || source > m_state->sources().size())
        throw VbError::SubscriptOutOfRange();
    for (const auto& playlist : m_state->sources().at(source - 1).playlists) {
        if (playlist->kind == MemoryPlaylistData::Kind::User && playlist->name == name)
            return playlist->trackIds;
    }
    throw VbError::Player(QStringLiteral("No such playlist"));
}

int MemoryPlayer::updateCount() const {
    return m_state->updateCount();
}

bool MemoryPlayer::hasQuit() const {
    return m_state->hasQuit();
}

void MemoryPlayer::setCurrentPlaylistAbsent(bool absent) {
    m_state->setCurrentPlaylistAbsent(absent);
}

int MemoryPlayer::operationCount(const QString& operation) const {
    return m_state->operationCount(operation);
}

void MemoryPlayer::failOperation(const QString& operation, const VbError& error) {
    m_state->failOperation(operation, error);
}

void MemoryPlayer::makeUnsupported(const QString& operation) {
    m_state->makeUnsupported(operation);
}

void MemoryPlayer::clearFailures() {
    m_state->clearFailures();
}

void MemoryPlayer::restart() {
    m_state->restart();
}

void MemoryPlayer::firePlayEvent() {
    Q_EMIT OnPlayerPlayEvent(m_state->currentTrackObject());
}

void MemoryPlayer::firePlayingTrackChangedEvent() {
    Q_EMIT OnPlayerPlayingTrackChangedEvent(m_state->currentTrackObject());
}

void MemoryPlayer::fireStopEvent() {
    Q_EMIT OnPlayerStopEvent(m_state->currentTrackObject());
}

void MemoryPlayer::fireDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                            const QList<int>& changedObjectIDs) {
    Q_EMIT OnDatabaseChangedEvent(deletedObjectIDs, changedObjectIDs);
}

void MemoryPlayer::fireQuittingEvent() {
    Q_EMIT OnQuittingEvent();
}

void MemoryPlayer::fireCOMCallsDisabledEvent(int reason) {
    m_state->setRefusingCommands(true);
    Q_EMIT OnCOMCallsDisabledEvent(reason);
}

void MemoryPlayer::fireCOMCallsEnabledEvent() {
    m_state->setRefusingCommands(false);
    Q_EMIT OnCOMCallsEnabledEvent();
}

void MemoryPlayer::postPlayEvent(std::shared_ptr<IITTrack> track) {
    QMetaObject::invokeMethod(
        this, [this, track] { Q_EMIT OnPlayerPlayEvent(track); }, Qt::QueuedConnection);
}

void MemoryPlayer::postPlayingTrackChangedEvent(std::shared_ptr<IITTrack> track) {
    QMetaObject::invokeMethod(
        this, [this, track] { Q_EMIT OnPlayerPlayingTrackChangedEvent(track); },
        Qt::QueuedConnection);
}

void MemoryPlayer::postStopEvent(std::shared_ptr<IITTrack> track) {
    QMetaObject::invokeMethod(
        this, [this, track] { Q_EMIT OnPlayerStopEvent(track); }, Qt::QueuedConnection);
}

void MemoryPlayer::postDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                            const QList<int>& changedObjectIDs) {
    QMetaObject::invokeMethod(
        this,
        [this, deletedObjectIDs, changedObjectIDs] {
            Q_EMIT OnDatabaseChangedEvent(deletedObjectIDs, changedObjectIDs);
        },
        Qt::QueuedConnection);
}

void MemoryPlayer::postQuittingEvent() {
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT OnQuittingEvent(); }, Qt::QueuedConnection);
}

} // namespace Pelorin
