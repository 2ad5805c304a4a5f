#include "core/ovDistinta.h"

#include "core/billCycles.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <QSet>

using namespace mod_ovTools;

namespace {

QString Text(const Recordset& rows, const QString& column) { return ToText(rows.Value(column)).trimmed(); }
double Number(const Recordset& rows, const QString& column) { return ToDouble(rows.Value(column)); }

/// A number that is one where the column is not filled.
double Factor(const Recordset& rows, const QString& column) {
    return rows.Value(column).isNull() ? 1 : Number(rows, column);
}

QString NameOf(const ovDistinta::Nodo& node) {
    return QStringLiteral("distinta '%1', revisione %2").arg(node.article, QString::number(node.revision));
}

} // namespace

void ovDistinta::LoadData(qint64 bill) {
    ResetData();
    struct Wanted {
        qint64 bill;
        qint64 by; ///< the bill that contains it; 0: none
    };
    std::vector<Wanted> open{{bill, 0}};
    while (!open.empty()) {
        const Wanted next = open.back();
        open.pop_back();
        if (m_nodes.contains(next.bill)) {
            continue;
        }
        try {
            m_nodes.insert(next.bill, LoadNode(next.bill));
        } catch (ImportError& error) {
            if (next.by != 0) {
                error.AddContext(NameOf(NodeDistinta(next.by)));
            }
            throw;
        }
        for (const Componente& part : NodeDistinta(next.bill).components) {
            if (part.bill != 0 && !m_remembered.contains(part.bill)) {
                open.push_back({part.bill, next.bill});
            }
        }
    }
    RefuseCycles();
    m_root = bill;
    PutPartsFirst();
}

void ovDistinta::ResetData() {
    m_root = 0;
    m_nodes.clear();
    m_order.clear();
}

const ovDistinta::Nodo& ovDistinta::NodeDistinta(qint64 bill) const {
    const auto found = m_nodes.constFind(bill);
    if (found == m_nodes.cend()) {
        throw ImportError(QStringLiteral("la distinta %1 non è caricata").arg(bill));
    }
    return *found;
}

ovDistinta::Nodo ovDistinta::LoadNode(qint64 bill) const {
    Nodo node;
    node.id = bill;
    ovConnection& quadrix = m_session.Quadrix;
    {
        const Recordset head = quadrix.ExecuteWC(QStringLiteral("SELECT DBART, DBREV FROM %1 WHERE RECORD_ID = %2")
                                                     .arg(quadrix.GetFullTableName("DIS_BAS"))
                                                     .arg(bill));
        if (head.Eof()) {
            throw ImportError(QStringLiteral("la distinta con RECORD_ID %1 non c'è").arg(bill));
        }
        node.article = Text(head, "DBART");
        node.revision = head.Value("DBREV").toInt();
    }
    if (!quadrix.CheckExistValue("ART_ICO", "CDART", node.article, DataType::NVarChar)) {
        throw ImportError(NameOf(node) + QStringLiteral(": il suo articolo non c'è"));
    }
    node.lot = std::max(1.0, ToDouble(quadrix.GetDbValue("ART_ICO", "CDART", node.article, "ARLOR")));
    node.components = LoadCollectionComp(node);
    node.phases = LoadCollectionLavo(node);
    return node;
}

std::vector<ovDistinta::Componente> ovDistinta::LoadCollectionComp(const Nodo& node) const {
    std::vector<Componente> components;
    Recordset rows = m_session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, DCART, DCQTA, DCCOE, IDDBF, DCCOS, DCPRZ, DCRIC FROM %1 WHERE IDDIS = %2 "
                       "ORDER BY RECORD_ID")
            .arg(m_session.Quadrix.GetFullTableName("DIS_COM"))
            .arg(node.id));
    for (; !rows.Eof(); rows.MoveNext()) {
        Componente part;
        part.id = rows.Value("RECORD_ID").toLongLong();
        part.article = Text(rows, "DCART");
        part.quantity = Number(rows, "DCQTA") * Factor(rows, "DCCOE");
        part.bill = rows.Value("IDDBF").toLongLong();
        part.cost = Known(Number(rows, "DCCOS"));
        part.price = Known(Number(rows, "DCPRZ"));
        part.markUp = Number(rows, "DCRIC");
        components.push_back(part);
    }
    return components;
}

std::vector<ovDistinta::Lavorazione> ovDistinta::LoadCollectionLavo(const Nodo& node) const {
    std::vector<Lavorazione> phases;
    Recordset rows = m_session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT * FROM %1 WHERE IDDIS = %2 AND (DLACT IS NULL OR DLACT <> 0) ORDER BY DLSEQ, RECORD_ID")
            .arg(m_session.Quadrix.GetFullTableName("DIS_FAS"))
            .arg(node.id));
    for (; !rows.Eof(); rows.MoveNext()) {
        Lavorazione phase;
        phase.id = rows.Value("RECORD_ID").toLongLong();
        phase.sequence = rows.Value("DLSEQ").toInt();
        if (Number(rows, "DLTMP") != schema::defaults::TimeInMinutes) {
            throw ImportError(
                QStringLiteral("%1: i tempi della fase %2 sono di tipo %3, si conoscono solo i minuti (%4)")
                    .arg(NameOf(node), QString::number(phase.sequence), Text(rows, "DLTMP"),
                         QString::number(schema::defaults::TimeInMinutes)));
        }
        phase.work = Text(rows, "DLLAV");
        phase.supplier = Text(rows, "DLFOR");
        phase.minutes =
            (Number(rows, "DLTUP") + Number(rows, "DLTAP") / node.lot) * std::max(1.0, Number(rows, "DLNUP"));
        phase.cost = Known(Number(rows, "DLCOS"));
        phase.price = Known(Number(rows, "DLPRZ"));
        phase.markUp = Number(rows, "DLRIC");
        phases.push_back(phase);
    }
    return phases;
}

void ovDistinta::RefuseCycles() const {
    std::vector<qdxProduction::BillLink> links;
    for (const Nodo& node : m_nodes) {
        for (const Componente& part : node.components) {
            if (part.bill != 0) {
                links.push_back({node.id, part.bill});
            }
        }
    }
    qdxProduction::ForEachCycle(std::move(links), [this](const std::vector<qint64>& path) {
        QStringList articles;
        for (const qint64 bill : path) {
            articles.append(NodeDistinta(bill).article);
        }
        throw ImportError(NameOf(NodeDistinta(path.front())) + QStringLiteral(": contiene se stessa: ") +
                          articles.join(QStringLiteral(" > ")));
    });
}

/// Bills are nested as deep as the data say, so that the walk keeps its own stack.
void ovDistinta::PutPartsFirst() {
    struct Step {
        qint64 bill;
        bool isDone;
    };
    std::vector<Step> steps{{m_root, false}};
    QSet<qint64> seen;
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        if (step.isDone) {
            m_order.push_back(step.bill);
            continue;
        }
        const auto node = m_nodes.constFind(step.bill);
        if (node == m_nodes.cend() || seen.contains(step.bill)) {
            continue;
        }
        seen.insert(step.bill);
        steps.push_back({step.bill, true});
        for (const Componente& part : node->components) {
            steps.push_back({part.bill, false});
        }
    }
}

bool ovDistinta::AggiornaCostiPrezzi(qint64 bill) {
    LoadData(bill);
    UpdateComponent();
    UpdateLavorazioni();
    UpdateCosti();
    UpdatePrezzi();
    return SaveData();
}
