#include "app/inspect_suggest.h"

#include "app/inspect_fields.h"
#include "core/nearNames.h"
#include "sources/layout/LayoutFile.h"
#include "sources/layout/LayoutTable.h"
#include "sql/names.h"

#include <QDir>
#include <QSet>

#include <algorithm>

namespace inspection {

namespace {

using sources::LayoutFile;

constexpr size_t MostSuggestions = 5;

// --- What names tell

QString Reversed(QString text) {
    std::reverse(text.begin(), text.end());
    return text;
}

/// The longest beginning, of at least so many letters, that two of three names have in common; empty without any.
QString CommonFront(const QStringList& names, qsizetype least) {
    constexpr qsizetype longest = 8;
    constexpr qsizetype leastNames = 5;
    for (qsizetype size = longest; size >= least && names.size() >= leastNames; --size) {
        QHash<QString, qsizetype> counts;
        for (const QString& name : names) {
            if (name.size() > size + 1 && ++counts[name.left(size)] * 3 >= names.size() * 2) {
                return name.left(size);
            }
        }
    }
    return {};
}

/// What the names of a table tell apart from what they have in common: of ANDESCRI, ANINDIRI the letters behind "AN",
/// of RAGCLFOR, INDCLFOR those before "CLFOR".
class BareNames {
public:
    explicit BareNames(const QStringList& names)
        : m_front(CommonFront(names, 2)) {
        QStringList reversed;
        for (const QString& name : names) {
            reversed.append(Reversed(name));
        }
        m_back = Reversed(CommonFront(reversed, 3));
    }

