#pragma once

#include "Support/Task.h"
#include "Transport/HelperClienting.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace zelk {

/// How the loading of a list stands.
struct LoadState {
    struct Failed {
        QString text;
        bool operator==(const Failed &) const = default;
    };
    struct Idle {
        bool operator==(const Idle &) const = default;
    };
    struct Loading {
        bool operator==(const Loading &) const = default;
    };
    struct Loaded {
        bool operator==(const Loaded &) const = default;
    };

    static LoadState failed(QString text) { return {Failed{std::move(text)}}; }
    static LoadState idle() { return {Idle{}}; }
    static LoadState loading() { return {Loading{}}; }
    static LoadState loaded() { return {Loaded{}}; }

    std::variant<Idle, Loading, Loaded, Failed> value; // for match() and caseOf()
    bool operator==(const LoadState &) const = default;
};

/// The user's playlists and folders of all sources, how their loading stands, and what is selected of them. The list
/// is replaced as a whole by each answer; the selection lives in memory only and no refresh prunes it.
class LibraryStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY loadStateChanged)
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY loadStateChanged)
    /// The text of a failed load; empty otherwise.
    Q_PROPERTY(QString failure READ failure NOTIFY loadStateChanged)
    /// The selected ids, in no particular order.
    Q_PROPERTY(QStringList selection READ selectionList WRITE setSelectionList NOTIFY selectionChanged)
    Q_PROPERTY(qint64 selectedTrackCount READ selectedTrackCount NOTIFY selectedTrackCountChanged)

public:
    explicit LibraryStore(std::shared_ptr<HelperClienting> client, QObject *parent = nullptr);

    /// In the engine's order, folders and playlists in one flat list.
    const std::vector<PlaylistDTO> &playlists() const { return _playlists; }
    const LoadState &loadState() const { return _loadState; }
    const QSet<QString> &selection() const { return _selection; }
    void setSelection(QSet<QString> selection);
    Q_INVOKABLE bool isSelected(const QString &id) const { return _selection.contains(id); }

    // What these point to is good until the next playlistsChanged().
    /// The entries without a parent, in list order.
    std::vector<const PlaylistDTO *> roots() const;
    /// The entries right below that one, in list order.
    std::vector<const PlaylistDTO *> children(const QString &id) const;
    /// The first entry with that id; null without one.
    const PlaylistDTO *playlist(const QString &id) const;

    /// What a sync of the selection asks for: the selected entries that are there and are no folders.
    std::vector<PlaylistSelection> selectionPayload() const;
    /// The sum over all selected entries that are there, folders too.
    qint64 selectedTrackCount() const;

    /// Loads the list, of all sources when none is given. A failure shows in `loadState`; the old list then stays.
    QCoro::Task<> refresh(std::optional<PlaylistSourceId> source = {});
    /// Asks for a sync of the selection. False, and nothing is sent, when there is nothing to sync; throws what the
    /// request throws.
    QCoro::Task<bool> startSync(std::optional<SyncOptions> options = {});

Q_SIGNALS:
    void playlistsChanged();
    void loadStateChanged();
    void selectionChanged();
    void selectedTrackCountChanged();

private:
    bool isLoading() const;
    bool isLoaded() const;
    QString failure() const;
    QStringList selectionList() const { return QStringList(_selection.cbegin(), _selection.cend()); }
    void setSelectionList(const QStringList &ids) { setSelection(QSet<QString>(ids.cbegin(), ids.cend())); }
    void setPlaylists(std::vector<PlaylistDTO> playlists);
    void setLoadState(LoadState state);
    void tellSelectedTrackCount();
    std::vector<const PlaylistDTO *> entries(const std::vector<std::size_t> &positions) const;

    const std::shared_ptr<HelperClienting> _client;
    std::vector<PlaylistDTO> _playlists;
    // Positions in _playlists, so that a big library is not searched for each of its entries.
    std::vector<std::size_t> _roots;
    QHash<QString, std::size_t> _firstById;
    QHash<QString, std::vector<std::size_t>> _childrenById;
    LoadState _loadState;
    QSet<QString> _selection;
    qint64 _toldTrackCount = 0; // a listener may change the selection again before it is told
    TaskScope _lifetime;
};

} // namespace zelk
