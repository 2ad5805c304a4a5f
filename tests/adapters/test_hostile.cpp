#include "tests/adapters/Fixture.h"
#include "tests/adapters/partedColumn.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"
#include "sql/visibleText.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// Stand in the place of hostile characters, one of these for each: no rule cares about them, and the log holds them.
const QString Harmless = QStringLiteral("¡¢£¤¥¦§¨©«¬®");
constexpr int Short = 8;
constexpr int Long = 10000;

QString Ending(const QString& characters, int length) {
    return characters.repeated(length / characters.size() + 1).left(length);
}

using TextColumns = QStringList; ///< "table.column" of a source

TextColumns TextColumnsOf(ovConnection& source) {
    TextColumns columns;
    for (const QString& table : source.GetTables()) {
        for (const ColumnInfo& column : source.GetColumns(table)) {
            if (column.type.contains("CHAR") || column.type.startsWith("TEXT")) {
                columns.append(table + '.' + column.name);
            }
        }
    }
    return columns;
}

/// Puts an ending behind every text of the columns that is not blank.
void Lengthen(ovConnection& source, const TextColumns& columns, const QString& ending) {
    const bool isSqlite = source.Embedded || source.OpenFiles;
    const QString longer = isSqlite ? "%1 || %2" : "CONCAT(%1, %2)";
    // A NUL does not stand in a statement.
    const QString nul = isSqlite ? "' || char(0) || '" : "', CHAR(0 USING utf8mb4), '";
    const QString literal =
        mod_ovTools::FormatSqlValue(ending, DataType::NVarChar, source.ProviderType).replace(QChar(u'\0'), nul);
    QMap<QString, QStringList> settings;
    TextColumns there = columns;
    if (isSqlite) { // of several files that are one table each time that one is chosen; a server types otherwise
        const TextColumns ofFile = TextColumnsOf(source);
        there.removeIf([&ofFile](const QString& column) { return !ofFile.contains(column); });
    }
    for (const QString& column : std::as_const(there)) {
        const auto [table, bare] = PartedColumn(source, column);
        const QString name = '[' + bare + ']';
        settings[table].append(
            QString("%1 = CASE WHEN LTRIM(%1) = '' THEN %1 ELSE %2 END").arg(name, longer.arg(name, literal)));
    }
    for (auto table = settings.cbegin(); table != settings.cend(); ++table) {
        source.Execute("UPDATE [" + table.key() + "] SET " + table.value().join(", "));
    }
}

/// What came of all procedures of a module.
struct HostileAccount {
    QString outcome;
    QVector<RunResult> whole; ///< of the procedures that import everything
};

HostileAccount Run(const QString& module, const Fixture::SourceChange& change, const QString& code,
                   TestTarget::On engine) {
    Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), engine, change);
    QVector<RunResult> whole;
    for (const QString& line : fixture.Lines()) {
        static const QRegularExpression single("code=\\S+");
        fixture.RunLine(QString(line).replace(single, "code=" + code));
        if (!line.contains(single)) {
            whole.append(fixture.Results().last());
        }
    }
    return {fixture.Outcome(), whole};
}

/// Runs all procedures over a source with longer texts.
HostileAccount Run(const QString& module, const TextColumns& columns, const QString& ending, TestTarget::On engine) {
    return Run(
        module, [&](ovConnection& source) { Lengthen(source, columns, ending); }, "X" + ending.left(Short), engine);
}

/// The columns of a module's source by the longest ending that their texts can have without a row less: `Long`, `Short`
/// or none. Those with none are numbers, flags, or codes of a certain length.
class Endings {
public:
    /// Reads them from the fixture's "endings.txt", a line "table.column length" each; or tries them and writes it.
    static Endings Of(const QString& module) {
        const Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        Endings endings(module);
        if (qEnvironmentVariableIsSet("QUADRIX_REWRITE_GOLDEN")) {
            endings.Learn();
            fixture.Compare("endings.txt", endings.Text());
        }
        for (const QString& line : fixture.Read("endings.txt").split('\n', Qt::SkipEmptyParts)) {
            endings.m_longest.insert(line.section(' ', 0, -2), line.section(' ', -1).toInt());
        }
        return endings;
    }
    TextColumns Taking(int length) const {
        TextColumns columns;
        for (auto column = m_longest.cbegin(); column != m_longest.cend(); ++column) {
            if (column.value() >= length) {
                columns.append(column.key());
            }
        }
        return columns;
    }

private:
    explicit Endings(QString module)
        : m_module(std::move(module)) {}

