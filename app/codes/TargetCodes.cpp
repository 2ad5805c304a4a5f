#include "app/codes/TargetCodes.h"

#include "adapters/contract/run/SourceRow.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

#include <algorithm>

namespace codes {

namespace {

const QString VatCodes = QStringLiteral("TAB_IVA");
const QString Rate = QStringLiteral("IVALI");
const QString Terms = QStringLiteral("TAB_MOP");

QString FirstColumn(const BaseTable& base, const std::function<bool(const schema::Column&)>& isIt) {
    const schema::Table* table = schema::FindTable(base.table);
    const auto found = std::find_if(table->columns.begin(), table->columns.end(), isIt);
    return found == table->columns.end() ? QString() : found->name;
}

std::vector<const TargetCode*> At(const std::vector<TargetCode>& codes, QList<int> positions) {
    std::sort(positions.begin(), positions.end());
    std::vector<const TargetCode*> found;
    for (const int position : positions) {
        found.push_back(&codes[static_cast<size_t>(position)]);
    }
    return found;
}

/// A code without the zeros in front, in upper case.
QString BareCode(const QString& code) {
    qsizetype zeros = 0;
    while (zeros + 1 < code.size() && code.at(zeros) == u'0') {
        ++zeros;
    }
    return code.mid(zeros).toUpper();
}

} // namespace

QVector<int> DaysIn(const QString& text) {
    static const QRegularExpression numbers(QStringLiteral("(?<!\\d)\\d{1,3}(?!\\d)"));
    QVector<int> days;
    for (auto number = numbers.globalMatch(text); number.hasNext();) {
        days.append(number.next().captured().toInt());
    }
    return days;
}

QString LettersOf(const QString& text) {
    QString letters;
    for (const QChar character : text.toUpper()) {
        letters += character.isLetterOrNumber() ? QString(character) : QString();
    }
    return letters;
}

bool CanBeMade(const BaseTable& base) {
    // The others need more than that: a rate, measures, an address, a warehouse's kind.
    static const QStringList simple{"TAB_MOP", "TAB_MPT", "TAB_NAZ", "TAB_LNG", "TAB_UMS", "TAB_VAL",
                                    "TAB_MAT", "FAM_PRO", "TIP_PRO", "AGE_NTI", "LAV_ORA", "MAC_CHI"};
    return simple.contains(base.table);
}

QString DescriptionColumn(const BaseTable& base) {
    const QString essential =
        FirstColumn(base, [](const schema::Column& column) { return column.words && column.essential; });
    return !essential.isEmpty() ? essential : FirstColumn(base, [](const schema::Column& one) { return one.words; });
}

QString ExternalColumn(const BaseTable& base) {
    return FirstColumn(base, [](const schema::Column& column) {
        return column.name.size() == 5 && column.name.endsWith(QLatin1String("EXT")); // "IVEXT"
    });
}

TargetCodes::TargetCodes(Session& session, const BaseTable& base)
    : m_base(base) {
    const QString description = DescriptionColumn(base);
    const QString external = ExternalColumn(base);
    const bool isVat = base.table == VatCodes;
    QStringList columns{base.column, description, external, isVat ? Rate : QString()};
    columns.removeAll(QString());
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
            .arg(columns.join(QStringLiteral(", ")), session.Quadrix.GetFullTableName(base.table), base.column));
    for (const contract::SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        TargetCode code{.code = row.Text(base.column)};
        if (code.code.isEmpty() || m_positions.contains(code.code.toUpper())) { // of several rows, such as a list's
            continue;
        }
        code.description = description.isEmpty() ? QString() : row.Text(description);
        code.external = external.isEmpty() ? QString() : row.Text(external);
        code.rate = isVat ? mod_ovTools::ReadNumber(row.Value(Rate)) : std::nullopt;
        const int position = static_cast<int>(m_codes.size());
        m_positions.insert(code.code.toUpper(), position);
        m_byDescription.insert(LettersOf(code.description), position);
        m_byExternal.insert(code.external.toUpper(), position);
        m_byBareCode.insert(BareCode(code.code), position);
        m_codes.push_back(code);
    }
    if (base.table == Terms) {
        ReadDays(session);
    }
}

void TargetCodes::ReadDays(Session& session) {
    Recordset rows =
        session.Quadrix.ExecuteWC(QStringLiteral("SELECT CDMOP, MPGGF FROM TAB_MPR ORDER BY CDMOP, NRRAT"));
    for (const contract::SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const auto days = mod_ovTools::ReadNumber(row.Value(QStringLiteral("MPGGF")));
        const auto term = m_positions.constFind(row.Text(QStringLiteral("CDMOP")).toUpper());
        if (days && term != m_positions.constEnd()) {
            m_codes[static_cast<size_t>(*term)].days.append(static_cast<int>(*days));
        }
    }
    for (TargetCode& code : m_codes) {
        code.days = code.days.isEmpty() ? DaysIn(code.description) : code.days;
    }
}

const TargetCode* TargetCodes::Find(const QString& code) const {
    const auto position = m_positions.constFind(code.toUpper());
    return position == m_positions.constEnd() ? nullptr : &m_codes[static_cast<size_t>(*position)];
}

std::vector<const TargetCode*> TargetCodes::WithDescription(const QString& text) const {
    const QString letters = LettersOf(text);
    return letters.isEmpty() ? std::vector<const TargetCode*>() : At(m_codes, m_byDescription.values(letters));
}

std::vector<const TargetCode*> TargetCodes::WithPadding(const QString& code) const {
    return At(m_codes, m_byBareCode.values(BareCode(code)));
}

std::vector<const TargetCode*> TargetCodes::WithExternal(const QString& code) const {
    return code.isEmpty() ? std::vector<const TargetCode*>() : At(m_codes, m_byExternal.values(code.toUpper()));
}

} // namespace codes
