#include "app/report/html_kind.h"

#include "app/report/chart.h"
#include "app/report/html_words.h"
#include "app/report/names.h"

namespace proof::html {

namespace {

constexpr qsizetype MostReasons = 50; ///< rows given up, and codes, that are listed

QString TableName(const QString& table) {
    const QString title = TableTitle(table);
    return Text(title) + (title == table ? QString() : Element("span", QString(u' ' + table), "soft"));
}

QString ColumnName(const QString& column) {
    const QString title = ColumnTitle(column);
    return Text(title == column ? column : QString(title + QStringLiteral(" (%1)").arg(column)));
}

QString Rest(qint64 rest) { return rest > 0 ? Element("p", "... e altre " + Number(rest), "soft") + u'\n' : QString(); }

/// A number that should be none.
QString Fault(qint64 number) { return number == 0 ? Number(number) : Element("strong", Number(number), "bad"); }

// --- Source ---------------------------------------------------------------------------------------------------------

QString SourceTable(const Kind& kind) {
    QList<Row> rows;
    for (const Step& step : kind.steps) {
        const RunResult& result = step.result;
        const qint64 explained = result.updated + result.inserted + result.skipped + result.givenUpCount;
        rows.append({{Text(step.title), Number(result.sourceRows), Number(result.updated), Number(result.inserted),
                      Number(result.skipped), Number(result.givenUpCount), Fault(result.sourceRows - explained)}});
    }
    return Table({{"Importazione"},
                  {"Righe dell'origine", true},
                  {"trovate in Quadrix", true},
                  {"da inserire", true},
                  {"saltate per regola", true},
                  {"non importabili", true},
                  {"non spiegate", true}},
                 rows);
}

QString SkippedTable(const Kind& kind) {
    QMap<QString, qint64> rules;
    for (const Step& step : kind.steps) {
        for (const auto& [rule, count] : step.result.skippedBy.asKeyValueRange()) {
            rules[rule] += count;
        }
    }
    QList<Row> rows;
    for (const auto& [rule, count] : rules.asKeyValueRange()) {
        rows.append({{Text(rule), Number(count)}});
    }
    return rows.isEmpty() ? QString()
                          : Element("h3", "Righe saltate per regola") + Table({{"Regola"}, {"Righe", true}}, rows);
}

/// Rows that were given up once and imported with mended values cannot be compared with a source that has the old ones.
QString MendedLine(const Kind& kind) {
    return kind.mended == 0 ? QString()
                            : Element("p", Text("Importate coi valori corretti a mano, che l'origine non ha: " +
                                                Number(kind.mended) + '.'));
}

QString GivenUpTable(const Kind& kind) {
    QList<Row> rows;
    qint64 count = 0;
    for (const Step& step : kind.steps) {
        count += step.result.givenUpCount;
        for (const RunResult::GivenUp& row : step.result.givenUp) {
            if (rows.size() < MostReasons) {
                rows.append({{Text(row.rowKey), Text(row.reason)}});
            }
        }
    }
    return count == 0 ? QString()
                      : Element("h3", "Righe dell'origine che non si possono importare") + MendedLine(kind) +
                            Table({{"Riga dell'origine"}, {"Motivo"}}, rows) + Rest(count - rows.size());
}

QString CodesTable(const Kind& kind) {
    QStringList codes;
    qint64 count = 0;
    for (const Step& step : kind.steps) {
        codes += step.result.untranslated;
        count += step.result.untranslatedCount;
    }
    QList<Row> rows;
    for (const QString& code : codes.mid(0, MostReasons)) {
        rows.append({{Text(code.section(QStringLiteral(" = "), 0, 0)), Text(code.section(QStringLiteral(" = "), 1))}});
    }
    return count == 0 ? QString()
                      : Element("h3", "Codici incontrati senza traduzione") + Table({{"Campo"}, {"Codice"}}, rows) +
                            Rest(count - rows.size());
}

QString NotesTable(const Kind& kind) {
    Notes notes;
    for (const Step& step : kind.steps) {
        notes.Add(step.result.notes);
    }
    QList<Row> rows;
    for (const Notes::Kind& note : notes.kinds) {
        rows.append({{Text(note.name), Number(note.count), Text(note.first)}});
    }
    return rows.isEmpty()
               ? QString()
               : Element("h3", "Annotazioni") + Table({{"Annotazione"}, {"Volte", true}, {"La prima"}}, rows);
}

// --- Quadrix --------------------------------------------------------------------------------------------------------

QString FiguresTable(const Kind& kind) {
    QList<Row> rows;
    for (const TableFigures& table : kind.tables) {
        if (table.OfSource() + table.OfTarget() == 0) {
            continue;
        }
        rows.append({{TableName(table.table), Number(table.OfSource()), Number(table.OfTarget()), Number(table.equal),
                      Fault(table.different), Fault(table.missing), Fault(table.surplus), Number(table.kept),
                      Number(table.others)},
                     table.Faults() == 0 ? QString() : QStringLiteral("bad")});
    }
    return rows.isEmpty() ? QString()
                          : Element("h3", "Righe di Quadrix") + Table({{"Tabella"},
                                                                       {"secondo l'origine", true},
                                                                       {"in Quadrix", true},
                                                                       {"uguali", true},
                                                                       {"diverse", true},
                                                                       {"mancanti", true},
                                                                       {"di troppo", true},
                                                                       {"importate, non riscritte", true},
                                                                       {"di altri", true}},
                                                                      rows);
}

/// Tables of which the trial has written no row, though imports have.
QString KeptLine(const Kind& kind) {
    QStringList tables;
    for (const TableFigures& table : kind.tables) {
        if (table.OfSource() + table.OfTarget() == 0 && table.kept > 0) {
            tables.append(TableTitle(table.table) + " (" + Number(table.kept) + ')');
        }
    }
    return tables.isEmpty()
               ? QString()
               : Element(
                     "p",
                     Text("Ritrovate com'erano, senza nulla da riscrivere o aggiungere: " + tables.join(", ") + '.'),
                     "soft");
}

QString UncomparedLines(const Kind& kind) {
    QList<Row> rows;
    for (const Uncompared& each : kind.uncompared) {
        const QString column = each.column.section(u'.', 1);
        rows.append(
            {{TableName(each.column.section(u'.', 0, 0)), ColumnName(column), Number(each.cells), Text(each.reason)}});
    }
    QString lines = rows.isEmpty() ? QString()
                                   : Element("h3", "Non confrontato") +
                                         Table({{"Tabella"}, {"Colonna"}, {"Celle", true}, {"Perché"}}, rows);
    if (kind.onlyRoles) {
        lines += Element("p",
                         Text("Delle controparti si sono confrontate soltanto le colonne dei ruoli, perché "
                              "l'importazione fa domande e non si è potuta ripetere."),
                         "soft");
    }
    return lines;
}

Row SumRow(const TableFigures& table, const Total& total, const Total::Amount& amount) {
    const bool agrees = amount.source == amount.target;
    const double difference = amount.target.Value() - amount.source.Value();
    return {{TableName(table.table), Element("span", Text(total.group), "keep"), ColumnName(amount.column),
             Amount(amount.source.Value()), Amount(amount.target.Value()),
             agrees ? Amount(0) : Element("strong", Amount(difference), QStringLiteral("bad"))},
            agrees ? QString() : QStringLiteral("bad")};
}

QString SumsTable(const Kind& kind) {
    QList<Row> rows;
    for (const TableFigures& table : kind.tables) {
        for (const Total& total : table.totals) {
            for (const Total::Amount& amount : total.amounts) {
                if (amount.source.Value() != 0 || amount.target.Value() != 0) {
                    rows.append(SumRow(table, total, amount));
                }
            }
        }
    }
    return rows.isEmpty() ? QString()
                          : Element("h3", "Somme") + Table({{"Tabella"},
                                                            {"Gruppo"},
                                                            {"Somma"},
                                                            {"secondo l'origine", true},
                                                            {"in Quadrix", true},
                                                            {"differenza", true}},
                                                           rows);
}

Row DifferenceRow(const Difference& difference) {
    const auto shown = [](const QString& value) {
        return value.isEmpty() ? Element("span", "(vuoto)", "soft") : Text(value);
    };
    const QString row =
        Text(difference.row) + (difference.sourceRow.isEmpty()
                                    ? QString()
                                    : QString("<br>" + Element("span", Text("da " + difference.sourceRow), "soft")));
    switch (difference.kind) {
    case Difference::Kind::Missing:
        return {{TableName(difference.table), row, {}, "presente", Element("strong", "manca", "bad")}};
    case Difference::Kind::Surplus:
        return {{TableName(difference.table), row, {}, "non c'è", Element("strong", "di troppo", "bad")}};
    case Difference::Kind::Value:
        break;
    }
    return {{TableName(difference.table), row, ColumnName(difference.column), shown(difference.source),
             Element("strong", shown(difference.target), "bad")}};
}

QString DifferencesTable(const Kind& kind) {
    QList<Row> rows;
    qint64 rest = 0;
    for (const TableFigures& table : kind.tables) {
        QSet<QString> shown;
        for (const Difference& difference : table.differences) {
            rows.append(DifferenceRow(difference));
            shown.insert(QString::number(static_cast<int>(difference.kind)) + difference.row);
        }
        rest += table.Faults() - shown.size();
    }
    return rows.isEmpty()
               ? QString()
               : Element("h3", "Differenze") +
                     Table({{"Tabella"}, {"Riga"}, {"Colonna"}, {"Origine"}, {"Quadrix"}}, rows) + Rest(rest);
}

QString SampleTable(const QString& table, const Sample& sample) {
    QList<Row> rows;
    for (const Sample::Value& value : sample.values) {
        rows.append({{ColumnName(value.column), Text(value.source), Text(value.target)}});
    }
    return "<div class=\"whole\">" + Element("h4", TableName(table) + ": " + Text(sample.row)) +
           Table({{"Colonna"}, {"Origine"}, {"Quadrix"}}, rows, "samples") + "</div>\n";
}

QString SampleTables(const Kind& kind) {
    QString tables;
    for (const TableFigures& table : kind.tables) {
        for (const Sample& sample : table.samples) {
            tables += SampleTable(table.table, sample);
        }
    }
    return tables.isEmpty() ? QString()
                            : Element("h3", "Righe a fronte, scelte a caso") + Element("div", u'\n' + tables, "pairs");
}

} // namespace

QString Tag(Light light) {
    return light == Light::Green    ? Element("span", "concorda", "tag green")
           : light == Light::Yellow ? Element("span", "con riserve", "tag yellow")
                                    : Element("span", "non concorda", "tag red");
}

QString RowsChart(const std::vector<Kind>& kinds) {
    QVector<Bar> bars;
    for (const Kind& kind : kinds) {
        const SourceFigures figures = FiguresOf(kind);
        const auto part = [](const char* name, qint64 value, const char* cssClass) {
            return Bar::Part{QString::fromUtf8(name), static_cast<double>(value), QString::fromLatin1(cssClass)};
        };
        bars.append(
            {kind.title,
             {part("in Quadrix", figures.found, "found"), part("mancanti", figures.missing, "missing"),
              part("saltate per regola", figures.skipped, "skipped"),
              part("non importabili", figures.givenUp, "givenup"), part("non lette", figures.notReached, "unread")},
             Number(figures.rows)});
    }
    return Chart(bars, "Righe dell'origine per genere di dati");
}

QString TotalsPage(const std::vector<Kind>& kinds) {
    QString charts;
    for (const Kind& kind : kinds) {
        for (const TableFigures& table : kind.tables) {
            QVector<Bar> bars;
            for (const Total& total : table.totals) {
                if (!total.group.isEmpty() && !total.amounts.empty()) {
                    const Total::Amount& amount = total.amounts.back();
                    bars.append({total.group,
                                 {{"secondo l'origine", amount.source.Value(), "source"}},
                                 Amount(amount.source.Value())});
                    bars.append({{}, {{"in Quadrix", amount.target.Value(), "target"}}, Amount(amount.target.Value())});
                }
            }
            if (!bars.isEmpty()) {
                const QString what = ColumnTitle(table.totals.front().amounts.back().column);
                const QString title = TableTitle(table.table) + ": " + what;
                charts += Element("h3", Text(title)) + Chart(bars, title);
            }
        }
    }
    return charts.isEmpty()
               ? QString()
               : "<section class=\"page\">" + Element("h2", "Totali sui due lati") + charts + "</section>\n";
}

QString KindSection(const Kind& kind) {
    const Verdict verdict = VerdictOf(FindingsOf(kind));
    return "<section class=\"kind page\">" + Element("h2", Text(kind.title) + u' ' + Tag(verdict.light)) +
           Element("p", Text(verdict.reason)) + SourceTable(kind) + FiguresTable(kind) + KeptLine(kind) +
           DifferencesTable(kind) + SumsTable(kind) + UncomparedLines(kind) + GivenUpTable(kind) + SkippedTable(kind) +
           CodesTable(kind) + NotesTable(kind) + SampleTables(kind) + "</section>\n";
}

} // namespace proof::html
