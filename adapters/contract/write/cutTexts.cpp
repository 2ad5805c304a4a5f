#include "adapters/contract/write/cutTexts.h"

#include "sql/variantText.h"

#include <algorithm>

namespace contract {

namespace {

bool IsText(const schema::Column& column) { return column.size > 0 || column.type == DataType::NText; }

/// Whether a column is as full as it can be. Up to two characters may be missing, where the last one would be half of
/// one and where blanks were.
bool IsFull(const schema::Column& column, QStringView written) {
    constexpr int spare = 2;
    return !written.isEmpty() && written.size() >= column.size - spare;
}

bool IsBeginning(const schema::Column& column, QStringView written, const QString& all) {
    return all.size() > column.size && written.size() < all.size() && all.startsWith(written, Qt::CaseInsensitive);
}

/// Whether another column of the row holds what one has left out: the whole text, or the rest by itself or in a note.
bool IsRestElsewhere(const schema::Table& table, const TargetRow& target, QStringView written, const QString& all) {
    const QStringView rest = QStringView(all).sliced(written.size()).trimmed();
    return std::any_of(table.columns.begin(), table.columns.end(), [&](const schema::Column& column) {
        const QStringView text = IsText(column) ? target.TextOf(column) : QStringView();
        if (text.size() < rest.size() || text.isEmpty()) {
            return false;
        }
        return text.contains(all, Qt::CaseInsensitive) || text.compare(rest, Qt::CaseInsensitive) == 0 ||
               (column.size == 0 && text.contains(rest, Qt::CaseInsensitive));
    });
}

} // namespace

void TellCut(ImportRun& run, const QStringList& columns, const QString& written, const QString& all) {
    if (written.size() < all.size()) {
        run.Log(QStringLiteral("TESTO RIDOTTO: %1, colonna '%2': scritti %3 caratteri di %4")
                    .arg(run.RowKey(), columns.join(QStringLiteral("', '")), QString::number(written.size()),
                         QString::number(all.size())));
    }
}

void TellCut(ImportRun& run, const Mapping& mapping, const SourceRow& row, const TargetRow& target) {
    const schema::Table& table = *schema::FindTable(mapping.targetTable);
    for (const MapLine& line : mapping.lines) {
        const schema::Column* column = table.FindColumn(line.target);
        const bool isText = column != nullptr && column->size > 0 && column->refersTo.isEmpty();
        if (!isText || line.sources.isEmpty()) { // a code is another word than the source's, not its beginning
            continue;
        }
        const QStringView written = target.TextOf(*column);
        if (!IsFull(*column, written)) {
            continue;
        }
        const Facts none;
        const QString all = RuleInput{run.GetSession(), row, line.sources, none}.Text();
        if (IsBeginning(*column, written, all) && !IsRestElsewhere(table, target, written, all)) {
            TellCut(run, line.sources, written.toString(), all);
        }
    }
}

void TellLostZeros(ImportRun& run, const TargetRow& target) {
    struct Digits {
        const char* column;
        qsizetype least;
        qsizetype size;
    };
    const QString country = target.Value("CONAZ").toString();
    if (!country.isEmpty() && country != u"ITA") {
        return;
    }
    for (const Digits& each : {Digits{"COIVA", 8, 11}, Digits{"COFIS", 8, 11}, Digits{"COCAP", 3, 5}}) {
        const QString text = target.Value(each.column).toString().trimmed();
        const bool isNumber = std::all_of(text.begin(), text.end(), IsDigit);
        if (isNumber && text.size() >= each.least && text.size() < each.size) {
            run.Log(QStringLiteral("ZERI PERSI: %1: '%2' (%3) ha %4 cifre e non %5: se ne mancano davanti, formattare "
                                   "come testo la colonna del foglio e reimportare")
                        .arg(run.RowKey(), text, QLatin1String(each.column), QString::number(text.size()),
                             QString::number(each.size)));
        }
    }
}

} // namespace contract
