#include "adapters/contract/kinds/askedSince.h"

#include "adapters/contract/run/askedDay.h"
#include "core/italianText.h"

namespace contract {

namespace {

/// The columns that tell a row's day, and how.
struct Days {
    QStringList columns;
    QString format; ///< of texts; empty: dates

    QString Since(const ovConnection& source, const QDate& from) const {
        const QString literal = format.isEmpty() ? LiteralOf(source, from) : LiteralOf(source, from.toString(format));
        return Each(source, QStringLiteral("%1 >= ") + literal, QStringLiteral(" OR "));
    }
    /// A text is none when it is blank or all zeros.
    QString Missing(const ovConnection& source) const {
        return Each(source,
                    format.isEmpty() ? QStringLiteral("%1 IS NULL") : QStringLiteral("(%1 IS NULL OR %1 < '1')"),
                    QStringLiteral(" AND "));
    }

private:
    QString Each(const ovConnection& source, const QString& condition, const QString& between) const {
        QStringList conditions;
        for (const QString& column : columns) {
            const QString day = format.isEmpty() ? DayColumn(source, column) : column;
            conditions.append(QString(condition).replace(QStringLiteral("%1"), day));
        }
        const QString all = conditions.join(between);
        return conditions.size() == 1 ? all : QStringLiteral("(%1)").arg(all);
    }
};

/// What it restricts, as the run of it tells.
struct Asked {
    QString step;
    SourceTable source;
    Days days;
    QDate from;
};

/// The importer of a part with one more condition on its rows.
class Restricted final : public Importer {
public:
    Restricted(ImportRun& run, Asked asked, std::unique_ptr<Importer> rows)
        : Importer(run),
          m_asked(std::move(asked)),
          m_rows(std::move(rows)) {}

    QString Condition() const override {
        return With(m_asked.days.Since(GetSession().SourceConnection(), m_asked.from));
    }
    LeftOut LeavesOut() const override {
        return {QStringLiteral("%1 dal %2 (come risposto), righe più vecchie o senza data non lette")
                    .arg(m_asked.step, italian::DayText(m_asked.from)),
                m_rows->Condition()};
    }
    Emptying Empties(const Emptying& declared) const override { return m_rows->Empties(declared); }
    void Begin() override {
        TellWithoutDay();
        m_rows->Begin();
    }
    RowOutcome Row(const SourceRow& row) override { return m_rows->Row(row); }
    void EndGroup() override { m_rows->EndGroup(); }
    bool End() override { return m_rows->End(); }
    QString Completion(const QString& text) const override { return m_rows->Completion(text); }

private:
    QString With(const QString& condition) const {
        const QString own = m_rows->Condition();
        return own.isEmpty() ? condition : QString(own + u" AND " + condition);
    }
    void TellWithoutDay() const;

    Asked m_asked;
    std::unique_ptr<Importer> m_rows;
};

/// The condition on the day leaves them behind, and nobody would know.
void Restricted::TellWithoutDay() const {
    const auto loop =
        m_asked.source.Loop(Run(), m_asked.step, With(m_asked.days.Missing(GetSession().SourceConnection())), {});
    const qint64 count = GetSession().SourceConnection().ExecuteCommand(loop.count);
    if (count > 0) {
        Run().Log(QStringLiteral("RIGHE SENZA DATA: tabella '%1', %2: %3 non importate")
                      .arg(loop.table, m_asked.days.columns.join(QStringLiteral(", ")), QString::number(count)));
    }
}

} // namespace

ImportPart AskedSince(ImportPart part, const QString& prompt, const QStringList& days, const QString& format) {
    part.asks.insert(part.asks.begin(), {prompt, AnswerKind::Text});
    part.needs.reads.push_back({part.source.table, days});
    part.make = [make = part.make, prompt, step = part.step, source = part.source,
                 days = Days{days, format}](ImportRun& run, const QString& singleCode) -> std::unique_ptr<Importer> {
        if (run.IsSingle()) {
            return make(run, singleCode);
        }
        const QDate from = AskDay(run, prompt, run.GetSession().UserManager.DataElaborazione);
        return std::make_unique<Restricted>(run, Asked{step, source, days, from}, make(run, singleCode));
    };
    return part;
}

} // namespace contract
