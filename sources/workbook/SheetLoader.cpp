#include "sources/workbook/SheetLoader.h"

#include "sources/spoiltCodes.h"
#include "sources/workbook/captions.h"
#include "sql/errors.h"

#include <cmath>

namespace sources {

namespace {

bool IsWhole(double number) {
    constexpr double exact = 9007199254740992; // 2^53
    return std::abs(number) < exact && number == std::floor(number);
}

/// "20240305", as dates are kept: among dates such a text would be taken for one.
bool LooksLikeDate(QByteArrayView text) {
    constexpr qsizetype size = 8;
    return text.size() >= size &&
           std::all_of(text.begin(), text.begin() + size, [](char c) { return c >= '0' && c <= '9'; });
}

/// "5/3/2024", a date that somebody has written as a text.
bool IsWrittenDate(QByteArrayView text) {
    constexpr qsizetype longest = 10;
    const QByteArrayView date = text.trimmed();
    const auto isMark = [](char c) { return c == '/' || c == '.' || c == '-'; };
    return date.size() <= longest && std::count_if(date.begin(), date.end(), isMark) == 2 &&
           std::all_of(date.begin(), date.end(), [&](char c) { return isMark(c) || (c >= '0' && c <= '9'); });
}

const SheetCell* CellIn(const SheetRow& row, int column) {
    const auto cell = std::ranges::find(row.cells, column, &SheetCell::column);
    return cell == row.cells.end() ? nullptr : &*cell;
}

/// The level that a cell tells; -1 for none.
qint64 LevelOf(const SheetCell* cell) {
    if (cell != nullptr && cell->kind == SheetCell::Kind::Number) {
        return IsWhole(cell->number) ? static_cast<qint64>(cell->number) : -1;
    }
    bool isNumber = false;
    const qint64 level =
        cell != nullptr && cell->kind == SheetCell::Kind::Text ? cell->text.trimmed().toLongLong(&isNumber) : -1;
    return isNumber ? level : -1;
}

/// The last column of a row that holds something, whatever order its cells stand in; -1 for none.
int LastColumn(const SheetRow& row) {
    int last = -1;
    for (const SheetCell& cell : row.cells) {
        last = std::max(last, cell.column);
    }
    return last;
}

} // namespace

QVector<ColumnInfo> SheetLoader::Load(PrivateDatabase& database) {
    const qint64 first = m_table.firstRow > 0 ? m_table.firstRow : m_table.headerRow + 1;
    const auto reader = m_workbook.Read(m_sheet);
    SheetRow row;
    m_next = first;
    while (Next(*reader, row)) {
        TakeEmptyFormulas(row);
        if (row.cells.empty()) {
            continue;
        }
        if (row.number == m_table.headerRow) {
            Open(database, row);
        } else if (row.number >= first) {
            if (m_target == nullptr) {
                Open(database, {});
            }
            if (!IsBehindEnd(row) && !RepeatsHeader(row)) {
                AddRow(row);
            }
        } else if (m_target != nullptr && IsDataAbove(row)) {
            AddRow(row);
        }
    }
    if (m_target == nullptr) {
        Open(database, {});
    }
    m_marks.Settle(*m_target, m_oddities);
    ChooseTypes();
    NoteMixed();
    NotePercents();
    NoteEmptyFormulas();
    NoteMerged(reader->Merged());
    m_oddities.Tell();
    return m_target->Columns();
}

bool SheetLoader::Next(SheetReader& reader, SheetRow& row) const {
    if (!reader.Next(row)) {
        return false;
    }
    for (SheetCell& cell : row.cells) {
        cell.column += m_table.level.isEmpty() ? 0 : 1; // behind that of the parent
    }
    return true;
}

QVector<ColumnInfo> SheetLoader::NamedColumns(const QStringList& names) {
    QStringList places(m_table.level.isEmpty() ? 0 : 1);
    for (int column = 0; places.size() < names.size(); ++column) {
        places.append(ColumnLetters(column));
    }
    QVector<ColumnInfo> columns;
    for (const QString& name : DistinctNames(names, places, m_oddities)) {
        columns.append({name, QStringLiteral("BLOB")});
    }
    return columns;
}

void SheetLoader::Open(PrivateDatabase& database, const SheetRow& header) {
    if (m_table.headerRow > 0 && header.cells.empty()) {
        throw ImportError(
            QStringLiteral("la riga %1, che deve avere i nomi delle colonne, è vuota").arg(m_table.headerRow));
    }
    const int parent = m_table.level.isEmpty() ? 0 : 1;
    QStringList names(std::max({LastColumn(header) + 1, m_table.columns + parent, parent}));
    for (const SheetCell& cell : header.cells) {
        names[cell.column] = TextOf(cell);
    }
    if (parent > 0) {
        names[0] = ParentRowColumn;
    }
    m_target = std::make_unique<PrivateTable>(database, m_table.table, NamedColumns(names), RowNumberColumn);
    m_seen.resize(static_cast<size_t>(names.size()));
    FindColumns();
}

void SheetLoader::FindColumns() {
    const auto find = [this](const QString& name) {
        const QVector<ColumnInfo>& columns = m_target->Columns();
        const auto column = std::ranges::find_if(
            columns, [&name](const ColumnInfo& each) { return each.name.compare(name, Qt::CaseInsensitive) == 0; });
        return column == columns.end() ? -1 : static_cast<int>(column - columns.begin());
    };
    for (const QString& name : m_table.endInFile.isEmpty() ? m_table.end : m_table.endInFile) {
        m_end.append(find(name));
    }
    m_end.removeAll(-1);
    m_isOwn = std::ranges::none_of(m_table.end, [&find](const QString& name) { return find(name) >= 0; });
    m_level = m_table.level.isEmpty() ? -1 : find(m_table.level);
}

bool SheetLoader::IsBehindEnd(const SheetRow& row) {
    const auto isBlank = [&row](int column) {
        const SheetCell* cell = CellIn(row, column);
        return cell == nullptr || IsBlank(*cell);
    };
    if (m_end.isEmpty()) {
        return false;
    }
    m_hasEnded = m_hasEnded || row.number != m_next || std::ranges::all_of(m_end, isBlank);
    m_next = row.number + 1;
    if (m_hasEnded) {
        QStringList names;
        for (const int column : std::as_const(m_end)) {
            names.append(NameOf(column));
        }
        m_oddities.Add(QStringLiteral("RIGHE OLTRE LA FINE"), QString(), row.number,
                       QStringLiteral("i dati finiscono alla prima riga senza '%1': non si legge")
                           .arg(names.join(QStringLiteral("' e '"))));
    }
    return m_hasEnded;
}

bool SheetLoader::RepeatsHeader(const SheetRow& row) {
    qsizetype filled = 0;
    for (const SheetCell& cell : row.cells) {
        if (IsBlank(cell)) {
            continue;
        }
        const bool isName = m_table.headerRow > 0 && cell.kind == SheetCell::Kind::Text &&
                            cell.column < m_target->Columns().size() &&
                            TextOf(cell).compare(NameOf(cell.column), Qt::CaseInsensitive) == 0;
        if (!isName) {
            return false;
        }
        ++filled;
    }
    if (filled < 2) {
        return false; // one value may be a name by chance
    }
    m_oddities.AddRepeatedHeader(row.number);
    return true;
}

void SheetLoader::SetParent(const SheetRow& row) {
    if (m_level < 0) {
        return;
    }
    const qint64 level = LevelOf(CellIn(row, m_level));
    if (level < 0 || level > m_above.size()) {
        m_oddities.Add(QStringLiteral("LIVELLO NON VALIDO"), NameOf(m_level), row.number,
                       QStringLiteral("il livello deve essere al massimo uno in più di quello della riga sopra"));
        // What follows a row of no level could belong to it.
        m_above.resize(level < 0 ? 0 : m_above.size());
        return;
    }
    if (level > 0) {
        m_target->SetInteger(0, m_above.at(level - 1));
        ++m_seen.front().wholes;
    }
    m_above.resize(level);
    m_above.append(row.number);
}

void SheetLoader::Widen(int last) {
    QStringList names;
    for (const ColumnInfo& column : m_target->Columns()) {
        names.append(column.name);
    }
    const qsizetype known = names.size();
    names.resize(last + 1);
    m_target->AddColumns(NamedColumns(names).mid(known));
    m_seen.resize(static_cast<size_t>(names.size()));
}

void SheetLoader::AddRow(const SheetRow& row) {
    if (const int last = LastColumn(row); last >= m_target->Columns().size()) {
        Widen(last);
    }
    SetParent(row);
    for (const SheetCell& cell : row.cells) {
        switch (cell.kind) {
        case SheetCell::Kind::Text:
            AddWritten(row, cell);
            break;
        case SheetCell::Kind::Number:
            AddNumber(row, cell);
            break;
        case SheetCell::Kind::Boolean:
            m_target->SetInteger(cell.column, cell.number != 0 ? 1 : 0);
            ++m_seen[static_cast<size_t>(cell.column)].bits;
            break;
        case SheetCell::Kind::Date:
            AddDate(row, cell.column, cell.text);
            break;
        case SheetCell::Kind::Error:
            AddUnreadable(row, cell.column,
                          QStringLiteral("la cella contiene l'errore %1").arg(QString::fromUtf8(cell.text)));
            break;
        case SheetCell::Kind::NoValue:
            AddUnreadable(
                row, cell.column,
                QStringLiteral("il file non contiene il risultato della formula: aprirlo con Excel e salvarlo"));
            break;
        case SheetCell::Kind::Unreadable:
            AddUnreadable(row, cell.column, QString::fromUtf8(cell.text));
            break;
        case SheetCell::Kind::EmptyText:
            break;
        }
    }
    if (row.isHidden) {
        m_oddities.Add(QStringLiteral("RIGA NASCOSTA"), QString(), row.number,
                       QStringLiteral("il foglio non la mostra; si legge come le altre"));
    }
    m_target->AddRow(row.number);
}

void SheetLoader::AddText(const SheetRow& row, int column, const QByteArray& text) {
    Seen& seen = m_seen[static_cast<size_t>(column)];
    ++seen.texts;
    seen.textsLikeDates += LooksLikeDate(text) ? 1 : 0;
    m_untold.Look(text, row.number, NameOf(column));
    m_target->SetText(column, text);
}

/// A text that somebody has written, not one that a format shows.
void SheetLoader::AddWritten(const SheetRow& row, const SheetCell& cell) {
    AddText(row, cell.column, cell.text);
    m_marks.Look(cell.column, cell.text);
    spoiltCodes::Look(cell.text, NameOf(cell.column), row.number, m_oddities);
    Seen& seen = m_seen[static_cast<size_t>(cell.column)];
    if (!IsBlank(cell) && !LooksLikeDate(cell.text) && !IsWrittenDate(cell.text)) {
        seen.firstOfThem = seen.textsAmongDates == 0 ? row.number : seen.firstOfThem;
        ++seen.textsAmongDates;
    }
}

void SheetLoader::AddDate(const SheetRow& row, int column, const QByteArray& text) {
    Seen& seen = m_seen[static_cast<size_t>(column)];
    seen.firstDate = seen.dates == 0 ? row.number : seen.firstDate;
    ++seen.dates;
    seen.hasTimes = seen.hasTimes || text.contains(' ');
    m_target->SetText(column, text);
}

void SheetLoader::AddNumber(const SheetRow& row, const SheetCell& cell) {
    const auto kind = cell.format != nullptr ? cell.format->GetKind() : CellFormat::Kind::Number;
    if (kind == CellFormat::Kind::Date || kind == CellFormat::Kind::Time) {
        const auto date = DateOfSerial(cell.number, kind, m_since1904);
        if (!date) {
            AddUnreadable(row, cell.column, QStringLiteral("%1 non è una data").arg(cell.number));
        } else if (date->contains(':') && !date->contains(' ')) {
            AddText(row, cell.column, *date);
        } else if (!date->isEmpty()) {
            AddDate(row, cell.column, *date);
        }
        return;
    }
    if (const auto padded = cell.format != nullptr ? cell.format->Padded(cell.number) : std::nullopt) {
        AddText(row, cell.column, *padded);
        return;
    }
    m_marks.LookAtNumber(cell.column);
    spoiltCodes::Look(cell.number, NameOf(cell.column), row.number, m_oddities);
    Seen& seen = m_seen[static_cast<size_t>(cell.column)];
    if (cell.format != nullptr && cell.format->IsPercent() && ++seen.percents == 1) {
        seen.firstPercent = row.number;
        seen.percent = cell.number;
    }
    if (IsWhole(cell.number)) {
        ++seen.wholes;
        m_target->SetInteger(cell.column, static_cast<qint64>(cell.number));
    } else {
        ++seen.fractions;
        m_target->SetReal(cell.column, cell.number);
    }
}

void SheetLoader::AddUnreadable(const SheetRow& row, int column, const QString& why) {
    ++m_seen[static_cast<size_t>(column)].unreadable;
    m_oddities.SpoilValue(*m_target, column, row.number, why);
}

void SheetLoader::ChooseTypes() {
    QVector<ColumnInfo> columns = m_target->Columns();
    for (int column = 0; column < columns.size(); ++column) {
        const Seen& seen = m_seen[static_cast<size_t>(column)];
        QString& type = columns[column].type;
        if (seen.IsEmpty()) {
            type.clear();
        } else if (seen.IsOfDates()) {
            type = seen.hasTimes ? QStringLiteral("DATETIME TEXT") : QStringLiteral("DATE TEXT");
        } else if (seen.texts + seen.dates == 0 && seen.Numbers() > 0) {
            type = seen.bits == seen.Numbers() ? QStringLiteral("BIT") : QStringLiteral("NUMERIC");
        } else if (seen.IsOfCodes() || seen.Numbers() == 0) {
            type = QStringLiteral("TEXT");
        }
        if (seen.Numbers() > 0 && seen.IsOfCodes()) {
            m_target->NumbersToTexts(column);
        }
    }
    m_target->Retype(columns);
}

/// Excel makes dates of codes such as "3-12".
void SheetLoader::NoteMixed() {
    for (int column = 0; column < m_target->Columns().size(); ++column) {
        const Seen& seen = m_seen[static_cast<size_t>(column)];
        if (seen.dates == 0 || seen.Numbers() + seen.textsAmongDates == 0) {
            continue;
        }
        const QString numbers =
            seen.Numbers() > 0 ? QStringLiteral(", %1 numeri senza il formato di una data (non si leggono come date)")
                                     .arg(seen.Numbers())
                               : QString();
        const QString texts =
            seen.textsAmongDates > 0
                ? QStringLiteral(", %1 testi (il primo alla riga %2)").arg(seen.textsAmongDates).arg(seen.firstOfThem)
                : QString();
        m_oddities.Add(QStringLiteral("COLONNA MISTA"), NameOf(column), 0,
                       QStringLiteral("%1 celle sono date (la prima alla riga %2)%3%4; un codice di cui Excel ha fatto "
                                      "una data si legge come data: riscriverlo come testo")
                           .arg(seen.dates)
                           .arg(seen.firstDate)
                           .arg(numbers, texts));
    }
}

/// A percentage is kept as its hundredth part: a discount of 10% as 0.1.
void SheetLoader::NotePercents() {
    for (int column = 0; column < m_target->Columns().size(); ++column) {
        const Seen& seen = m_seen[static_cast<size_t>(column)];
        if (seen.percents > 0) {
            constexpr double hundred = 100;
            m_oddities.Add(
                QStringLiteral("PERCENTUALE"), NameOf(column), seen.firstPercent,
                QStringLiteral("%1 celle hanno il formato percentuale: dove il foglio mostra %2% si legge %3; "
                               "se serve %2, scrivere nella colonna i numeri senza quel formato")
                    .arg(QString::number(seen.percents), QString::number(seen.percent * hundred),
                         QString::number(seen.percent)));
        }
    }
}

void SheetLoader::TakeEmptyFormulas(SheetRow& row) {
    std::erase_if(row.cells, [this](const SheetCell& cell) {
        if (cell.kind != SheetCell::Kind::EmptyText) {
            return false;
        }
        ++m_emptyFormulas[cell.column];
        return true;
    });
}

/// Where a formula of the column gives a value, the file has been reckoned.
void SheetLoader::NoteEmptyFormulas() {
    for (auto column = m_emptyFormulas.cbegin(); column != m_emptyFormulas.cend(); ++column) {
        const bool isThere = static_cast<size_t>(column.key()) < m_seen.size();
        if (isThere && m_seen[static_cast<size_t>(column.key())].IsEmpty()) {
            m_oddities.Add(QStringLiteral("FORMULE SENZA RISULTATO"), NameOf(column.key()), 0,
                           QStringLiteral("%1 formule, tutte con un testo vuoto come risultato; se Excel vi mostra dei "
                                          "valori, aprire il file con Excel e salvarlo")
                               .arg(column.value()));
        }
    }
}

void SheetLoader::NoteMerged(const QStringList& ranges) {
    for (const QString& range : ranges) {
        m_oddities.Add(QStringLiteral("CELLE UNITE"), QString(), 0,
                       QStringLiteral("%1: il valore è quello della prima cella, le altre sono vuote").arg(range));
    }
}

} // namespace sources