    QString Of(const QString& name) const {
        QString bare = !m_front.isEmpty() && name.startsWith(m_front) ? name.mid(m_front.size()) : name;
        if (!m_back.isEmpty() && bare.endsWith(m_back) && bare.size() > m_back.size() + 1) {
            bare.chop(m_back.size());
        }
        return bare;
    }
    /// The field that a name tells.
    const Field* FieldOf(const QString& name) const {
        const Field* whole = FieldOfName(name);
        return whole != nullptr ? whole : FieldOfName(Of(name));
    }

private:
    QString m_front;
    QString m_back;
};

/// The code of what a table holds: an article's where it holds articles.
const Field* CodeOf(const QString& table, const Field* field) {
    static const Field* const code = FieldOfName(QStringLiteral("CODICE"));
    static const Field* const article = FieldOfName(QStringLiteral("CODICEARTICOLO"));
    return field == code && KindOfTable(table) == u"articoli" ? article : field;
}

QStringList OwnNames(const Table& table) {
    QStringList names;
    for (const OwnColumn& column : table.own) {
        names.append(column.name);
    }
    return names;
}

/// The fields that a column that is read can stand for.
class Meant {
public:
    Meant(const Table& table, const Column& column, const BareNames& bare) {
        Add(CodeOf(table.name, bare.FieldOf(column.name)));
        // A telephone, a mobile and a fax feed the same column: there the name tells more.
        const Field* fed = FieldOfTargets(column.feeds);
        Add(fed != nullptr && fed->look == Look::Telephone && !m_fields.isEmpty() ? nullptr : fed);
    }
    bool Has(const Field* field) const { return field != nullptr && m_fields.contains(field); }
    Look ItsLook() const { return m_fields.isEmpty() ? Look::None : m_fields.last()->look; }
    const QList<const Field*>& Fields() const { return m_fields; }

private:
    void Add(const Field* field) {
        if (field != nullptr && !m_fields.contains(field)) {
            m_fields.append(field);
        }
    }
    QList<const Field*> m_fields;
};

QStringList LogicalNames(const Table& table) {
    QStringList names;
    for (const Column& column : table.columns) {
        names.append(column.name);
    }
    return names;
}

// --- Suggestions of one column

/// Collects names, each once, with the surest ground.
class Collected {
public:
    void Add(const QString& name, Ground ground, const QString& reason = {}, qsizetype columns = 0) {
        if (!m_told.contains(name)) {
            m_told.insert(name);
            m_suggestions.push_back({name, ground, reason, columns});
        }
    }
    std::vector<Suggestion> Sorted() {
        std::stable_sort(m_suggestions.begin(), m_suggestions.end(),
                         [](const Suggestion& a, const Suggestion& b) { return a.ground < b.ground; });
        return m_suggestions;
    }

private:
    QSet<QString> m_told;
    std::vector<Suggestion> m_suggestions;
};

Ground GroundOf(NameGround ground) {
    return ground == NameGround::Equal        ? Ground::Equal
           : ground == NameGround::WrittenOut ? Ground::WrittenOut
                                              : Ground::Similar;
}

/// Those of the names that a logical one is known by.
void AddKnown(Collected& collected, const QString& logical, const QStringList& names, const NamesBefore& known,
              const Suggestion& as) {
    for (const QString& its : known.values(logical.toUpper())) {
        for (const QString& name : names) {
            if (its.compare(name, Qt::CaseInsensitive) == 0) {
                collected.Add(name, as.ground, as.reason);
            }
        }
    }
}

/// Whether values speak against a look: there are enough of them, and most are otherwise. Some are wrong everywhere.
bool Contradicts(const OwnColumn& own, Look look) {
    constexpr qsizetype enough = 3;
    const auto alike = std::count_if(own.values.begin(), own.values.end(),
                                     [look](const QString& value) { return HasLook(value, look); });
    return look != Look::None && own.values.size() >= enough && alike * 2 < own.values.size();
}

/// What the columns of one table are compared with.
struct Compared {
    const Table& table;
    const std::vector<OwnColumn>& free;
    QStringList names; ///< of those
    BareNames bare;
    const NamesBefore& before;
    const NamesBefore& now;
};

/// The columns whose field, or whose values, are those of the field.
void AddByField(Collected& collected, const Meant& meant, const Compared& compared) {
    for (const OwnColumn& own : compared.free) {
        const Field* field = CodeOf(compared.table.inSource, compared.bare.FieldOf(own.name));
        if (meant.Has(field) && !Contradicts(own, field->look)) {
            collected.Add(own.name, Ground::Alias, field->name);
        }
    }
    const Look look = meant.ItsLook();
    for (const OwnColumn& own : compared.free) {
        if (look != Look::None && LookOf(own.values) == look) {
            collected.Add(own.name, Ground::Values, LookText(look));
        }
    }
}

/// The names in front of and behind one; empty at an end.
std::pair<QString, QString> Neighbours(const QStringList& names, qsizetype at) {
    return {names.value(at - 1).toUpper(), names.value(at + 1).toUpper()};
}

/// The columns that have come since the last import, where the column was there then and is gone. Its values are not
/// known any more: besides the type the place, the name or the look has to speak for one.
void AddRenamed(Collected& collected, const Column& column, const Meant& meant, const Compared& compared) {
    QStringList before;
    qsizetype gone = -1;
    for (const ColumnInfo& known : compared.table.lastTime) {
        gone = known.name.compare(column.called, Qt::CaseInsensitive) == 0 ? before.size() : gone;
        before.append(known.name);
    }
    const QStringList now = OwnNames(compared.table);
    if (gone < 0 || names::Has(now, column.called)) {
        return;
    }
    const QString type = compared.table.lastTime[gone].type;
    for (const OwnColumn& own : compared.free) {
        if (names::Has(before, own.name) || type.isEmpty() || own.type.compare(type, Qt::CaseInsensitive) != 0 ||
            Contradicts(own, meant.ItsLook())) {
            continue;
        }
        QStringList alike{QStringLiteral("stesso tipo")};
        if (Neighbours(before, gone) == Neighbours(now, now.indexOf(own.name))) {
            alike.append(QStringLiteral("stesso posto"));
        }
        if (!GroundedNames(column.called, {own.name}).isEmpty()) {
            alike.append(QStringLiteral("nome simile"));
        }
        if (meant.ItsLook() != Look::None && LookOf(own.values) == meant.ItsLook()) {
            alike.append(QStringLiteral("aspetto dei valori"));
        }
        if (alike.size() > 1) {
            collected.Add(own.name, Ground::Renamed,
                          column.called + QStringLiteral(": ") + alike.join(QStringLiteral(", ")));
        }
    }
}

std::vector<Suggestion> ColumnsFor(const Column& column, const Meant& meant, const Compared& compared) {
    Collected collected;
    AddKnown(collected, column.name, compared.names, compared.before, {{}, Ground::UsedBefore, {}});
    const QList<GroundedName> grounded = GroundedNames(column.name, compared.names);
    for (const GroundedName& each : grounded) {
        if (each.ground != NameGround::Similar) {
            collected.Add(each.name, GroundOf(each.ground));
        }
    }
    AddRenamed(collected, column, meant, compared);
    AddKnown(collected, column.name, compared.names, compared.now,
             {{}, Ground::Alias, QStringLiteral("così in un'altra tabella")});
    AddByField(collected, meant, compared);
    for (const GroundedName& each : grounded) {
        const auto own = std::find_if(compared.free.begin(), compared.free.end(),
                                      [&each](const OwnColumn& one) { return one.name == each.name; });
        if (each.ground == NameGround::Similar && !Contradicts(*own, meant.ItsLook())) {
            collected.Add(each.name, Ground::Similar);
        }
    }
    return collected.Sorted();
}

/// One column of the source stands first for one logical column alone: for the one with the surer ground, and among
/// equals for the one that is necessary, then the first.
void TellApart(Table& table) {
    QSet<QString> taken;
    QSet<const Column*> placed;
    const auto place = [&](Ground ground, bool necessary) {
        for (Column& column : table.columns) {
            auto& suggestions = column.suggestions;
            const auto first = std::find_if(suggestions.begin(), suggestions.end(), [&](const Suggestion& each) {
                return each.ground == ground && !taken.contains(each.name);
            });
            if (column.isNecessary == necessary && !placed.contains(&column) && first != suggestions.end()) {
                std::rotate(suggestions.begin(), first, first + 1);
                taken.insert(suggestions.front().name);
                placed.insert(&column);
            }
        }
    };
    for (int ground = 0; ground <= static_cast<int>(Ground::Similar); ++ground) {
        place(static_cast<Ground>(ground), true);
        place(static_cast<Ground>(ground), false);
    }
    for (Column& column : table.columns) {
        auto& suggestions = column.suggestions;
        std::erase_if(suggestions, [&](const Suggestion& each) {
            return taken.contains(each.name) && !(placed.contains(&column) && &each == &suggestions.front());
        });
        suggestions.resize(std::min(suggestions.size(), MostSuggestions));
    }
}

// --- Suggestions of a table

/// How many columns of a table that is read have one in a table of the source that is called so, or by another word.
qsizetype Counterparts(const Table& table, const QString& name, const QStringList& columns) {
    const BareNames logicalBare(LogicalNames(table));
    const BareNames ownBare(columns);
    QSet<const Field*> fields;
    for (const QString& column : columns) {
        fields.insert(CodeOf(name, ownBare.FieldOf(column)));
    }
    return std::count_if(table.columns.begin(), table.columns.end(), [&](const Column& column) {
        const Meant meant(table, column, logicalBare);
        return names::Has(columns, column.name) ||
               std::any_of(meant.Fields().begin(), meant.Fields().end(),
                           [&](const Field* field) { return fields.contains(field); });
    });
}

} // namespace

NamesBefore ReadNamesBefore(const QString& folder) {
    NamesBefore names;
    const QDir layouts(folder);
    for (const QString& file : layouts.entryList({QStringLiteral("*.ini")}, QDir::Files, QDir::Name)) {
        try {
            const auto layout = LayoutFile::Read(layouts.filePath(file));
            for (const LayoutFile::Entry& entry : layout->Entries(LayoutFile::Tables)) {
                names.insert(entry.key.toUpper(), sources::NameParts(entry.value).join(u'.'));
            }
            for (const LayoutFile::Entry& entry : layout->Entries(LayoutFile::Columns)) {
                names.insert(entry.key.section(u'.', -1).toUpper(), sources::NameParts(entry.value).join(u'.'));
            }
        } catch (const ImportError&) {
            continue; // the origin whose file it is will be told
        }
    }
    return names;
}

NamesBefore NamesNow(const std::vector<Table>& tables, const Table& but) {
    NamesBefore names;
    for (const Table& table : tables) {
        if (&table == &but) {
            continue;
        }
        for (const Column& column : table.columns) {
            const Suggestion* proposed = column.IsMissing() ? Proposed(column.suggestions) : nullptr;
            const QString name = proposed == nullptr ? column.inSource : proposed->name;
            if (!name.isEmpty()) {
                names.insert(column.name.toUpper(), name);
            }
        }
    }
    return names;
}

void SuggestColumns(Table& table, const NamesBefore& before, const NamesBefore& now) {
    QStringList read;
    for (const Column& column : table.columns) {
        read += column.IsMissing() ? QStringList() : QStringList(column.inSource);
    }
    std::vector<OwnColumn> free;
    QStringList names;
    for (const OwnColumn& own : table.own) {
        if (!names::Has(read, own.name)) {
            free.push_back(own);
            names.append(own.name);
        }
    }
    const Compared compared{table, free, names, BareNames(OwnNames(table)), before, now};
    const BareNames bare(LogicalNames(table));
    for (Column& column : table.columns) {
        if (column.IsMissing()) {
            column.suggestions = ColumnsFor(column, Meant(table, column, bare), compared);
        }
    }
    TellApart(table);
}

std::vector<Suggestion> TablesFor(const Table& table, const QMap<QString, QStringList>& columns,
                                  const NamesBefore& before) {
    Collected collected;
    AddKnown(collected, table.name, columns.keys(), before, {{}, Ground::UsedBefore, {}});
    const QList<GroundedName> grounded = GroundedNames(table.name, columns.keys());
    for (const GroundedName& each : grounded) {
        if (each.ground != NameGround::Similar) {
            collected.Add(each.name, GroundOf(each.ground));
        }
    }
    struct Like {
        QString name;
        qsizetype counterparts;
        bool isOfKind;
    };
    constexpr qsizetype leastCounterparts = 3;
    std::vector<Like> likes;
    const QString kind = KindOfTable(table.name);
    const auto needed = static_cast<qsizetype>(table.columns.size());
    for (const auto& [name, its] : columns.asKeyValueRange()) {
        const bool isOfKind = !kind.isEmpty() && KindOfTable(name) == kind;
        const qsizetype counterparts = Counterparts(table, name, its);
        if (counterparts > 0 &&
            (isOfKind || (counterparts >= leastCounterparts && counterparts * 2 >= std::min(needed, its.size())))) {
            likes.push_back({name, counterparts, isOfKind});
        }
    }
    std::stable_sort(likes.begin(), likes.end(), [](const Like& a, const Like& b) {
        return a.isOfKind != b.isOfKind ? a.isOfKind : a.counterparts > b.counterparts;
    });
    for (const Like& like : likes) {
        const QString share =
            QStringLiteral("%1 colonne su %2").arg(QString::number(like.counterparts), QString::number(needed));
        collected.Add(like.name, like.isOfKind ? Ground::Alias : Ground::Columns,
                      like.isOfKind ? kind + QStringLiteral(", ") + share : share, like.counterparts);
    }
    for (const GroundedName& each : grounded) {
        collected.Add(each.name, Ground::Similar);
    }
    std::vector<Suggestion> sorted = collected.Sorted();
    sorted.resize(std::min(sorted.size(), MostSuggestions));
    return sorted;
}

void TellTablesApart(std::vector<Table>& tables) {
    QSet<QString> taken;
    QSet<const Table*> placed;
    while (true) {
        Table* best = nullptr;
        size_t at = 0;
        for (Table& table : tables) {
            for (size_t i = 0; i < table.suggestions.size() && !placed.contains(&table); ++i) {
                const Suggestion& each = table.suggestions[i];
                const auto isBetter = [&](const Suggestion& than) {
                    return each.ground != than.ground ? each.ground < than.ground : each.columns > than.columns;
                };
                if (!taken.contains(each.name) && (best == nullptr || isBetter(best->suggestions[at]))) {
                    best = &table;
                    at = i;
                }
            }
        }
        if (best == nullptr) {
            break;
        }
        const auto first = best->suggestions.begin();
        std::rotate(first, first + static_cast<std::ptrdiff_t>(at), first + static_cast<std::ptrdiff_t>(at) + 1);
        taken.insert(first->name);
        placed.insert(best);
    }
    for (Table& table : tables) {
        std::erase_if(table.suggestions, [&](const Suggestion& each) {
            const bool isItsOwn = placed.contains(&table) && &each == &table.suggestions.front();
            return each.ground >= Ground::Columns && taken.contains(each.name) && !isItsOwn;
        });
    }
}

} // namespace inspection
