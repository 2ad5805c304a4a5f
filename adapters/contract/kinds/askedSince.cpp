#include "adapters/contract/kinds/askedSince.h"

#include "adapters/contract/run/askedDay.h"

namespace contract {

namespace {

/// The importer of a part with one more condition on its rows.
class Restricted final : public Importer {
public:
    Restricted(ImportRun& run, QString condition, std::unique_ptr<Importer> rows)
        : Importer(run),
          m_condition(std::move(condition)),
          m_rows(std::move(rows)) {}

    QString Condition() const override {
        const QString own = m_rows->Condition();
        return own.isEmpty() ? m_condition : QString(m_condition + u" AND " + own);
    }
    Emptying Empties(const Emptying& declared) const override { return m_rows->Empties(declared); }
    void Begin() override { m_rows->Begin(); }
    RowOutcome Row(const SourceRow& row) override { return m_rows->Row(row); }
    void EndGroup() override { m_rows->EndGroup(); }
    bool End() override { return m_rows->End(); }
    QString Completion(const QString& text) const override { return m_rows->Completion(text); }

private:
    QString m_condition;
    std::unique_ptr<Importer> m_rows;
};

} // namespace

ImportPart AskedSince(ImportPart part, const QString& prompt,
                      const std::function<QString(const ovConnection& source, const QDate& from)>& condition) {
    part.asks.insert(part.asks.begin(), {prompt, AnswerKind::Text});
    part.make = [make = part.make, prompt, condition](ImportRun& run,
                                                      const QString& singleCode) -> std::unique_ptr<Importer> {
        if (run.IsSingle()) {
            return make(run, singleCode);
        }
        const QDate from = AskDay(run, prompt, run.GetSession().UserManager.DataElaborazione);
        return std::make_unique<Restricted>(run, condition(run.GetSession().SourceConnection(), from),
                                            make(run, singleCode));
    };
    return part;
}

} // namespace contract