    void Learn() {
        QMap<QString, QSet<QString>> values;
        const auto look = [&](ovConnection& source) {
            for (const QString& column : TextColumnsOf(source)) {
                m_longest.insert(column, 0);
                values[column] = ValuesOf(source, column);
            }
        };
        m_clean = Run(m_module, look, "X", TestTarget::On::Embedded);
        Choose(Taking(0), Short);
        for (const QString& column : Taking(0)) { // codes that must change in several tables at once
            if (m_longest.value(column) == 0) {
                TryTogether(values, column);
            }
        }
        Choose(Taking(Short), Long);
    }
    static QSet<QString> ValuesOf(ovConnection& source, const QString& column) {
        QSet<QString> values;
        const auto [table, name] = PartedColumn(source, column);
        for (Recordset rows = source.ExecuteWC("SELECT [" + name + "] FROM [" + table + "]"); !rows.Eof();
             rows.MoveNext()) {
            values.insert(mod_ovTools::ToText(rows.Fields(0).Value()).trimmed());
        }
        values.removeIf([](const QString& value) { return value.size() < 2; });
        return values;
    }
    void TryTogether(const QMap<QString, QSet<QString>>& values, const QString& column) {
        TextColumns together;
        for (auto other = values.cbegin(); other != values.cend(); ++other) {
            if (m_longest.value(other.key()) == 0 && other->intersects(values.value(column))) {
                together.append(other.key());
            }
        }
        if (together.size() > 1) {
            Try(together, Short);
        }
    }
    void Choose(const TextColumns& columns, int length) {
        if (!Try(columns, length) && columns.size() > 1) {
            Choose(columns.mid(0, columns.size() / 2), length);
            Choose(columns.mid(columns.size() / 2), length);
        }
    }
    bool Try(const TextColumns& columns, int length) {
        TextColumns all = Taking(length) + columns;
        all.removeDuplicates();
        if (!LosesNone(Run(m_module, all, Ending(Harmless, length), TestTarget::On::Embedded))) {
            return false;
        }
        for (const QString& column : columns) {
            m_longest[column] = length;
        }
        return true;
    }
    /// Whether every procedure ends as it did, gives up no row more and writes no row less.
    bool LosesNone(const HostileAccount& account) const {
        for (qsizetype i = 0; i < m_clean.whole.size(); ++i) {
            const RunResult& clean = m_clean.whole.at(i);
            const RunResult& result = account.whole.at(i);
            bool loses = result.outcome != clean.outcome || result.givenUpCount > clean.givenUpCount;
            for (const QString& table : clean.tables.keys()) {
                const RunResult::TableCount before = clean.tables.value(table);
                const RunResult::TableCount now = result.tables.value(table);
                loses = loses || now.inserted + now.updated < before.inserted + before.updated;
            }
            if (loses) {
                return false;
            }
        }
        return true;
    }
    QString Text() const {
        QString text;
        for (auto column = m_longest.cbegin(); column != m_longest.cend(); ++column) {
            text += column.key() + ' ' + QString::number(column.value()) + '\n';
        }
        return text;
    }

    QString m_module;
    QMap<QString, int> m_longest;
    HostileAccount m_clean;
};

/// The lines of an outcome; white space at the ends of a value may have been trimmed.
QStringList LinesOf(QString outcome) {
    static const QRegularExpression ends("\\s+( [A-Z0-9]+=)|(=)\\s+");
    return outcome.remove('\r').replace(ends, "\\1\\2").split('\n');
}

/// As long as a hostile text, with harmless characters in the place of all but digits; a character of two units stands
/// for one of two.
QString HarmlessFor(const QString& hostile) {
    const QString pair = QStringLiteral("\U00020000");
    QString harmless = Harmless.left(hostile.size());
    for (qsizetype i = 0; i < hostile.size(); ++i) {
        const QChar character = hostile.at(i);
        harmless[i] = character.isDigit()           ? character
                      : character.isHighSurrogate() ? pair.front()
                      : character.isLowSurrogate()  ? pair.back()
                                                    : harmless.at(i);
    }
    return harmless;
}

/// What is to come of hostile characters by what came of the harmless ones in their place.
QStringList Expected(const QString& harmless, const QString& hostile) {
    const QString characters = HarmlessFor(hostile);
    QStringList lines;
    for (QString line : harmless.split('\n')) {
        for (qsizetype i = 0; i < hostile.size(); ++i) {
            line.replace(characters.at(i), hostile.at(i));
        }
        static const QRegularExpression logged("^../../.... ..:..:.. - ");
        if (line.contains(logged)) { // the log is text of one code page, in which nothing is unseen
            QString lost;
            line = VisibleLine(line);
            line = DecodeText(EncodeText(line, CodePage(), &lost), CodePage());
        }
        if (line.startsWith("[!] ") || line.startsWith("[i] ")) {
            line = VisibleText(line);
        }
        lines.append(line);
    }
    return LinesOf(lines.join('\n'));
}

