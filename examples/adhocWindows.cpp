// Ad Hoc Windows: a folder of FoxPro tables, forerunner of Ad Hoc Revolution: what that one has in further tables of
// the articles stands in the article itself.

#include "examples/adhoc.h"
#include "examples/DbfWriter.h"

namespace examples {

namespace adhocWindows {

namespace {

using namespace adhoc;

constexpr qint64 Lists = 2;
constexpr double MarkUp = 1.6;

/// Articles without a price of their own have that of the first list.
Table ItemTable() {
    Table table = ArticleTable();
    table.fields += QVector<Field>{{{"ARCOSSTA", 'N', 12, 4}, ItemCost()},
                                   {{"ARPREZZO", 'N', 12, 4}, Chance(60, Scaled(MarkUp, 2, ItemCost()), Fixed(0))},
                                   {{"ARSCOMIN", 'N', 10, 2}, Whole(0, 20)},
                                   {{"ARSCOMAX", 'N', 10, 2}, Whole(20, 200)},
                                   {{"ARPUNRIO", 'N', 10, 2}, Whole(0, 30)},
                                   {{"ARLOTRIO", 'N', 10, 2}, Whole(1, 50)},
                                   {{"ARGIOAPP", 'N', 4}, Whole(1, 30)},
                                   {{"ARCODFOR", 'C', 15}, Chance(40, AnyOf(Suppliers, PartyCode()))},
                                   {{"ARNOTART", 'M'}, Chance(10, Fixed("Verniciare a parte"))}};
    table.odd.append({{"ARCODART", "OPERATORE"}, {"ARUNMIS2", "SC"}, {"AROPERAT", "?"}, {"ARMOLTIP", 2}});
    return table;
}

Table PriceTable() {
    return {"LISTINI",
            "articoli",
            Times(Lists, Articles),
            {{{"LICODART", 'C', 20}, OfParent(Lists, ItemCode())},
             {{"LICODLIS", 'C', 5}, Each({"1", "2"})},
             {{"LIPREZZO", 'N', 12, 4}, OfParent(Lists, Scaled(MarkUp, 2, ItemCost()))}}};
}

} // namespace

} // namespace adhocWindows

Totals MakeAdHocWindows(const Options& options) {
    using namespace adhocWindows;
    QuadrixScript script(options.company);
    Prepare(script);
    script.Keep("CONTI", "ANCODPAG", {"RB30", "RB36", "BO60", "RD"});
    script.Keep("CONTI", "ANCODAG1", {"AG1", "AG2"});
    script.Keep("ART_ICOL", "ARUNMIS2", {"SC"});
    DbfFolder folder(options.folder);
    return Write(folder, {PartyTable(), BankTable(), BranchTable(), ItemTable(), PriceTable()}, options, script);
}

} // namespace examples
