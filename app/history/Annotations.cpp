#include "app/history/Annotations.h"

#include "sources/tableFile.h"

#include <algorithm>

namespace history {

namespace {

constexpr int PieceSize = 500;
constexpr size_t MostPieces = 8;
constexpr int WrittenAtOnce = 20'000;

} // namespace

Annotations::Annotations(const History& history, qint64 run, WantedNotes wanted)
    : m_history(&history),
      m_run(run),
      m_wanted(std::move(wanted)) {
    if (m_wanted.kind != GivenUpKind) {
        m_kinds = history.NoteKinds(run, m_wanted.text, m_wanted.kind);
    }
    if (m_wanted.kind.isEmpty() || m_wanted.kind == GivenUpKind) {
        m_kinds.insert(m_kinds.begin(), history.GivenUp(run, m_wanted.text));
    }
    std::erase_if(m_kinds, [](const NoteKind& each) { return each.count == 0; });
}

std::vector<Note> Annotations::Read(size_t kind, qint64 from, int most) const {
    return m_history->Notes(m_run, m_kinds.at(kind).kind, m_wanted.text, from, most, m_wanted.order);
}

Annotations::Piece& Annotations::PieceOf(size_t kind, qint64 place) {
    const qint64 first = place - place % PieceSize;
    const auto found = std::find_if(m_pieces.begin(), m_pieces.end(), [kind, first](const Piece& piece) {
        return piece.kind == kind && piece.first == first;
    });
    if (found != m_pieces.end()) {
        std::rotate(m_pieces.begin(), found, found + 1);
    } else {
        m_pieces.insert(m_pieces.begin(), Piece{kind, first, Read(kind, first, PieceSize)});
        m_pieces.resize(std::min(m_pieces.size(), MostPieces));
    }
    return m_pieces.front();
}

const Note& Annotations::At(size_t kind, qint64 place) {
    static const Note gone; // the history has been cleared meanwhile
    const Piece& piece = PieceOf(kind, place);
    const auto index = static_cast<size_t>(place - piece.first);
    return index < piece.notes.size() ? piece.notes[index] : gone;
}

void Annotations::SetDone(size_t kind, qint64 place, bool isDone) {
    Piece& piece = PieceOf(kind, place);
    const auto index = static_cast<size_t>(place - piece.first);
    if (index >= piece.notes.size() || piece.notes[index].isDone == isDone) {
        return;
    }
    m_history->SetDone(piece.notes[index], isDone);
    piece.notes[index].isDone = isDone;
    m_kinds.at(kind).done += isDone ? 1 : -1;
    if (m_wanted.order == NoteOrder::OpenFirst) {
        m_pieces.clear(); // it stands at another place now
    }
}

void Annotations::SetKindDone(size_t kind, bool isDone) {
    NoteKind& all = m_kinds.at(kind);
    m_history->SetKindDone(m_run, all.kind, m_wanted.text, isDone);
    all.done = isDone ? all.count : 0;
    for (Piece& piece : m_pieces) {
        for (Note& note : piece.notes) {
            note.isDone = piece.kind == kind ? isDone : note.isDone;
        }
    }
}

size_t Annotations::Held() const {
    size_t held = 0;
    for (const Piece& piece : m_pieces) {
        held += piece.notes.size();
    }
    return held;
}

qint64 Annotations::Write(const QString& path) const {
    const auto writer = sources::TableWriter::Create(path, QStringLiteral("Annotazioni"),
                                                     {"Tipo", "Procedura", "Riga dell'origine", "Testo", "Fatta"});
    qint64 written = 0;
    for (size_t kind = 0; kind < m_kinds.size(); ++kind) {
        for (qint64 from = 0; from < m_kinds[kind].count; from += WrittenAtOnce) {
            for (const Note& note : Read(kind, from, WrittenAtOnce)) {
                writer->AddRow({note.kind, note.procedure, note.row, note.text,
                                note.isDone ? QStringLiteral("sì") : QStringLiteral("no")});
                ++written;
            }
        }
    }
    writer->Close();
    return written;
}

} // namespace history