/// Addresses of the web, paths of files and VAT numbers lose some characters by a rule: of the last, further faults of
/// a row may be none any more.
QString Comparable(const QString& line) {
    static const QRegularExpression lost("[-/ \\\\]");
    const bool isAddress = line.startsWith("IND_WEB ") || line.contains("ALLEGATO NON TROVATO: ") ||
                           line.contains("IMMAGINE NON TROVATA: ");
    const bool isReason = line.contains("Riga abbandonata: ");
    return isAddress ? QString(line).remove(lost) : isReason ? line.section("; ", 0, 0) : line;
}

/// The first difference with what follows it, such as the error of a procedure that failed; empty when there is none.
QString Difference(const QStringList& left, const QString& outcome) {
    const QStringList right = LinesOf(outcome);
    for (qsizetype i = 0; i < std::max(left.size(), right.size()); ++i) {
        if (Comparable(left.value(i)) != Comparable(right.value(i))) {
            return QString("line %1:\nexpected: ").arg(i) + left.value(i) +
                   "\n  actual: " + right.mid(i, 8).join("\n          ");
        }
    }
    return {};
}

} // namespace

/// Texts with what can trip a database, a statement or a message, through every procedure of every module; on every
/// engine, source and target, of the modules that stand for others.
class TestHostile : public QObject {
    Q_OBJECT
    Q_CLASSINFO("about", "origins")

private slots:
    void Hostile_data() { CloseModulesOnEngines(); }

    /// They arrive as harmless ones do, character by character, and rows are given up as with those.
    void Hostile() {
        QFETCH(const QString, module);
        QFETCH(const TestTarget::On, engine);
        if (engine != TestTarget::On::Embedded && !TestTarget::HasMariaDb()) {
            QSKIP("QUADRIX_TEST_MARIADB names no server: scripts/test starts one");
        }
        const Endings endings = Endings::Of(module);
        struct Case {
            const char* name;
            QString hostile;
            int length; ///< of the ending
            int taken;  ///< it is given to the columns that take one of this length
        };
        const QString quotes = "~'\"\\--%1";
        for (const Case& one : {Case{"quotes, backslash, comment, percent", quotes, Short, Short},
                                Case{"line breaks, four bytes, right to left", "~ש😀\r\n\u202e1", Short, Short},
                                Case{"10,000 characters", quotes, Long, Long},
                                Case{"where numbers and short codes stand", quotes, Short, 0}}) {
            if (one.taken == 0 && engine != TestTarget::On::Embedded) {
                continue; // what a source makes of such a text where it counts or compares numbers is its own affair
            }
            const TextColumns columns = endings.Taking(one.taken);
            const QString ending = Ending(HarmlessFor(one.hostile), one.length);
            const QString harmless = HarmlessOutcome(module, columns, ending);
            const HostileAccount hostile = Run(module, columns, Ending(one.hostile, one.length), engine);
            const QString difference = Difference(Expected(harmless, one.hostile), hostile.outcome);
            QVERIFY2(difference.isEmpty(), qPrintable(one.name + (", " + difference)));
        }
        HoldsNoNul(module, endings.Taking(Short), engine);
    }

private:
    /// Is the same on every engine.
    static const QString& HarmlessOutcome(const QString& module, const TextColumns& columns, const QString& ending) {
        static QHash<QString, QString> outcomes;
        const QString key = QStringList{module, ending, columns.join(' ')}.join('\n');
        if (!outcomes.contains(key)) {
            outcomes.insert(key, Run(module, columns, ending, TestTarget::On::Embedded).outcome);
        }
        return outcomes[key];
    }

    /// The row of a text with a NUL is given up; a code without a translation is noted with it, whole. A module that
    /// takes no text from its source has no such row.
    static void HoldsNoNul(const QString& module, const TextColumns& columns, TestTarget::On engine) {
        const QString ending = QStringLiteral("~\u0000~");
        const HostileAccount account = Run(module, columns, ending, engine);
        const QString rows = account.outcome.section("== rows", 1).remove(ending);
        QVERIFY2(!rows.contains('~') && !rows.contains(QChar(u'\0')), qPrintable(rows));
        const auto tellsNul = [](const RunResult::GivenUp& row) { return row.reason.contains("carattere NUL"); };
        QVERIFY(columns.isEmpty() ||
                std::any_of(account.whole.begin(), account.whole.end(), [&](const RunResult& result) {
                    return std::any_of(result.givenUp.begin(), result.givenUp.end(), tellsNul);
                }));
    }
};

QUADRIX_TEST(TestHostile)
#include "test_hostile.moc"
