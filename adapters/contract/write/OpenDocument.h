#pragma once

#include "adapters/contract/write/Document.h"

namespace contract {

/// The documents of a family whose rows are read one after the other, with those of one document together: a head is
/// written with the first of its rows that is written, the totals with the last. A document that is there already is
/// rewritten, unless it is one that the run has come across: two of the source have one number then, and the second is
/// given up with `ImportError`. What a row that fails has begun is begun anew by the next.
class OpenDocument {
public:
    using More = std::function<void(TargetRow&)>;

    /// A head and what it has beyond the fields.
    struct Head {
        DocumentHead fields;
        More more = {};
        QString further = {}; ///< a further condition on the head that is there already, without AND
    };
    struct Options {
        bool checkArticles = true; ///< a row whose article is missing is left out, and logged
        bool skipImported = false; ///< a document that is there already is left out
        /// Columns that are not written each time: of a head or row that is written over they are emptied then.
        QStringList furtherOfHead = {};
        QStringList furtherOfRow = {};
        QStringList lackingOfRow = {}; ///< that the source lacks: a row that is written over keeps them
    };
    /// A document that has ended.
    struct Ended {
        qint64 id;       ///< RECORD_ID of the head
        qint64 rowsLeft; ///< an earlier import has written them, and they are no longer in the source
    };

    OpenDocument(ImportRun& run, const Family& family, Options options)
        : m_run(run),
          m_family(family),
          m_options(std::move(options)),
          m_writer(run, family) {}

    DocumentWriter& Writer() { return m_writer; }
    /// Writes the head of a document of which no row may follow. @param key tells the document from others
    RowOutcome Begin(const QString& key, const Head& head);
    /// Writes a row. @param key tells its document from others @param head asked with the first row of a document
    /// @param row asked after it @param more sets further columns @param id gets the RECORD_ID of the row; may be null
    RowOutcome Row(const QString& key, const std::function<Head()>& head, const std::function<DocumentRow()>& row,
                   const More& more = {}, qint64* id = nullptr);
    /// A row that the source has of a document and that is not written. @param row with what tells it
    void LeaveOut(const QString& key, const DocumentRow& row);
    /// Whether the document of that key is under way.
    bool Has(const QString& key) const { return m_state && m_state->key == key; }
    /// The head of the document under way, which must be there.
    const DocumentHead& Current() const { return m_state->head; }
    /// Ends the document under way: its totals follow from its rows. Returns none when there is none, or it is left
    /// out.
    std::optional<Ended> End();
    /// Forgets the document under way: its rows have been given up.
    void Drop() { m_state.reset(); }
    /// Documents ended so far.
    int Count() const { return m_count; }
    /// Tells the documents that are no longer in the source: see `DocumentWriter::TellDocumentsLeft`.
    void TellDocumentsLeft(const QStringList& causes, const QDate& from, const QString& others) const {
        m_writer.TellDocumentsLeft(causes, from, others);
    }

private:
    struct State {
        QString key = {};
        qint64 id = 0; ///< 0: the document is left out, as it was there, or as it is there no more
        DocumentHead head = {};
        bool wasThere = false;
        QSet<qint64> written = {}; ///< rows of a document that was there
        /// Its rows before the first that the source does not number; none before that.
        std::optional<ImportedRows> before = {};
    };
    struct LeftOut {
        QString key = {};
        LeftOutRows rows = {};
    };
    qint64 Find(const Head& head);
    State Write(const QString& key, const Head& head, qint64 known);
    RowOutcome SkipUnwritten(const State& state) const;
    void TellOther(const State& state, int number) const;
    qint64 FindLike(State& state, const DocumentRow& row, TargetRow& target) const;
    RowOutcome WriteRow(State& state, const DocumentRow& row, const More& more, qint64* id) const;

    ImportRun& m_run;
    Family m_family;
    Options m_options;
    DocumentWriter m_writer;
    std::optional<State> m_state;
    LeftOut m_leftOut;    ///< of the document that has lost a row last; its head may not be written yet
    QSet<qint64> m_ended; ///< heads of the documents that have ended, or been left out
    int m_count = 0;
};

} // namespace contract
