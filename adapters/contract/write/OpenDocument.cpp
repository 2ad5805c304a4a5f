#include "adapters/contract/write/OpenDocument.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/missingCodes.h"
#include "sql/mod_ovTools.h"

namespace contract {

qint64 OpenDocument::Find(const Head& head) {
    const DocumentHead& fields = head.fields;
    const qint64 known = m_writer.Find(fields.number, fields.cause.code, fields.year, head.further);
    m_writer.Saw(known);
    return known;
}

OpenDocument::State OpenDocument::Write(const QString& key, const Head& head, qint64 known) {
    const DocumentHead& fields = head.fields;
    State state{key, 0, fields, known != 0};
    if (m_ended.contains(known) || m_run.HasWrittenBefore(m_family.head, known)) {
        throw ImportError(QStringLiteral("%1 è già un altro documento dell'origine, che non si riscrive con questo")
                              .arg(NameOf(fields)));
    }
    if (state.wasThere && m_options.skipImported) {
        m_run.Remember(m_ended, known);
        return state;
    }
    if (!state.wasThere && FillsCodes(m_run)) {
        return state;
    }
    TargetRow target = m_writer.Head(fields);
    if (head.more) {
        head.more(target);
    }
    if (state.wasThere) {
        EmptyOthers(target, m_options.furtherOfHead);
        m_writer.Update(target, known);
        state.id = known;
    } else {
        state.id = m_writer.Insert(target);
    }
    return state;
}

RowOutcome OpenDocument::SkipUnwritten(const State& state) const {
    return state.wasThere ? m_run.Skip(AlreadyImported) : SkipGone(m_run);
}

RowOutcome OpenDocument::Begin(const QString& key, const Head& head) {
    const State state = Write(key, head, Find(head));
    m_run.Restores(m_state);
    m_state = state;
    if (state.id == 0) {
        return SkipUnwritten(state);
    }
    return state.wasThere ? RowOutcome::Updated : RowOutcome::Inserted;
}

RowOutcome OpenDocument::Row(const QString& key, const std::function<Head()>& head,
                             const std::function<DocumentRow()>& row, const More& more, qint64* id) {
    const bool begins = !m_state || m_state->key != key;
    const Head first = begins ? head() : Head();
    const qint64 known = begins ? Find(first) : 0;
    const DocumentRow values = row();
    if (m_options.checkArticles && !values.article.isEmpty() &&
        !IsThere(m_run.GetSession(), "ART_ICO", "CDART", values.article)) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2', riga saltata").arg(m_run.RowKey(), values.article));
        LeaveOut(key, values);
        return m_run.Skip(ArticleMissing);
    }
    State state = begins ? Write(key, first, known) : *m_state;
    const RowOutcome outcome = state.id == 0 ? SkipUnwritten(state) : WriteRow(state, values, more, id);
    m_run.Restores(m_state);
    m_state = state;
    return outcome;
}

void OpenDocument::LeaveOut(const QString& key, const DocumentRow& row) {
    if (m_leftOut.key != key) {
        m_leftOut = {key};
    }
    if (row.isNumbered) {
        m_leftOut.rows.numbers.insert(row.number);
    } else {
        m_leftOut.rows.articles.append(row.article.toUpper());
    }
}

/// A row of that number which somebody has entered counts too: of imports there is none left.
void OpenDocument::TellOther(const State& state, int number) const {
    if (state.wasThere && m_writer.FindImportedRow(state.id, number, state.written) == 0 &&
        m_writer.FindRow(state.id, number, state.written) != 0) {
        m_run.Log(QStringLiteral("RIGA DI ALTRA MANO: %1: la riga %2 di %3 non è di un'importazione: resta, e quella "
                                 "dell'origine le sta accanto")
                      .arg(m_run.RowKey(), QString::number(number), NameOf(state.head)));
    }
}

/// The row that one without a number has become before, which keeps the number that it was given then: the place of a
/// row is another one as soon as a row before it is delivered. A new one gets a number that no other has.
qint64 OpenDocument::FindLike(State& state, const DocumentRow& row, TargetRow& target) const {
    if (!state.before) {
        state.before = m_writer.RowsOfImports(state.id, m_options.lackingOfRow);
    }
    const LikeRow like = FindRowLike(*state.before, target, state.written);
    if (like.id == 0) {
        target.Set("DRNUM", m_writer.FreeNumber(state.id, row.number));
        return 0;
    }
    target.Unset("DRNUM");
    if (!like.isSame) {
        m_run.Log(QStringLiteral("RIGA SENZA NUMERO: %1: nessuna riga di %2 è proprio questa: riscritta la %3, '%4'")
                      .arg(m_run.RowKey(), NameOf(state.head), QString::number(like.number), like.article));
    }
    return like.id;
}

RowOutcome OpenDocument::WriteRow(State& state, const DocumentRow& row, const More& more, qint64* id) const {
    TargetRow target = m_writer.Row(state.id, state.head, row);
    if (more) {
        more(target);
    }
    const QString article = mod_ovTools::ToText(target.Value("DRART")).trimmed();
    const auto find = [&] {
        return row.isNumbered ? m_writer.FindImportedRow(state.id, row.number, state.written, article)
                              : FindLike(state, row, target);
    };
    const qint64 known = state.wasThere ? find() : 0;
    if (known != 0) {
        EmptyOthers(target, m_options.furtherOfRow);
        m_writer.Keep(target, known, row, m_options.lackingOfRow);
        target.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        TellOther(state, row.number);
        target.Insert();
    }
    const bool isAsked = id != nullptr || state.wasThere;
    const qint64 written = known != 0 ? known : isAsked ? m_run.LastId(m_family.row) : 0;
    if (id != nullptr) {
        *id = written;
    }
    if (state.wasThere) {
        state.written.insert(written);
    }
    return known != 0 ? RowOutcome::Updated : RowOutcome::Inserted;
}

std::optional<OpenDocument::Ended> OpenDocument::End() {
    std::optional<Ended> ended;
    if (m_state && m_state->id != 0) {
        const LeftOutRows leftOut = m_leftOut.key == m_state->key ? m_leftOut.rows : LeftOutRows();
        ended = {m_state->id, m_state->wasThere
                                  ? m_writer.TellRowsLeft(m_state->id, NameOf(m_state->head), m_state->written, leftOut)
                                  : 0};
        m_writer.Total(m_state->id);
        m_run.Remember(m_ended, m_state->id);
        m_run.Restores(m_count);
        ++m_count;
    }
    m_run.Restores(m_state);
    m_state.reset();
    return ended;
}

} // namespace contract
