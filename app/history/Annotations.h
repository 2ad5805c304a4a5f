#pragma once

#include "app/history/History.h"

namespace history {

/// Which notes of a run are wanted, and how.
struct WantedNotes {
    QString kind; ///< empty: all
    QString text; ///< empty: whatever they hold
    NoteOrder order = NoteOrder::Told;
};

/// The notes of a run by kind, the rows given up first: read in pieces, of which a few are held, so that a run that
/// told of 100,000 rows takes no more memory than one of a hundred. What reads the history raises `SqlError`.
class Annotations {
public:
    /// @param history must outlive it
    Annotations(const History& history, qint64 run, WantedNotes wanted = {});

    /// The kinds that have such notes, with their number and that of those ticked off.
    const std::vector<NoteKind>& Kinds() const { return m_kinds; }
    /// One of a kind, by its place from 0. It stays until another one is asked for.
    const Note& At(size_t kind, qint64 place);
    /// Ticks one off, or takes the tick away; the same for all of a kind that are wanted.
    void SetDone(size_t kind, qint64 place, bool isDone);
    void SetKindDone(size_t kind, bool isDone);

    /// How many notes are held.
    size_t Held() const;

    /// Writes all of them as a table (`sources::TableWriter`): kind, procedure, row, text, whether ticked off. Returns
    /// how many. Raises `ImportError` naming the file.
    qint64 Write(const QString& path) const;

private:
    struct Piece {
        size_t kind;
        qint64 first; ///< place of the first of them
        std::vector<Note> notes;
    };
    Piece& PieceOf(size_t kind, qint64 place);
    std::vector<Note> Read(size_t kind, qint64 from, int most) const;

    const History* m_history;
    qint64 m_run;
    WantedNotes m_wanted;
    std::vector<NoteKind> m_kinds;
    std::vector<Piece> m_pieces; ///< the one used last in front
};

} // namespace history
