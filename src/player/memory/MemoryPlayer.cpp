#include "player/memory/MemoryPlayer.h"

#include "player/memory/MemoryCollection.h"

namespace Pelorin {

MemoryPlayer::MemoryPlayer(QObject* parent)
    : IiTunes(parent), m_state(std::make_shared<MemoryPlayerState>(this)) {}

MemoryPlayer::~MemoryPlayer() {
    m_state->Detach();
}

MemoryPlayerState& MemoryPlayer::Use(const char* operation) const {
    m_state->Check(QStringLiteral("IiTunes.") + QLatin1String(operation));
    return *m_state;
}

void MemoryPlayer::PlayPause() {
    Use("PlayPause").PlayPause();
}

void MemoryPlayer::Play() {
    Use("Play").Play();
}

void MemoryPlayer::Pause() {
    Use("Pause").Pause();
}

void MemoryPlayer::Stop() {
    Use("Stop").Stop();
}

void MemoryPlayer::PreviousTrack() {
    Use("PreviousTrack").PreviousTrack();
}

void MemoryPlayer::NextTrack() {
    Use("NextTrack").NextTrack();
}

void MemoryPlayer::Quit() {
    Use("Quit").Quit();
}

void MemoryPlayer::UpdateIPod() {
    Use("UpdateIPod").Update();
}

int MemoryPlayer::SoundVolume() const {
    return Use("SoundVolume").Volume();
}

void MemoryPlayer::SetSoundVolume(int volume) {
    Use("SetSoundVolume").SetVolume(volume);
}

int MemoryPlayer::PlayerPosition() const {
    return Use("PlayerPosition").Position();
}

void MemoryPlayer::SetPlayerPosition(int seconds) {
    Use("SetPlayerPosition").Seek(seconds);
}

std::shared_ptr<IITTrack> MemoryPlayer::CurrentTrack() const {
    return Use("CurrentTrack").CurrentTrackObject();
}

std::shared_ptr<IITPlaylist> MemoryPlayer::CurrentPlaylist() const {
    MemoryPlayerState& state = Use("CurrentPlaylist");
    if (state.CurrentPlaylistAbsent())
        return nullptr;
    return state.PlaylistObject(state.QueuePlaylistData());
}

std::shared_ptr<IITPlaylist> MemoryPlayer::LibraryPlaylist() const {
    MemoryPlayerState& state = Use("LibraryPlaylist");
    return state.PlaylistObject(state.LibraryPlaylistData());
}

std::shared_ptr<IITSourceCollection> MemoryPlayer::Sources() const {
    MemoryPlayerState& state = Use("Sources");
    QList<std::shared_ptr<IITSource>> items;
    for (int i = 1; i <= state.Sources().size(); ++i)
        items.append(state.SourceObject(i));
    return std::make_shared<MemoryCollection<IITSource>>(m_state, QStringLiteral("IITSource"),
                                                         std::move(items));
}

int MemoryPlayer::AddLibraryTrack(const MemoryTrackData& data) {
    return m_state->AddLibraryTrack(data);
}

void MemoryPlayer::Enqueue(int trackId) {
    m_state->Enqueue(trackId);
}

int MemoryPlayer::AddSource(const QString& name) {
    return m_state->AddSource(name);
}

void MemoryPlayer::AddUserPlaylist(const QString& name, const QList<int>& trackIds, int source) {
    m_state->AddUserPlaylist(name, trackIds, source);
}

MemoryPlayState MemoryPlayer::PlayState() const {
    return m_state->PlayState();
}

MemoryTrackData MemoryPlayer::TrackData(int trackId) const {
    return m_state->Data(trackId);
}

QList<int> MemoryPlayer::QueueTrackIds() const {
    return m_state->PlaylistTrackIds(*m_state->QueuePlaylistData());
}

QList<int> MemoryPlayer::UserPlaylistTrackIds(const QString& name, int source) const {
    for (const auto& playlist : m_state->Sources().at(source - 1).playlists) {
        if (playlist->kind == MemoryPlaylistData::Kind::User && playlist->name == name)
            return playlist->trackIds;
    }
    throw VbError::Player(QStringLiteral("No such playlist"));
}

int MemoryPlayer::UpdateCount() const {
    return m_state->UpdateCount();
}

bool MemoryPlayer::HasQuit() const {
    return m_state->HasQuit();
}

void MemoryPlayer::SetCurrentPlaylistAbsent(bool absent) {
    m_state->SetCurrentPlaylistAbsent(absent);
}

void MemoryPlayer::FailOperation(const QString& operation, const VbError& error) {
    m_state->FailOperation(operation, error);
}

void MemoryPlayer::MakeUnsupported(const QString& operation) {
    m_state->MakeUnsupported(operation);
}

void MemoryPlayer::ClearFailures() {
    m_state->ClearFailures();
}

void MemoryPlayer::Restart() {
    m_state->Restart();
}

void MemoryPlayer::FirePlayEvent() {
    Q_EMIT OnPlayerPlayEvent(m_state->CurrentTrackObject());
}

void MemoryPlayer::FirePlayingTrackChangedEvent() {
    Q_EMIT OnPlayerPlayingTrackChangedEvent(m_state->CurrentTrackObject());
}

void MemoryPlayer::FireStopEvent() {
    Q_EMIT OnPlayerStopEvent(m_state->CurrentTrackObject());
}

void MemoryPlayer::FireDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                            const QList<int>& changedObjectIDs) {
    Q_EMIT OnDatabaseChangedEvent(deletedObjectIDs, changedObjectIDs);
}

void MemoryPlayer::FireQuittingEvent() {
    Q_EMIT OnQuittingEvent();
}

void MemoryPlayer::FireCOMCallsDisabledEvent(int reason) {
    m_state->SetRefusingCommands(true);
    Q_EMIT OnCOMCallsDisabledEvent(reason);
}

void MemoryPlayer::FireCOMCallsEnabledEvent() {
    m_state->SetRefusingCommands(false);
    Q_EMIT OnCOMCallsEnabledEvent();
}

void MemoryPlayer::PostPlayEvent(std::shared_ptr<IITTrack> track) {
    QMetaObject::invokeMethod(
        this, [this, track] { Q_EMIT OnPlayerPlayEvent(track); }, Qt::QueuedConnection);
}

void MemoryPlayer::PostPlayingTrackChangedEvent(std::shared_ptr<IITTrack> track) {
    QMetaObject::invokeMethod(
        this, [this, track] { Q_EMIT OnPlayerPlayingTrackChangedEvent(track); },
        Qt::QueuedConnection);
}

void MemoryPlayer::PostStopEvent(std::shared_ptr<IITTrack> track) {
    QMetaObject::invokeMethod(
        this, [this, track] { Q_EMIT OnPlayerStopEvent(track); }, Qt::QueuedConnection);
}

void MemoryPlayer::PostDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                            const QList<int>& changedObjectIDs) {
    QMetaObject::invokeMethod(
        this,
        [this, deletedObjectIDs, changedObjectIDs] {
            Q_EMIT OnDatabaseChangedEvent(deletedObjectIDs, changedObjectIDs);
        },
        Qt::QueuedConnection);
}

void MemoryPlayer::PostQuittingEvent() {
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT OnQuittingEvent(); }, Qt::QueuedConnection);
}

} // namespace Pelorin
